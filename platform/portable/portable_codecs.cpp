#include "platform/portable/portable_codecs.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "base/runtime_error.h"
#include "platform/portable/bmp_reader.h"
#include "platform/portable/codec_bmp.h"
#include "platform/portable/codec_error.h"
#include "platform/portable/codec_gif.h"
#include "platform/portable/codec_jpeg.h"
#include "platform/portable/codec_png.h"
#include "platform/portable/codec_tiff.h"
#include "platform/portable/tiff_pages.h"

namespace quillet {
namespace {

// The published identifiers of the built-in encoders differ in the last byte of the first field.
constexpr CLSID kBmpEncoder{0x557cf400, 0x1a04, 0x11d3, {0x9a, 0x73, 0, 0, 0xf8, 0x1e, 0xf3, 0x2e}};
constexpr std::uint32_t kJpeg = 0x557cf401;
constexpr std::uint32_t kGif = 0x557cf402;
constexpr std::uint32_t kTiff = 0x557cf405;
constexpr std::uint32_t kPng = 0x557cf406;

// The published identifiers of encoder parameters.
constexpr CLSID kQuality{
    0x1d5be4b5, 0xfa4a, 0x452d, {0x9c, 0xdd, 0x5d, 0xb3, 0x51, 0x05, 0xe7, 0xeb}};
constexpr CLSID kSaveFlag{
    0x292266fc, 0xac40, 0x47bf, {0x8c, 0xfc, 0xa8, 0x5b, 0x89, 0xa6, 0x55, 0xde}};

constexpr std::uint32_t kDefaultQuality = 75;

// The parameter's first value; nothing when the list does not have it.
std::optional<std::uint32_t> LongParameter(const EncoderParameters& parameters, const CLSID& id) {
  if (parameters.Count > parameters.Parameter.size()) {
    throw CodecError(CodecStatus::InvalidParameter);
  }
  for (std::size_t i = 0; i < parameters.Count; ++i) {
    const EncoderParameter& parameter = parameters.Parameter[i];
    if (parameter.Guid != id) continue;
    if (parameter.Type != EncoderParameterValueTypeLong || parameter.NumberOfValues < 1 ||
        !parameter.Value) {
      throw CodecError(CodecStatus::InvalidParameter);
    }
    return *static_cast<const std::uint32_t*>(parameter.Value);
  }
  return std::nullopt;
}

CodecStatus StatusOf(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::OutOfMemory:
      return CodecStatus::OutOfMemory;
    case ErrorNumber::FileNotFound:
    case ErrorNumber::PathNotFound:
      return CodecStatus::FileNotFound;
    case ErrorNumber::PermissionDenied:
      return CodecStatus::AccessDenied;
    case ErrorNumber::DiskFull:
    case ErrorNumber::PathFileAccess:
      return CodecStatus::Win32Error;
    default:
      return CodecStatus::GenericError;
  }
}

void AppendTiffPage(const Dib& dib, ReplacingFile& file, const char* mode) {
  const UniqueTiff tiff = OpenTiff(file.Descriptor(), mode);
  if (!tiff) throw CodecError(CodecStatus::Win32Error);
  WriteTiffPage(tiff.get(), dib);
}

}  // namespace

PortableCodecs::PortableCodecs(std::shared_ptr<PortableBitmaps> bitmaps)
    : m_bitmaps(std::move(bitmaps)) {}

PortableCodecs::~PortableCodecs() = default;

// Runs the action and turns what it throws into a status.
template <typename Action>
CodecStatus PortableCodecs::Answer(Action&& action) const noexcept {
  if (m_tokens.empty()) return CodecStatus::NotInitialized;
  try {
    action();
    return CodecStatus::Ok;
  } catch (const CodecError& error) {
    return error.Status();
  } catch (const RunTimeError& error) {
    return StatusOf(error.Number());
  } catch (const std::bad_alloc&) {
    return CodecStatus::OutOfMemory;
  } catch (const std::exception&) {
    return CodecStatus::GenericError;
  }
}

