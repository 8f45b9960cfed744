#include "platform/win32/win32_codecs.h"

#include <string>

#include "platform/win32/file_names.h"
#include "platform/win32/replacing_file.h"
#include "platform/win32/sdk.h"
#include "platform/win32/text.h"

namespace quillet {
namespace {

namespace flat = Gdiplus::DllExports;

CodecStatus Status(Gdiplus::GpStatus status) {
  return static_cast<CodecStatus>(status);
}

Gdiplus::GpBitmap* Native(ImageHandle image) {
  return reinterpret_cast<Gdiplus::GpBitmap*>(image);
}

::CLSID Native(const CLSID& clsid) {
  ::CLSID native{clsid.Data1, clsid.Data2, clsid.Data3, {}};
  for (std::size_t i = 0; i < clsid.Data4.size(); ++i) native.Data4[i] = clsid.Data4[i];
  return native;
}

// The library's own record has room for one entry and is followed by the others.
struct NativeParameters {
  UINT Count = 0;
  Gdiplus::EncoderParameter Parameter[16]{};

  explicit NativeParameters(const EncoderParameters& parameters) : Count(parameters.Count) {
    for (std::uint32_t i = 0; i < parameters.Count && i < std::size(Parameter); ++i) {
      const EncoderParameter& entry = parameters.Parameter[i];
      Parameter[i].Guid = Native(entry.Guid);
      Parameter[i].NumberOfValues = entry.NumberOfValues;
      Parameter[i].Type = entry.Type;
      Parameter[i].Value = entry.Value;
    }
  }

