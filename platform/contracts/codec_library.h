#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/types.h"
#include "platform/contracts/handles.h"

namespace quillet {

// The codec library's published status numbers. 0 is success.
enum class CodecStatus : Long {
  Ok = 0,
  GenericError = 1,
  InvalidParameter = 2,
  OutOfMemory = 3,
  ObjectBusy = 4,
  InsufficientBuffer = 5,
  NotImplemented = 6,
  Win32Error = 7,
  WrongState = 8,
  Aborted = 9,
  FileNotFound = 10,
  ValueOverflow = 11,
  AccessDenied = 12,
  UnknownImageFormat = 13,
  NotInitialized = 18,
};

// A 16-byte identifier of a codec or of an encoder parameter.
struct CLSID {
  std::uint32_t Data1 = 0;
  std::uint16_t Data2 = 0;
  std::uint16_t Data3 = 0;
  std::array<std::uint8_t, 8> Data4{};

  bool operator==(const CLSID&) const = default;
};

inline constexpr std::uint32_t EncoderParameterValueTypeLong = 4;
inline constexpr std::uint32_t EncoderValueMultiFrame = 18;
inline constexpr std::uint32_t EncoderValueFlush = 20;
inline constexpr std::uint32_t EncoderValueFrameDimensionPage = 23;

// One encoder parameter: its identifier and values of its type, which the caller keeps alive.
struct EncoderParameter {
  CLSID Guid;
  std::uint32_t NumberOfValues = 0;
  std::uint32_t Type = 0;
  void* Value = nullptr;
};

struct EncoderParameters {
  std::uint32_t Count = 0;
  std::array<EncoderParameter, 16> Parameter{};
};

enum class ImageHandle : std::uintptr_t { None = 0 };

// The platform's image codecs, by the library's own calls. Everything but CLSIDFromString works
// between a start-up and its shutdown only (NotInitialized). File names are UTF-8. Nothing throws.
class CodecLibrary {
 public:
  virtual ~CodecLibrary() = default;

  // Version 1, no debug callback, background thread and external codecs not suppressed.
  virtual CodecStatus GdiplusStartup(std::uintptr_t& token) = 0;
  virtual void GdiplusShutdown(std::uintptr_t token) = 0;

  // Reads "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}", hexadecimal digits in any case. False for other
  // text.
  virtual bool CLSIDFromString(const char* text, CLSID& clsid) = 0;

  // A codec image with a copy of the bitmap's pixels; the caller disposes of it. InvalidParameter
  // for a handle that names no bitmap.
  virtual CodecStatus GdipCreateBitmapFromHBITMAP(BitmapHandle bitmap, ImageHandle& image) = 0;
  // A codec image of a file, which may stay open until the image is disposed of.
  virtual CodecStatus GdipCreateBitmapFromFile(const std::string& fileName, ImageHandle& image) = 0;
  // A new bitmap, owned by the caller, with the image's first frame over a background colour
  // (ARGB).
  virtual CodecStatus GdipCreateHBITMAPFromBitmap(ImageHandle image, BitmapHandle& bitmap,
                                                  std::uint32_t background) = 0;

  // Encodes the image into a file. An existing file is replaced when the new one is complete, and
  // stays as it was when that fails. With a save-flag parameter of EncoderValueMultiFrame the file
  // stays open for further pages; all pages of a decoded image go along.
  virtual CodecStatus GdipSaveImageToFile(ImageHandle image, const std::string& fileName,
                                          const CLSID& encoder,
                                          const EncoderParameters& parameters) = 0;
  // Adds another image as a page to the file that the first one's save left open.
  virtual CodecStatus GdipSaveAddImage(ImageHandle image, ImageHandle newImage,
                                       const EncoderParameters& parameters) = 0;
  // With a save-flag of EncoderValueFlush: closes that file.
  virtual CodecStatus GdipSaveAdd(ImageHandle image, const EncoderParameters& parameters) = 0;

  virtual CodecStatus GdipDisposeImage(ImageHandle image) = 0;
};

}  // namespace quillet