CodecStatus PortableCodecs::GdiplusStartup(std::uintptr_t& token) try {
  m_tokens.insert(m_nextToken);
  token = m_nextToken++;
  return CodecStatus::Ok;
} catch (const std::bad_alloc&) {
  return CodecStatus::OutOfMemory;
}

void PortableCodecs::GdiplusShutdown(std::uintptr_t token) {
  if (m_tokens.erase(token) == 1 && m_tokens.empty()) m_images.clear();
}

bool PortableCodecs::CLSIDFromString(const char* text, CLSID& clsid) {
  constexpr std::string_view kForm = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  const std::string_view given(text ? text : "");
  if (given.size() != kForm.size()) return false;
  std::array<std::uint8_t, 16> bytes{};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const char c = given[i];
    if (kForm[i] != 'x') {
      if (c != kForm[i]) return false;
      continue;
    }
    const int value = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                             : -1;
    if (value < 0) return false;
    std::uint8_t& byte = bytes[digits++ / 2];
    byte = static_cast<std::uint8_t>(byte << 4 | value);
  }
  clsid.Data1 =
      static_cast<std::uint32_t>(bytes[0]) << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
  clsid.Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
  clsid.Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
  std::copy(bytes.begin() + 8, bytes.end(), clsid.Data4.begin());
  return true;
}

CodecStatus PortableCodecs::GdipCreateBitmapFromHBITMAP(BitmapHandle bitmap, ImageHandle& image) {
  return Answer([&] {
    std::optional<Dib> pixels = m_bitmaps->CopyOf(bitmap);
    if (!pixels) throw CodecError(CodecStatus::InvalidParameter);
    Image made;
    made.pixels = std::move(pixels);
    image = Add(std::move(made));
  });
}

CodecStatus PortableCodecs::GdipCreateBitmapFromFile(const std::string& fileName,
                                                     ImageHandle& image) {
  return Answer([&] {
    if (fileName.empty()) throw CodecError(CodecStatus::InvalidParameter);
    Image made;
    made.source = std::make_unique<FileSource>(fileName);
    made.format = FormatOf(*made.source);
    // Whoever only copies the pages of a file needs none of its pixels.
    if (made.format == Format::Tiff) {
      CheckTiff(*made.source);
    } else {
      Pixels(made);
    }
    image = Add(std::move(made));
  });
}

CodecStatus PortableCodecs::GdipCreateHBITMAPFromBitmap(ImageHandle image, BitmapHandle& bitmap,
                                                        std::uint32_t background) {
  return Answer([&] {
    Image& from = Find(image);
    const PaletteColor below{static_cast<Byte>(background), static_cast<Byte>(background >> 8),
                             static_cast<Byte>(background >> 16)};
    const bool asDecoded = !from.source || below == PaletteColor{};
    bitmap = m_bitmaps->AddBitmap(asDecoded ? Pixels(from) : Decode(from, below));
  });
}

CodecStatus PortableCodecs::GdipSaveImageToFile(ImageHandle image, const std::string& fileName,
                                                const CLSID& encoder,
                                                const EncoderParameters& parameters) {
  return Answer([&] {
    Image& from = Find(image);
    if (fileName.empty()) throw CodecError(CodecStatus::InvalidParameter);
    CLSID family = encoder;
    family.Data1 = kBmpEncoder.Data1;
    if (family != kBmpEncoder) throw CodecError(CodecStatus::UnknownImageFormat);
    const std::uint32_t quality = LongParameter(parameters, kQuality).value_or(kDefaultQuality);
    const bool multiFrame = LongParameter(parameters, kSaveFlag) == EncoderValueMultiFrame;
    from.pages.reset();
    if (encoder.Data1 == kTiff && multiFrame) {
      SavePages(from, fileName);
      return;
    }
    const Dib& pixels = Pixels(from);
    ReplacingFile file(fileName);
    switch (encoder.Data1) {
      case kJpeg:
        WriteJpeg(pixels, static_cast<int>(std::min(quality, 100u)), file);
        break;
      case kGif:
        WriteGif(pixels, file);
        break;
      case kTiff:
        WriteTiff(pixels, file);
        break;
      case kPng:
        WritePng(pixels, file);
        break;
      case kBmpEncoder.Data1:
        WriteBmp(pixels, file);
        break;
      default:
        throw CodecError(CodecStatus::UnknownImageFormat);
    }
    file.Commit();
  });
}

