#include "imagefile/cGDI.h"

namespace quillet {

void cGDI::PutBitmapPicture(const PictureRef& picture) noexcept {
  m_hBitmap = picture ? picture->Handle() : BitmapHandle::None;
}

Long cGDI::Width() const {
  return Describe().bmWidth;
}
Long cGDI::Height() const {
  return Describe().bmHeight;
}

BITMAP cGDI::Describe() const {
  BITMAP record;
  m_platform.bitmaps.GetObjectA(m_hBitmap, record);
  return record;
}

}  // namespace quillet
