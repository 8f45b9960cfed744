#pragma once

#include <memory>
#include <string>

#include "platform/contracts/picture_services.h"
#include "platform/win32/com_ptr.h"

struct IPictureDisp;
struct IUnknown;

namespace quillet {

class Win32Bitmaps;

// Makes and wraps the system's picture objects (IPicture, IPictureDisp), the ones that hosts use
// too. A wrapper holds one reference to its object and is as good as any other wrapper of it:
// SameObject compares the objects.
//
// BMP files are read by our own reader: the system's gives every bitmap the screen's depth, and
// takes a file's word for how many pixels follow. Icons are the system's.
class Win32Pictures : public PictureServices {
 public:
  explicit Win32Pictures(Win32Bitmaps& bitmaps);

  PictureRef EmptyPicture() override;
  PictureRef OleCreatePictureIndirect(BitmapHandle bitmap) override;
  PictureRef LoadPicture(const std::string& fileName) override;
  void SavePicture(const PictureRef& picture, const std::string& fileName) override;

  // Wraps a picture object that a host hands in; no picture for null. Run-time error 13 for an
  // object that is no picture.
  PictureRef Wrap(::IUnknown* object);
  // The object as it goes out to a host, null for no picture. It is the very one that came in. Only
  // for pictures of this class.
  static ComPtr<::IPictureDisp> ObjectOf(const PictureRef& picture);

  // Live wrappers.
  int Count() const { return *m_count; }

 private:
  Win32Bitmaps& m_bitmaps;
  std::shared_ptr<int> m_count;  // shared with the pictures, which may outlive this
};

}  // namespace quillet
