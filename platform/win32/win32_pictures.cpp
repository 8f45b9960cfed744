#include "platform/win32/win32_pictures.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "base/runtime_error.h"
#include "platform/contracts/owned_handles.h"
#include "platform/portable/bmp_reader.h"
#include "platform/portable/little_endian.h"
#include "platform/win32/file_source.h"
#include "platform/win32/gdi_handles.h"
#include "platform/win32/sdk.h"
#include "platform/win32/win32_bitmaps.h"
#include "platform/win32/win32_files.h"

namespace quillet {
namespace {

class Win32Picture : public Picture {
 public:
  explicit Win32Picture(std::shared_ptr<int> count) : m_count(std::move(count)) { ++*m_count; }
  ~Win32Picture() override { --*m_count; }

  // Before anyone sees the picture.
  void Hold(ComPtr<::IPicture> object) noexcept {
    m_object = std::move(object);
    ComPtr<::IUnknown> unknown;
    m_object->QueryInterface(IID_IUnknown, unknown.ReceiveVoid());
    m_identity = unknown.get();
  }
  ::IPicture* Object() const noexcept { return m_object.get(); }

  const void* Identity() const noexcept override { return m_identity; }

  PictureKind Kind() const noexcept override {
    SHORT type = PICTYPE_NONE;
    m_object->get_Type(&type);
    switch (type) {
      case PICTYPE_BITMAP:
        return PictureKind::Bitmap;
      case PICTYPE_ICON:
        return PictureKind::Icon;
      case PICTYPE_METAFILE:
      case PICTYPE_ENHMETAFILE:
        return PictureKind::Metafile;
      default:
        return PictureKind::None;
    }
  }

  BitmapHandle Handle() const noexcept override {
    OLE_HANDLE handle = 0;
    if (FAILED(m_object->get_Handle(&handle))) return BitmapHandle::None;
    return ToBitmapHandle(LongToHandle(static_cast<LONG>(handle)));
  }

