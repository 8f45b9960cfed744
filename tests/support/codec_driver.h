#pragma once

#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "platform/portable/portable_bitmaps.h"
#include "platform/portable/portable_codecs.h"

namespace quillet {

inline std::vector<Byte> FileBytes(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteBytes(const std::string& name, const std::vector<Byte>& bytes) {
  std::ofstream file(name, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

// Drives the codecs as the control does, on pictures given and taken as pixels.
class CodecDriver {
 public:
  CodecDriver() { codecs.GdiplusStartup(m_token); }
  ~CodecDriver() { codecs.GdiplusShutdown(m_token); }

  CodecStatus Save(const Dib& dib, const std::string& file, IMAGE_TYPE type, Long quality = 75) {
    const ImageHandle image = ImageOf(dib);
    const CodecStatus status = codecs.GdipSaveImageToFile(
        image, file, Encoder(type), List("{1D5BE4B5-FA4A-452D-9CDD-5DB35105E7EB}", quality));
    codecs.GdipDisposeImage(image);
    return status;
  }

  CodecStatus Load(const std::string& file, std::optional<Dib>& dib, std::uint32_t background = 0) {
    ImageHandle image{};
    CodecStatus status = codecs.GdipCreateBitmapFromFile(file, image);
    if (status != CodecStatus::Ok) return status;
    BitmapHandle bitmap{};
    status = codecs.GdipCreateHBITMAPFromBitmap(image, bitmap, background);
    if (status == CodecStatus::Ok) dib = *bitmaps->FindBitmap(bitmap);
    bitmaps->DeleteObject(bitmap);
    codecs.GdipDisposeImage(image);
    return status;
  }

  // Writes the pages of the file, and the picture behind them, to another file.
  CodecStatus Append(const std::string& from, const std::string& to, const Dib& dib) {
    ImageHandle first{};
    CodecStatus status = codecs.GdipCreateBitmapFromFile(from, first);
    if (status != CodecStatus::Ok) return status;
    const char* const flag = "{292266FC-AC40-47BF-8CFC-A85B89A655DE}";
    status = codecs.GdipSaveImageToFile(first, to, Encoder(twTIFF), List(flag, 18));
    if (status == CodecStatus::Ok) {
      const ImageHandle second = ImageOf(dib);
      status = codecs.GdipSaveAddImage(first, second, List(flag, 23));
      codecs.GdipDisposeImage(second);
    }
    if (status == CodecStatus::Ok) status = codecs.GdipSaveAdd(first, List(flag, 20));
    codecs.GdipDisposeImage(first);
    return status;
  }

  CLSID Encoder(IMAGE_TYPE type) {
    constexpr char kLast[] = {'0', '1', '2', '5', '6'};
    std::string text = "{557cf400-1a04-11D3-9A73-0000f81ef32e}";
    text[8] = kLast[type];
    CLSID id;
    codecs.CLSIDFromString(text.c_str(), id);
    return id;
  }
  // The value stays good until the next list.
  EncoderParameters List(const char* name, Long value) {
    EncoderParameters list;
    m_value = static_cast<std::uint32_t>(value);
    list.Count = 1;
    codecs.CLSIDFromString(name, list.Parameter[0].Guid);
    list.Parameter[0].NumberOfValues = 1;
    list.Parameter[0].Type = EncoderParameterValueTypeLong;
    list.Parameter[0].Value = &m_value;
    return list;
  }
  ImageHandle ImageOf(const Dib& dib) {
    const BitmapHandle bitmap = bitmaps->AddBitmap(dib);
    ImageHandle image{};
    codecs.GdipCreateBitmapFromHBITMAP(bitmap, image);
    bitmaps->DeleteObject(bitmap);
    return image;
  }

  std::shared_ptr<PortableBitmaps> bitmaps = std::make_shared<PortableBitmaps>();
  PortableCodecs codecs{bitmaps};

 private:
  std::uintptr_t m_token = 0;
  std::uint32_t m_value = 0;
};

}  // namespace quillet
