#pragma once

#include <string>

#include "platform/contracts/platform.h"

namespace quillet {

// Works on one bitmap handle at a time, which it never owns: the handle belongs to the picture it
// came from, or to the one that LoadImage returned.
//
// File operations start and shut down the codec library inside each call. Their results are
// statuses: 0, or the codec library's number of the first step that failed.
class cGDI {
 public:
  explicit cGDI(Platform& platform) : m_platform(platform) {}

  void PuthBitmap(BitmapHandle bitmap) noexcept { m_hBitmap = bitmap; }
  // The picture's own handle; none for no picture.
  void PutBitmapPicture(const PictureRef& picture) noexcept;

  // Size of the bitmap in pixels; 0 when the handle names no bitmap.
  Long Width() const;
  Long Height() const;

  // Writes the bitmap in the format of an IMAGE_TYPE, BMP for every value outside 1..4. The
  // compression has no effect.
  Long SaveImage(const std::string& fileName, Long fileType, Byte quality, Byte compression);
  // Rewrites the file as a TIFF file with the bitmap as a further page. Besides codec statuses, the
  // number of the run-time error that copying the finished file over the old one raised. The file
  // is as it was unless that copy was made.
  Long SaveAddImage(const std::string& fileName);
  // A new picture with the file's image; none when it cannot be read.
  PictureRef LoadImage(const std::string& fileName);

 private:
  BITMAP Describe() const;
  CodecStatus AppendPage(const std::string& fileName, const std::string& temporary);
  PictureRef PictureFromHandle(BitmapHandle bitmap);

  Platform& m_platform;
  BitmapHandle m_hBitmap = BitmapHandle::None;
};

}  // namespace quillet
