// Saving, loading and appending through the platform's image codecs.

#include <cstdint>
#include <new>

#include "base/runtime_error.h"
#include "imagefile/cGDI.h"
#include "imagefile/codec_session.h"
#include "platform/contracts/owned_handles.h"

namespace quillet {
namespace {

// The platform's identifiers of its built-in encoders and of their parameters.
constexpr const char* kBmpEncoder = "{557cf400-1a04-11d3-9a73-0000f81ef32e}";
constexpr const char* kJpegEncoder = "{557cf401-1a04-11D3-9A73-0000f81ef32e}";
constexpr const char* kGifEncoder = "{557cf402-1a04-11d3-9a73-0000f81ef32e}";
constexpr const char* kTiffEncoder = "{557cf405-1a04-11d3-9a73-0000f81ef32e}";
constexpr const char* kPngEncoder = "{557cf406-1a04-11d3-9a73-0000f81ef32e}";
constexpr const char* kEncoderQuality = "{1D5BE4B5-FA4A-452D-9CDD-5DB35105E7EB}";
constexpr const char* kEncoderSaveFlag = "{292266FC-AC40-47BF-8CFC-A85B89A655DE}";

constexpr std::uint32_t kTransparentBlack = 0;

const char* EncoderOf(Long fileType) {
  switch (fileType) {
    case twJPEG:
      return kJpegEncoder;
    case twGIF:
      return kGifEncoder;
    case twTIFF:
      return kTiffEncoder;
    case twPNG:
      return kPngEncoder;
    default:
      return kBmpEncoder;
  }
}

CLSID IdentifierOf(CodecLibrary& library, const char* text) {
  CLSID clsid;
  library.CLSIDFromString(text, clsid);
  return clsid;
}

// A list of one 32-bit parameter, whose value the caller may change between calls.
EncoderParameters OneParameter(CodecLibrary& library, const char* identifier,
                               std::uint32_t& value) {
  EncoderParameters parameters;
  parameters.Count = 1;
  parameters.Parameter[0] = {IdentifierOf(library, identifier), 1, EncoderParameterValueTypeLong,
                             &value};
  return parameters;
}

}  // namespace

// The quality goes along for every format; only one codec heeds it.
Long cGDI::SaveImage(const std::string& fileName, Long fileType, Byte quality, Byte) {
  CodecLibrary& library = m_platform.codecs;
  const CodecSession session(library);
  if (session.Status() != CodecStatus::Ok) return static_cast<Long>(session.Status());

  CodecImage image(library);
  CodecStatus status = library.GdipCreateBitmapFromHBITMAP(m_hBitmap, image.out());
  if (status == CodecStatus::Ok) {
    const CLSID encoder = IdentifierOf(library, EncoderOf(fileType));
    std::uint32_t value = quality;
    const EncoderParameters parameters = OneParameter(library, kEncoderQuality, value);
    status = library.GdipSaveImageToFile(image.get(), fileName, encoder, parameters);
  }
  return static_cast<Long>(status);
}

PictureRef cGDI::LoadImage(const std::string& fileName) {
  CodecLibrary& library = m_platform.codecs;
  const CodecSession session(library);
  if (session.Status() != CodecStatus::Ok) return nullptr;

  CodecImage image(library);
  if (library.GdipCreateBitmapFromFile(fileName, image.out()) != CodecStatus::Ok) return nullptr;
  m_hBitmap = BitmapHandle::None;
  if (library.GdipCreateHBITMAPFromBitmap(image.get(), m_hBitmap, kTransparentBlack) !=
      CodecStatus::Ok)
    return nullptr;
  return PictureFromHandle(m_hBitmap);
}

// The bitmap passes to the picture; without one it is released.
PictureRef cGDI::PictureFromHandle(BitmapHandle bitmap) {
  UniqueBitmap owner(m_platform.bitmaps, bitmap);
  PictureRef picture = m_platform.pictures.OleCreatePictureIndirect(bitmap);
  if (picture) static_cast<void>(owner.release());
  return picture;
}

Long cGDI::SaveAddImage(const std::string& fileName) try {
  Files& files = m_platform.files;
  const std::string temporary = files.GetTempFileNameA(files.GetTempPathA(), "tmp");
  const CodecStatus status = AppendPage(fileName, temporary);
  if (status != CodecStatus::Ok) return static_cast<Long>(status);
  files.CopyFile(temporary, fileName);
  files.DeleteFile(temporary);
  return 0;
} catch (const RunTimeError& error) {
  return static_cast<Long>(error.Number());
} catch (const std::bad_alloc&) {
  return static_cast<Long>(ErrorNumber::OutOfMemory);
}

// Writes the pages of the file and the bitmap as a further one to the temporary file. Every codec
// image is released on return, so that nothing keeps the file open when it is replaced.
CodecStatus cGDI::AppendPage(const std::string& fileName, const std::string& temporary) {
  CodecLibrary& library = m_platform.codecs;
  const CodecSession session(library);
  if (session.Status() != CodecStatus::Ok) return session.Status();

  CodecImage existing(library);
  CodecImage added(library);
  CodecStatus status = library.GdipCreateBitmapFromFile(fileName, existing.out());
  if (status != CodecStatus::Ok) return status;

  const CLSID encoder = IdentifierOf(library, kTiffEncoder);
  std::uint32_t flag = EncoderValueMultiFrame;
  const EncoderParameters parameters = OneParameter(library, kEncoderSaveFlag, flag);
  status = library.GdipSaveImageToFile(existing.get(), temporary, encoder, parameters);
  if (status != CodecStatus::Ok) return status;

  status = library.GdipCreateBitmapFromHBITMAP(m_hBitmap, added.out());
  if (status != CodecStatus::Ok) return status;

  flag = EncoderValueFrameDimensionPage;
  status = library.GdipSaveAddImage(existing.get(), added.get(), parameters);
  if (status != CodecStatus::Ok) return status;

  flag = EncoderValueFlush;
  return library.GdipSaveAdd(existing.get(), parameters);
}

}  // namespace quillet
