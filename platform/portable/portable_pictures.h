#pragma once

#include <memory>
#include <string>

#include "platform/contracts/picture_services.h"
#include "platform/portable/portable_bitmaps.h"

namespace quillet {

// Makes picture objects over the bitmap table, which they keep alive.
class PortablePictures : public PictureServices {
 public:
  explicit PortablePictures(std::shared_ptr<PortableBitmaps> bitmaps);

  PictureRef EmptyPicture() override;
  PictureRef OleCreatePictureIndirect(BitmapHandle bitmap) override;
  PictureRef LoadPicture(const std::string& fileName) override;
  void SavePicture(const PictureRef& picture, const std::string& fileName) override;

  // Live picture objects.
  int Count() const { return *m_count; }

 private:
  std::shared_ptr<PortableBitmaps> m_bitmaps;
  std::shared_ptr<int> m_count;  // shared with the pictures
};

}  // namespace quillet