 private:
  std::shared_ptr<int> m_count;
  ComPtr<::IPicture> m_object;
  const void* m_identity = nullptr;  // its IUnknown: one for all its interfaces as long as it lives
};

// The header as the system takes it: with masks, or a palette of up to 256 colours.
struct SectionInfo {
  ::BITMAPINFOHEADER header{};
  union {
    DWORD masks[3];
    RGBQUAD colors[256]{};
  };
};

SectionInfo InfoOf(const Dib::Format& format) {
  SectionInfo info;
  info.header.biSize = sizeof info.header;
  info.header.biWidth = format.width;
  info.header.biHeight = format.topDown ? -format.height : format.height;
  info.header.biPlanes = 1;
  info.header.biBitCount = static_cast<WORD>(format.depth);
  info.header.biXPelsPerMeter = format.xPelsPerMeter;
  info.header.biYPelsPerMeter = format.yPelsPerMeter;
  if (format.depth == 16 || format.depth == 32) {
    info.header.biCompression = BI_BITFIELDS;
    info.masks[0] = format.masks.red;
    info.masks[1] = format.masks.green;
    info.masks[2] = format.masks.blue;
  }
  info.header.biClrUsed = static_cast<DWORD>(format.palette.size());
  for (std::size_t i = 0; i < format.palette.size() && i < std::size(info.colors); ++i) {
    const PaletteColor& color = format.palette[i];
    info.colors[i] = {color.blue, color.green, color.red, 0};
  }
  return info;
}

UniqueBitmap BitmapOf(Win32Bitmaps& bitmaps, const Dib& dib) {
  const SectionInfo info = InfoOf(dib.GetFormat());
  void* bits = nullptr;
  UniqueBitmap bitmap(bitmaps,
                      bitmaps.CreateSection(*reinterpret_cast<const ::BITMAPINFO*>(&info), bits));
  if (!bitmap) throw RunTimeError(ErrorNumber::OutOfMemory);
  std::memcpy(bits, dib.Bits(), static_cast<std::size_t>(dib.Stride() * dib.Height()));
  return bitmap;
}

// An icon or a mouse pointer with all its images inside the file.
bool IsIconFile(ByteSource& file) {
  constexpr std::size_t kHeader = 6;
  constexpr std::size_t kEntry = 16;
  std::array<Byte, kHeader> header{};
  if (file.Read(0, header) != header.size() || LoadWord(&header[0]) != 0) return false;
  const unsigned type = LoadWord(&header[2]);
  const unsigned count = LoadWord(&header[4]);
  if ((type != 1 && type != 2) || count == 0) return false;
  for (unsigned i = 0; i < count; ++i) {
    std::array<Byte, kEntry> entry{};
    if (file.Read(kHeader + kEntry * i, entry) != entry.size()) return false;
    if (std::uint64_t{LoadDword(&entry[8])} + LoadDword(&entry[12]) > file.Size()) return false;
  }
  return true;
}

// The content of a small file, for the system to read.
ComPtr<::IStream> StreamOf(ByteSource& file) {
  constexpr std::uint64_t kLargestIconFile = std::uint64_t{64} << 20;
  if (file.Size() > kLargestIconFile) throw RunTimeError(ErrorNumber::InvalidPicture);
  const std::size_t size = static_cast<std::size_t>(file.Size());
  const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, size);
  if (!memory) throw RunTimeError(ErrorNumber::OutOfMemory);
  ComPtr<::IStream> stream;  // owns the memory
  if (FAILED(::CreateStreamOnHGlobal(memory, TRUE, stream.Receive()))) {
    ::GlobalFree(memory);
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
  Byte* const bytes = static_cast<Byte*>(::GlobalLock(memory));
  if (!bytes) throw RunTimeError(ErrorNumber::OutOfMemory);
  const struct Unlock {
    HGLOBAL memory;
    ~Unlock() { ::GlobalUnlock(memory); }
  } unlock{memory};
  if (file.Read(0, {bytes, size}) != size) throw RunTimeError(ErrorNumber::PathFileAccess);
  return stream;
}

ComPtr<::IPicture> LoadIconObject(ByteSource& file) {
  const ComPtr<::IStream> stream = StreamOf(file);
  ComPtr<::IPicture> object;
  const HRESULT result = ::OleLoadPicture(stream.get(), static_cast<LONG>(file.Size()), FALSE,
                                          IID_IPicture, object.ReceiveVoid());
  if (result == E_OUTOFMEMORY) throw RunTimeError(ErrorNumber::OutOfMemory);
  if (FAILED(result)) throw RunTimeError(ErrorNumber::InvalidPicture);
  return object;
}

}  // namespace

Win32Pictures::Win32Pictures(Win32Bitmaps& bitmaps)
    : m_bitmaps(bitmaps), m_count(std::make_shared<int>(0)) {}

PictureRef Win32Pictures::EmptyPicture() {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_NONE;
  ComPtr<::IPicture> object;
  if (FAILED(::OleCreatePictureIndirect(&description, IID_IPicture, TRUE, object.ReceiveVoid()))) {
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
  return Wrap(object.get());
}

PictureRef Win32Pictures::OleCreatePictureIndirect(BitmapHandle bitmap) {
  BITMAP record;
  if (!m_bitmaps.GetObjectA(bitmap, record)) return nullptr;
  try {
    // All that can fail comes before the bitmap changes hands.
    const auto picture = std::make_shared<Win32Picture>(m_count);
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_BITMAP;
    description.bmp.hbitmap = SystemHandle(bitmap);
    ComPtr<::IPicture> object;
    if (FAILED(
            ::OleCreatePictureIndirect(&description, IID_IPicture, TRUE, object.ReceiveVoid()))) {
      return nullptr;
    }
    picture->Hold(std::move(object));
    return picture;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

PictureRef Win32Pictures::LoadPicture(const std::string& fileName) {
  try {
    Win32FileSource file(fileName);
    if (IsIconFile(file)) return Wrap(LoadIconObject(file).get());
    UniqueBitmap bitmap = BitmapOf(m_bitmaps, ReadBmp(file));
    PictureRef picture = OleCreatePictureIndirect(bitmap.get());
    if (!picture) throw RunTimeError(ErrorNumber::OutOfMemory);
    static_cast<void>(bitmap.release());
    return picture;
  } catch (const std::bad_alloc&) {
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
}

void Win32Pictures::SavePicture(const PictureRef& picture, const std::string& fileName) {
  const auto* wrapper = dynamic_cast<const Win32Picture*>(picture.get());
  const PictureKind kind = wrapper ? wrapper->Kind() : PictureKind::None;
  if (kind != PictureKind::Bitmap && kind != PictureKind::Icon)
    throw RunTimeError(ErrorNumber::InvalidPicture, "neither bitmap nor icon");
  ComPtr<::IPersistStream> object;
  ComPtr<::IStream> stream;
  if (FAILED(wrapper->Object()->QueryInterface(IID_IPersistStream, object.ReceiveVoid())) ||
      FAILED(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive())))
    throw RunTimeError(ErrorNumber::OutOfMemory);
  if (FAILED(object->Save(stream.get(), FALSE)))
    throw RunTimeError(ErrorNumber::InvalidPicture, "the picture gives no file");
  HGLOBAL memory = nullptr;
  ::GetHGlobalFromStream(stream.get(), &memory);
  const Byte* const bytes = static_cast<const Byte*>(::GlobalLock(memory));
  if (!bytes) throw RunTimeError(ErrorNumber::OutOfMemory);
  const struct Unlock {
    HGLOBAL memory;
    ~Unlock() { ::GlobalUnlock(memory); }
  } unlock{memory};
  // A picture's stream is a mark, the length of the file and the file.
  constexpr std::array<Byte, 4> kMark{'l', 't', 0, 0};
  constexpr std::size_t kPrefix = kMark.size() + 4;
  const std::size_t size = ::GlobalSize(memory);
  if (size < kPrefix || !std::equal(kMark.begin(), kMark.end(), bytes) ||
      LoadDword(bytes + kMark.size()) > size - kPrefix)
    throw RunTimeError(ErrorNumber::InvalidPicture, "the picture gives no file");
  const std::span<const Byte> content{bytes + kPrefix, LoadDword(bytes + kMark.size())};
  Win32Files().WriteFile(fileName, {&content, 1});
}

PictureRef Win32Pictures::Wrap(::IUnknown* object) {
  if (!object) return nullptr;
  ComPtr<::IPicture> picture;
  if (FAILED(object->QueryInterface(IID_IPicture, picture.ReceiveVoid()))) {
    throw RunTimeError(ErrorNumber::TypeMismatch);
  }
  try {
    const auto wrapper = std::make_shared<Win32Picture>(m_count);
    wrapper->Hold(std::move(picture));
    return wrapper;
  } catch (const std::bad_alloc&) {
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
}

ComPtr<::IPictureDisp> Win32Pictures::ObjectOf(const PictureRef& picture) {
  ComPtr<::IPictureDisp> object;
  if (const auto* wrapper = dynamic_cast<const Win32Picture*>(picture.get())) {
    wrapper->Object()->QueryInterface(IID_IPictureDisp, object.ReceiveVoid());
  }
  return object;
}

}  // namespace quillet