  const Gdiplus::EncoderParameters* get() const {
    static_assert(offsetof(NativeParameters, Parameter) ==
                  offsetof(Gdiplus::EncoderParameters, Parameter));
    return reinterpret_cast<const Gdiplus::EncoderParameters*>(this);
  }
};

bool KeepsFileOpen(const EncoderParameters& parameters) {
  return parameters.Count == 1 && parameters.Parameter[0].Value &&
         *static_cast<const std::uint32_t*>(parameters.Parameter[0].Value) ==
             EncoderValueMultiFrame &&
         Native(parameters.Parameter[0].Guid) == Gdiplus::EncoderSaveFlag;
}

// The pages after the first of a decoded file follow one by one.
CodecStatus AddFurtherFrames(Gdiplus::GpBitmap* image) {
  UINT count = 1;
  if (flat::GdipImageGetFrameCount(image, &Gdiplus::FrameDimensionPage, &count) != Gdiplus::Ok)
    return CodecStatus::Ok;
  std::uint32_t flag = EncoderValueFrameDimensionPage;
  EncoderParameters parameters;
  parameters.Count = 1;
  NativeParameters native(parameters);
  native.Parameter[0] = {Gdiplus::EncoderSaveFlag, 1, EncoderParameterValueTypeLong, &flag};
  for (UINT frame = 1; frame < count; ++frame) {
    Gdiplus::GpStatus status =
        flat::GdipImageSelectActiveFrame(image, &Gdiplus::FrameDimensionPage, frame);
    if (status == Gdiplus::Ok) status = flat::GdipSaveAdd(image, native.get());
    if (status != Gdiplus::Ok) return Status(status);
  }
  return CodecStatus::Ok;
}

// Of a system's error about the file to write.
CodecStatus StatusOf(unsigned long error, const std::wstring& target) {
  switch (error) {
    case 0:
      return CodecStatus::Ok;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return CodecStatus::FileNotFound;
    case ERROR_ACCESS_DENIED:
      return IsFolder(target) ? CodecStatus::Win32Error : CodecStatus::AccessDenied;
    default:
      return CodecStatus::Win32Error;
  }
}

}  // namespace

CodecStatus Win32Codecs::GdiplusStartup(std::uintptr_t& token) {
  const Gdiplus::GdiplusStartupInput input(nullptr, FALSE, FALSE);
  ULONG_PTR native = 0;
  const CodecStatus status = Status(Gdiplus::GdiplusStartup(&native, &input, nullptr));
  token = native;
  return status;
}

void Win32Codecs::GdiplusShutdown(std::uintptr_t token) {
  Gdiplus::GdiplusShutdown(token);
}

bool Win32Codecs::CLSIDFromString(const char* text, CLSID& clsid) {
  ::CLSID native{};
  if (FAILED(::CLSIDFromString(Utf16(text).c_str(), &native))) return false;
  clsid.Data1 = native.Data1;
  clsid.Data2 = native.Data2;
  clsid.Data3 = native.Data3;
  for (std::size_t i = 0; i < clsid.Data4.size(); ++i) clsid.Data4[i] = native.Data4[i];
  return true;
}

CodecStatus Win32Codecs::GdipCreateBitmapFromHBITMAP(BitmapHandle bitmap, ImageHandle& image) {
  const auto native = reinterpret_cast<HBITMAP>(bitmap);
  if (::GetObjectType(native) != OBJ_BITMAP) return CodecStatus::InvalidParameter;
  Gdiplus::GpBitmap* made = nullptr;
  const CodecStatus status = Status(flat::GdipCreateBitmapFromHBITMAP(native, nullptr, &made));
  image = ImageHandle{reinterpret_cast<std::uintptr_t>(made)};
  return status;
}

CodecStatus Win32Codecs::GdipCreateBitmapFromFile(const std::string& fileName, ImageHandle& image) {
  Gdiplus::GpBitmap* made = nullptr;
  const CodecStatus status =
      Status(flat::GdipCreateBitmapFromFile(SystemFileName(fileName).c_str(), &made));
  image = ImageHandle{reinterpret_cast<std::uintptr_t>(made)};
  return status;
}

CodecStatus Win32Codecs::GdipCreateHBITMAPFromBitmap(ImageHandle image, BitmapHandle& bitmap,
                                                     std::uint32_t background) {
  HBITMAP made = nullptr;
  const CodecStatus status =
      Status(flat::GdipCreateHBITMAPFromBitmap(Native(image), &made, background));
  // Handles have 32 significant bits and are kept sign-extended, as the system hands them out.
  bitmap =
      BitmapHandle{static_cast<std::uintptr_t>(static_cast<std::intptr_t>(HandleToLong(made)))};
  return status;
}

CodecStatus Win32Codecs::GdipSaveImageToFile(ImageHandle image, const std::string& fileName,
                                             const CLSID& encoder,
                                             const EncoderParameters& parameters) {
  const ::CLSID identifier = Native(encoder);
  const NativeParameters native(parameters);
  const std::wstring target = SystemFileName(fileName);
  if (target.empty()) return CodecStatus::InvalidParameter;
  if (KeepsFileOpen(parameters)) {
    const CodecStatus status =
        Status(flat::GdipSaveImageToFile(Native(image), target.c_str(), &identifier, native.get()));
    return status == CodecStatus::Ok ? AddFurtherFrames(Native(image)) : status;
  }
  ReplacingFile file(target);
  if (file.Error() != 0) return StatusOf(file.Error(), target);
  const CodecStatus status = Status(
      flat::GdipSaveImageToFile(Native(image), file.Name().c_str(), &identifier, native.get()));
  if (status != CodecStatus::Ok) return status;
  return StatusOf(file.Commit(), target);
}

CodecStatus Win32Codecs::GdipSaveAddImage(ImageHandle image, ImageHandle newImage,
                                          const EncoderParameters& parameters) {
  return Status(
      flat::GdipSaveAddImage(Native(image), Native(newImage), NativeParameters(parameters).get()));
}

CodecStatus Win32Codecs::GdipSaveAdd(ImageHandle image, const EncoderParameters& parameters) {
  return Status(flat::GdipSaveAdd(Native(image), NativeParameters(parameters).get()));
}

CodecStatus Win32Codecs::GdipDisposeImage(ImageHandle image) {
  return Status(flat::GdipDisposeImage(Native(image)));
}

}  // namespace quillet
