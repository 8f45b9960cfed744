#pragma once

#include "platform/contracts/codec_library.h"

namespace quillet {

// GDI+. A bitmap made from a file keeps that file open until it is disposed of.
class Win32Codecs : public CodecLibrary {
 public:
  CodecStatus GdiplusStartup(std::uintptr_t& token) override;
  void GdiplusShutdown(std::uintptr_t token) override;
  bool CLSIDFromString(const char* text, CLSID& clsid) override;
  CodecStatus GdipCreateBitmapFromHBITMAP(BitmapHandle bitmap, ImageHandle& image) override;
  CodecStatus GdipCreateBitmapFromFile(const std::string& fileName, ImageHandle& image) override;
  CodecStatus GdipCreateHBITMAPFromBitmap(ImageHandle image, BitmapHandle& bitmap,
                                          std::uint32_t background) override;
  // The library truncates the file that is there before it knows whether it can write it: a file is
  // written beside it and takes its place.
  CodecStatus GdipSaveImageToFile(ImageHandle image, const std::string& fileName,
                                  const CLSID& encoder,
                                  const EncoderParameters& parameters) override;
  CodecStatus GdipSaveAddImage(ImageHandle image, ImageHandle newImage,
                               const EncoderParameters& parameters) override;
  CodecStatus GdipSaveAdd(ImageHandle image, const EncoderParameters& parameters) override;
  CodecStatus GdipDisposeImage(ImageHandle image) override;
};

}  // namespace quillet
