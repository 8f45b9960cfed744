#include "platform/win32/win32_bitmaps.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <optional>

#include "platform/win32/gdi_handles.h"

namespace quillet {
namespace {

static_assert(sizeof(BITMAPINFOHEADER) == sizeof(::BITMAPINFOHEADER));

constexpr std::int64_t kLargestSize = std::numeric_limits<Long>::max();

// A header with the colour table that the system looks for behind it.
struct DibInfo {
  ::BITMAPINFOHEADER header;
  RGBQUAD colors[256];

  ::BITMAPINFO* get() noexcept { return reinterpret_cast<::BITMAPINFO*>(this); }
};

std::int64_t Stride(std::int64_t width, int depth) noexcept {
  return (width * depth + 31) / 32 * 4;
}

bool Fits(std::int64_t width, std::int64_t height, int depth) noexcept {
  return Stride(width, depth) <= kLargestSize / height;
}

// None for what a header alone cannot describe. A palette it has no room for is even steps from
// black to white.
std::optional<DibInfo> InfoOf(const BITMAPINFOHEADER& header) noexcept {
  if (header.biSize != sizeof header || header.biCompression != BI_RGB || header.biWidth < 1 ||
      header.biHeight == 0 || header.biHeight == std::numeric_limits<Long>::min()) {
    return std::nullopt;
  }
  const int depth = header.biBitCount;
  switch (depth) {
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
    case 32:
      break;
    default:
      return std::nullopt;
  }
  if (!Fits(header.biWidth, std::abs(header.biHeight), depth)) return std::nullopt;

  DibInfo info{std::bit_cast<::BITMAPINFOHEADER>(header), {}};
  info.header.biPlanes = 1;
  info.header.biSizeImage = 0;
  info.header.biClrUsed = info.header.biClrImportant = 0;
  if (depth <= 8) {
    const int last = (1 << depth) - 1;
    for (int i = 0; i <= last; ++i) {
      const BYTE gray = static_cast<BYTE>(i * 255 / last);
      info.colors[i] = {gray, gray, gray, 0};
    }
  }
  return info;
}

void ClearAlignment(void* bits, Long width, Long height, int depth) noexcept {
  const std::size_t stride = static_cast<std::size_t>(Stride(width, depth));
  const std::size_t rowBytes = static_cast<std::size_t>((std::int64_t{width} * depth + 7) / 8);
  if (rowBytes == stride) return;
  Byte* row = static_cast<Byte*>(bits);
  for (Long y = 0; y < height; ++y, row += stride) {
    std::memset(row + rowBytes, 0, stride - rowBytes);
  }
}

// Of a section, whose pixels anyone may see.
void ClearAlignment(BitmapHandle bitmap) noexcept {
  DIBSECTION section;
  if (::GetObjectW(SystemHandle(bitmap), sizeof section, &section) != sizeof section) return;
  const ::BITMAP& record = section.dsBm;
  if (record.bmBits) {
    ClearAlignment(record.bmBits, record.bmWidth, std::abs(record.bmHeight), record.bmBitsPixel);
  }
}

bool IsBitmap(BitmapHandle bitmap) noexcept {
  return ::GetObjectType(SystemHandle(bitmap)) == OBJ_BITMAP;
}
bool IsMemoryDC(DCHandle dc) noexcept {
  return ::GetObjectType(SystemHandle(dc)) == OBJ_MEMDC;
}

BitmapHandle SelectedBitmap(DCHandle dc) noexcept {
  return ToBitmapHandle(::GetCurrentObject(SystemHandle(dc), OBJ_BITMAP));
}

// The part of one axis where a block transfer has both source and destination.
struct Span {
  std::int64_t begin, end;
};
Span Overlap(std::int64_t offset, std::int64_t size, std::int64_t available,
             std::int64_t room) noexcept {
  return {std::max<std::int64_t>(0, -offset), std::min({size, room, available - offset})};
}

}  // namespace

bool Win32Bitmaps::GetObjectA(BitmapHandle bitmap, BITMAP& record) const {
  ::BITMAP found;
  if (!IsBitmap(bitmap) || ::GetObjectA(SystemHandle(bitmap), sizeof found, &found) == 0) {
    return false;
  }
  record = {.bmType = found.bmType,
            .bmWidth = found.bmWidth,
            .bmHeight = std::abs(found.bmHeight),
            .bmWidthBytes = found.bmWidthBytes,
            .bmPlanes = found.bmPlanes,
            .bmBitsPixel = found.bmBitsPixel};
  return true;
}

BitmapHandle Win32Bitmaps::CopyImage(BitmapHandle bitmap, Long width, Long height) {
  BITMAP source;
  if (width < 0 || height < 0 || !GetObjectA(bitmap, source)) return BitmapHandle::None;
  // The copy may have the screen's depth.
  constexpr int kDeepest = 32;
  if (!Fits(width ? width : source.bmWidth, height ? height : source.bmHeight, kDeepest)) {
    return BitmapHandle::None;
  }
  const HANDLE copied =
      ::CopyImage(SystemHandle(bitmap), IMAGE_BITMAP, width, height, LR_COPYRETURNORG);
  const BitmapHandle copy = ToBitmapHandle(copied);
  return copy == BitmapHandle::None || copy == bitmap ? copy : Keep(copy);
}

DCHandle Win32Bitmaps::CreateCompatibleDC() {
  const HDC context = ::CreateCompatibleDC(nullptr);
  if (!context) return DCHandle::None;
  try {
    m_contexts.insert(ToDCHandle(context));
  } catch (const std::bad_alloc&) {
    ::DeleteDC(context);
    return DCHandle::None;
  }
  return ToDCHandle(context);
}

BitmapHandle Win32Bitmaps::SelectObject(DCHandle dc, BitmapHandle bitmap) {
  if (!IsMemoryDC(dc) || !IsBitmap(bitmap)) return BitmapHandle::None;
  return ToBitmapHandle(::SelectObject(SystemHandle(dc), SystemHandle(bitmap)));
}

BitmapHandle Win32Bitmaps::CreateDIBSection(DCHandle dc, const BITMAPINFOHEADER& header,
                                            void*& bits) {
  std::optional<DibInfo> info = InfoOf(header);
  if (!IsMemoryDC(dc) || !info) return BitmapHandle::None;
  return CreateSection(*info->get(), bits);
}

BitmapHandle Win32Bitmaps::CreateSection(const ::BITMAPINFO& info, void*& bits) {
  void* pixels = nullptr;
  const HBITMAP section = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
  if (!section) return BitmapHandle::None;
  const BitmapHandle kept = Keep(ToBitmapHandle(section));
  if (kept != BitmapHandle::None) bits = pixels;
  return kept;
}

int Win32Bitmaps::SetDIBitsToDevice(DCHandle dc, Long width, Long height, const void* bits,
                                    const BITMAPINFOHEADER& header) {
  std::optional<DibInfo> info = InfoOf(header);
  if (!IsMemoryDC(dc) || !info || !bits || width < 1 || height < 1) return 0;
  // The block is what is asked for of it, so that its first row in either order lies where the
  // system looks for it.
  const Long rows = std::min(height, std::abs(header.biHeight));
  info->header.biHeight = header.biHeight < 0 ? -rows : rows;
  const int written = ::SetDIBitsToDevice(
      SystemHandle(dc), 0, 0, static_cast<DWORD>(std::min(width, header.biWidth)),
      static_cast<DWORD>(rows), 0, 0, 0, static_cast<UINT>(rows), bits, info->get(),
      DIB_RGB_COLORS);
  ::GdiFlush();
  ClearAlignment(SelectedBitmap(dc));
  return std::max(written, 0);
}

int Win32Bitmaps::GetDIBits(DCHandle dc, BitmapHandle bitmap, Long rows, void* bits,
                            const BITMAPINFOHEADER& header) {
  BITMAP record;
  std::optional<DibInfo> info = InfoOf(header);
  if (!IsMemoryDC(dc) || !info || !bits || rows < 1 || !GetObjectA(bitmap, record)) return 0;
  if (header.biBitCount != 24 || header.biWidth != record.bmWidth) return 0;
  const Long count = std::min({rows, std::abs(header.biHeight), record.bmHeight});
  // The system counts scan lines from the lowest row whatever order they are asked for in; of
  // top-down rows the first are the upper ones.
  const bool topDown = header.biHeight < 0;
  info->header.biHeight = topDown ? -record.bmHeight : record.bmHeight;
  const UINT first = static_cast<UINT>(topDown ? record.bmHeight - count : 0);

  const auto read = [&](HBITMAP from) {
    return ::GetDIBits(SystemHandle(dc), from, first, static_cast<UINT>(count), bits, info->get(),
                       DIB_RGB_COLORS);
  };
  int done = read(SystemHandle(bitmap));
  if (done == 0) {
    // The system need not read a bitmap that is selected into a context.
    const HANDLE copy = ::CopyImage(SystemHandle(bitmap), IMAGE_BITMAP, 0, 0, 0);
    if (!copy) return 0;
    done = read(static_cast<HBITMAP>(copy));
    ::DeleteObject(copy);
  }
  if (done > 0) ClearAlignment(bits, record.bmWidth, done, 24);
  return std::max(done, 0);
}

bool Win32Bitmaps::BitBlt(DCHandle destination, Long width, Long height, DCHandle source, Long x,
                          Long y) {
  if (!IsMemoryDC(destination) || !IsMemoryDC(source)) return false;
  const BitmapHandle target = SelectedBitmap(destination);
  BITMAP from, to;
  if (!GetObjectA(SelectedBitmap(source), from) || !GetObjectA(target, to)) return false;
  const Span columns = Overlap(x, width, from.bmWidth, to.bmWidth);
  const Span rows = Overlap(y, height, from.bmHeight, to.bmHeight);
  if (columns.begin >= columns.end || rows.begin >= rows.end) return true;
  const bool done =
      ::BitBlt(SystemHandle(destination), static_cast<int>(columns.begin),
               static_cast<int>(rows.begin), static_cast<int>(columns.end - columns.begin),
               static_cast<int>(rows.end - rows.begin), SystemHandle(source),
               static_cast<int>(columns.begin + x), static_cast<int>(rows.begin + y),
               SRCCOPY) != FALSE;
  ::GdiFlush();
  ClearAlignment(target);
  return done;
}

bool Win32Bitmaps::DeleteDC(DCHandle dc) {
  if (!IsMemoryDC(dc) || !::DeleteDC(SystemHandle(dc))) return false;
  m_contexts.erase(dc);
  return true;
}

bool Win32Bitmaps::DeleteObject(BitmapHandle bitmap) {
  if (!IsBitmap(bitmap)) return false;
  // The system may answer that it released a selected bitmap and do so later.
  for (const DCHandle dc : m_contexts) {
    if (SelectedBitmap(dc) == bitmap) return false;
  }
  if (!::DeleteObject(SystemHandle(bitmap))) return false;
  m_bitmaps.erase(bitmap);
  return true;
}

BitmapHandle Win32Bitmaps::Keep(BitmapHandle bitmap) {
  try {
    if (m_bitmaps.size() >= m_sweepAt) {
      std::erase_if(m_bitmaps, [](BitmapHandle entry) { return !IsBitmap(entry); });
      m_sweepAt = std::max<std::size_t>(64, 2 * m_bitmaps.size());
    }
    m_bitmaps.insert(bitmap);
    return bitmap;
  } catch (const std::bad_alloc&) {
    ::DeleteObject(SystemHandle(bitmap));
    return BitmapHandle::None;
  }
}

int Win32Bitmaps::BitmapCount() const {
  return static_cast<int>(std::ranges::count_if(m_bitmaps, IsBitmap));
}

int Win32Bitmaps::DeviceContextCount() const {
  return static_cast<int>(m_contexts.size());
}

}  // namespace quillet
