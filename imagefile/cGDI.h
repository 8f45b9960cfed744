#pragma once

#include "platform/contracts/platform.h"

namespace quillet {

// Works on one bitmap handle at a time, which it never owns: the handle belongs to the picture it
// came from.
class cGDI {
 public:
  explicit cGDI(Platform& platform) : m_platform(platform) {}

  void PuthBitmap(BitmapHandle bitmap) noexcept { m_hBitmap = bitmap; }
  // The picture's own handle; none for no picture.
  void PutBitmapPicture(const PictureRef& picture) noexcept;

  // Size of the bitmap in pixels; 0 when the handle names no bitmap.
  Long Width() const;
  Long Height() const;

 private:
  BITMAP Describe() const;

  Platform& m_platform;
  BitmapHandle m_hBitmap = BitmapHandle::None;
};

}  // namespace quillet
