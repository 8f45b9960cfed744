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

void TWAIN::Invert() {
  Transform([](cPicture24& buffer) { buffer.Invert(true, true, true); });
}

void TWAIN::GrayScale() {
  Transform([](cPicture24& buffer) { buffer.GrayScale(); });
}

void TWAIN::BlackWhite() {
  Transform([](cPicture24& buffer) { buffer.BlackWhite(); });
}

void TWAIN::Sharpen() {
  Transform([](cPicture24& buffer) { buffer.Sharpen(0.5f); });
}

void TWAIN::SharpenMore() {
  Transform([](cPicture24& buffer) { buffer.Sharpen(0.8f); });
}

void TWAIN::Blur() {
  Transform([](cPicture24& buffer) { buffer.Blur(); });
}

void TWAIN::Contrast(Integer iValue) {
  Transform([=](cPicture24& buffer) { buffer.Contrast(iValue); });
}

void TWAIN::Fade(Long lValue) {
  Transform([=](cPicture24& buffer) { buffer.Fade(lValue); });
}

void TWAIN::Lighten(Long lValue) {
  Transform([=](cPicture24& buffer) { buffer.Lighten(lValue); });
}

bool TWAIN::Compare(ObjectRef& ComparePic) {
  PIC24->CopyFromPicture(m_Picture);
  const bool isEqual = PIC24->Compare(ComparePic);
  PIC24->CopyFromPicture(nullptr);
  return isEqual;
}

}  // namespace quillet
