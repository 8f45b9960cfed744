#include "control/TWAIN.h"

namespace quillet {

template <typename Operation>
void TWAIN::Transform(Operation&& operation) {
  PIC24->CopyFromPicture(m_Picture);
  operation(*PIC24);
  m_Picture = PIC24->CopyToPicture();
  PIC24->CopyFromPicture(nullptr);
  ApplyZoom();
  ShowPicture(m_DisplayPicture);
}

void TWAIN::Flip() {
  Transform([](cPicture24& buffer) { buffer.Flip(); });
}

void TWAIN::Reverse() {
  Transform([](cPicture24& buffer) { buffer.Reverse(); });
}

void TWAIN::Rotate() {
  Transform([](cPicture24& buffer) { buffer.Rotate(); });
}

void TWAIN::Resize(Long lNewWidth, Long lNewHeight) {
  Transform([=](cPicture24& buffer) { buffer.Resize(lNewWidth, lNewHeight); });
}

void TWAIN::Crop(Long lLeft, Long lTop, Long lWidth, Long lHeight) {
  Transform([=](cPicture24& buffer) { buffer.Crop(lLeft, lTop, lWidth, lHeight); });
}

}  // namespace quillet
