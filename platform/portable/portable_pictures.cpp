#include "platform/portable/portable_pictures.h"

#include <new>
#include <utility>

#include "base/runtime_error.h"
#include "platform/portable/bmp_reader.h"
#include "platform/portable/byte_source.h"
#include "platform/portable/codec_bmp.h"
#include "platform/portable/codec_error.h"
#include "platform/portable/icon_reader.h"
#include "platform/portable/icon_writer.h"
#include "platform/portable/replacing_file.h"

namespace quillet {
namespace {

class PortablePicture : public Picture {
 public:
  PortablePicture(std::shared_ptr<PortableBitmaps> bitmaps, std::shared_ptr<int> count)
      : m_bitmaps(std::move(bitmaps)), m_count(std::move(count)) {
    ++*m_count;
  }
  ~PortablePicture() override {
    --*m_count;
    if (m_handle != BitmapHandle::None) m_bitmaps->ReleaseByPicture(m_handle);
  }

  PictureKind Kind() const noexcept override { return m_kind; }
  BitmapHandle Handle() const noexcept override { return m_handle; }

  void Own(PictureKind kind, BitmapHandle handle) noexcept {
    m_kind = kind;
    m_handle = handle;
  }

 private:
  std::shared_ptr<PortableBitmaps> m_bitmaps;
  std::shared_ptr<int> m_count;
  PictureKind m_kind = PictureKind::None;
  BitmapHandle m_handle = BitmapHandle::None;
};

}  // namespace

PortablePictures::PortablePictures(std::shared_ptr<PortableBitmaps> bitmaps)
    : m_bitmaps(std::move(bitmaps)), m_count(std::make_shared<int>(0)) {}

PictureRef PortablePictures::EmptyPicture() {
  try {
    return std::make_shared<PortablePicture>(m_bitmaps, m_count);
  } catch (const std::bad_alloc&) {
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
}

PictureRef PortablePictures::OleCreatePictureIndirect(BitmapHandle bitmap) {
  try {
    const auto picture = std::make_shared<PortablePicture>(m_bitmaps, m_count);
    if (!m_bitmaps->GiveToPicture(bitmap)) return nullptr;
    picture->Own(PictureKind::Bitmap, bitmap);
    return picture;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

PictureRef PortablePictures::LoadPicture(const std::string& fileName) {
  FileSource file(fileName);
  try {
    const auto picture = std::make_shared<PortablePicture>(m_bitmaps, m_count);
    if (LooksLikeIcon(file)) {
      picture->Own(PictureKind::Icon, m_bitmaps->AddIcon(ReadIcon(file)));
    } else {
      const BitmapHandle bitmap = m_bitmaps->AddBitmap(ReadBmp(file, m_bitmaps->Reserve()));
      m_bitmaps->GiveToPicture(bitmap);
      picture->Own(PictureKind::Bitmap, bitmap);
    }
    return picture;
  } catch (const std::bad_alloc&) {
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
}

void PortablePictures::SavePicture(const PictureRef& picture, const std::string& fileName) {
  const BitmapHandle handle = picture ? picture->Handle() : BitmapHandle::None;
  try {
    if (const Dib* bitmap = m_bitmaps->FindBitmap(handle)) {
      ReplacingFile file(fileName);
      WriteBmp(*bitmap, file);
      file.Commit();
    } else if (const IconImage* icon = m_bitmaps->FindIcon(handle)) {
      const std::vector<Byte> content = WriteIcon(*icon);
      ReplacingFile file(fileName);
      file.Write(content);
      file.Commit();
    } else {
      throw RunTimeError(ErrorNumber::InvalidPicture, "neither bitmap nor icon");
    }
  } catch (const CodecError&) {
    throw RunTimeError(ErrorNumber::InvalidPicture, "larger than the format can say");
  } catch (const std::bad_alloc&) {
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
}

}  // namespace quillet
