#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "platform/contracts/codec_library.h"
#include "platform/portable/byte_source.h"
#include "platform/portable/portable_bitmaps.h"
#include "platform/portable/replacing_file.h"

namespace quillet {

// The image codecs on top of the libraries for JPEG, PNG, TIFF and GIF, and our own for BMP. Which
// format a file has is seen from its first bytes. Images behind checked handles; what is left of
// them when the last start-up is shut down goes.
//
// A multi-page file appears, or takes the place of an old one, when it is closed by a flush; an
// image that is disposed of before leaves nothing behind.
class PortableCodecs : public CodecLibrary {
 public:
  explicit PortableCodecs(std::shared_ptr<PortableBitmaps> bitmaps);
  ~PortableCodecs() override;

  CodecStatus GdiplusStartup(std::uintptr_t& token) override;
  void GdiplusShutdown(std::uintptr_t token) override;
  bool CLSIDFromString(const char* text, CLSID& clsid) override;
  CodecStatus GdipCreateBitmapFromHBITMAP(BitmapHandle bitmap, ImageHandle& image) override;
  CodecStatus GdipCreateBitmapFromFile(const std::string& fileName, ImageHandle& image) override;
  CodecStatus GdipCreateHBITMAPFromBitmap(ImageHandle image, BitmapHandle& bitmap,
                                          std::uint32_t background) override;
  CodecStatus GdipSaveImageToFile(ImageHandle image, const std::string& fileName,
                                  const CLSID& encoder,
                                  const EncoderParameters& parameters) override;
  CodecStatus GdipSaveAddImage(ImageHandle image, ImageHandle newImage,
                               const EncoderParameters& parameters) override;
  CodecStatus GdipSaveAdd(ImageHandle image, const EncoderParameters& parameters) override;
  CodecStatus GdipDisposeImage(ImageHandle image) override;

  // Live images.
  int Count() const { return static_cast<int>(m_images.size()); }

 private:
  enum class Format { Bmp, Jpeg, Gif, Tiff, Png };
  struct Image {
    std::unique_ptr<FileSource> source;  // of a decoded image
    Format format = Format::Bmp;
    std::optional<Dib> pixels;             // over black; of a TIFF file when first asked for
    std::unique_ptr<ReplacingFile> pages;  // of an open multi-page file
  };

  template <typename Action>
  CodecStatus Answer(Action&& action) const noexcept;
  Image& Find(ImageHandle image);
  ImageHandle Add(Image image);
  static Format FormatOf(ByteSource& source);
  static Dib Decode(const Image& image, PaletteColor background);
  static const Dib& Pixels(Image& image);
  static void SavePages(Image& image, const std::string& fileName);

  std::shared_ptr<PortableBitmaps> m_bitmaps;
  std::unordered_set<std::uintptr_t> m_tokens;
  std::unordered_map<ImageHandle, Image> m_images;
  std::uintptr_t m_nextToken = 1;
  std::uintptr_t m_nextImage = 0x4070003;
};

}  // namespace quillet