CodecStatus PortableCodecs::GdipSaveAddImage(ImageHandle image, ImageHandle newImage,
                                             const EncoderParameters& parameters) {
  return Answer([&] {
    Image& from = Find(image);
    Image& added = Find(newImage);
    if (LongParameter(parameters, kSaveFlag) != EncoderValueFrameDimensionPage) {
      throw CodecError(CodecStatus::InvalidParameter);
    }
    if (!from.pages) throw CodecError(CodecStatus::WrongState);
    AppendTiffPage(Pixels(added), *from.pages, "a");
  });
}

CodecStatus PortableCodecs::GdipSaveAdd(ImageHandle image, const EncoderParameters& parameters) {
  return Answer([&] {
    Image& from = Find(image);
    if (LongParameter(parameters, kSaveFlag) != EncoderValueFlush) {
      throw CodecError(CodecStatus::InvalidParameter);
    }
    if (!from.pages) throw CodecError(CodecStatus::WrongState);
    const std::unique_ptr<ReplacingFile> pages = std::move(from.pages);
    pages->Commit();
  });
}

CodecStatus PortableCodecs::GdipDisposeImage(ImageHandle image) {
  return Answer([&] {
    Find(image);
    m_images.erase(image);
  });
}

PortableCodecs::Image& PortableCodecs::Find(ImageHandle image) {
  const auto found = m_images.find(image);
  if (found == m_images.end()) throw CodecError(CodecStatus::InvalidParameter);
  return found->second;
}

ImageHandle PortableCodecs::Add(Image image) {
  const ImageHandle handle{m_nextImage};
  m_images.emplace(handle, std::move(image));
  m_nextImage += 8;
  return handle;
}

PortableCodecs::Format PortableCodecs::FormatOf(ByteSource& source) {
  std::array<Byte, 8> bytes{};
  const std::size_t count = source.Read(0, bytes);
  const std::string_view start(reinterpret_cast<const char*>(bytes.data()), count);
  using namespace std::string_view_literals;
  if (start.starts_with("BM"sv)) return Format::Bmp;
  if (start.starts_with("\xFF\xD8\xFF"sv)) return Format::Jpeg;
  if (start.starts_with("GIF8"sv)) return Format::Gif;
  if (start.starts_with("\x89PNG\r\n\x1A\n"sv)) return Format::Png;
  for (const std::string_view tiff : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
    if (start.starts_with(tiff)) return Format::Tiff;
  }
  throw CodecError(CodecStatus::UnknownImageFormat);
}

Dib PortableCodecs::Decode(const Image& image, PaletteColor background) {
  switch (image.format) {
    case Format::Jpeg:
      return ReadJpeg(*image.source);
    case Format::Gif:
      return ReadGif(*image.source, background);
    case Format::Tiff:
      return ReadTiff(*image.source, background);
    case Format::Png:
      return ReadPng(*image.source, background);
    case Format::Bmp:
      break;
  }
  return ReadBmp(*image.source);
}

const Dib& PortableCodecs::Pixels(Image& image) {
  if (!image.pixels) image.pixels = Decode(image, {});
  return *image.pixels;
}

void PortableCodecs::SavePages(Image& image, const std::string& fileName) {
  auto file = std::make_unique<ReplacingFile>(fileName);
  if (image.source && image.format == Format::Tiff) {
    TiffPages(*image.source).CopyTo(*file);
  } else {
    AppendTiffPage(Pixels(image), *file, "w");
  }
  image.pages = std::move(file);
}

}  // namespace quillet
