#pragma once

#include <memory>
#include <string>

#include "base/object.h"
#include "platform/contracts/handles.h"

namespace quillet {

enum class PictureKind { None, Bitmap, Icon, Metafile };

// A picture object: a bitmap, an icon or nothing, shared by reference among host and control. It
// owns its handle and releases it with its last reference; what it shows never changes.
class Picture : public Object {
 public:
  virtual PictureKind Kind() const noexcept = 0;
  // The handle of whatever the picture holds, 0 for an empty one. It names a bitmap only where the
  // kind is Bitmap; the bitmap services refuse every other.
  virtual BitmapHandle Handle() const noexcept = 0;
};

using PictureRef = std::shared_ptr<Picture>;

// Makes picture objects.
class PictureServices {
 public:
  virtual ~PictureServices() = default;

  // A new picture object that holds nothing (handle 0). Run-time error 7 when there is no memory.
  virtual PictureRef EmptyPicture() = 0;

  // A new picture object on the bitmap, which from then on belongs to it and is not written any
  // more; it may still be selected. When it cannot be made (no picture object is returned) the
  // bitmap stays the caller's.
  virtual PictureRef OleCreatePictureIndirect(BitmapHandle bitmap) = 0;

  // Reads a picture from a BMP file (bitmap) or an ICO file (icon). Run-time errors: 53 and 76 when
  // there is no such file or folder, 75 when it cannot be read, 481 for content that is no such
  // picture, 7 when there is no memory.
  virtual PictureRef LoadPicture(const std::string& fileName) = 0;

  // Writes the picture as a file that LoadPicture reads: a bitmap as BMP, an icon as ICO or CUR.
  // Run-time errors: as of Files, 481 for a picture that holds
  // nothing or is of another kind, 7 when there is no memory.
  virtual void SavePicture(const PictureRef& picture, const std::string& fileName) = 0;
};

}  // namespace quillet
