#include "platform/portable/scanner_glass.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "base/rounding.h"
#include "platform/contracts/bitmap_services.h"
#include "platform/portable/source_capabilities.h"
#include "platform/portable/test_page.h"
#include "platform/portable/transfer.h"

namespace quillet {
namespace {

constexpr double kMetresPerInch = 0.0254;

// Pixels of the whole glass.
TestPageSize GlassSize(int xResolution, int yResolution) {
  return {SizeOfTestPage(xResolution).width, SizeOfTestPage(yResolution).height};
}

// A range of pixels along one axis, at least one of them.
struct Stretch1D {
  Long from, to;
};

Stretch1D PixelsOf(TW_FIX32 from, TW_FIX32 to, int resolution, Long most) {
  const Long first = std::clamp(ToLong(FromFix32(from) * resolution), Long{0}, most - 1);
  return {first, std::clamp(ToLong(FromFix32(to) * resolution), first + 1, most)};
}

int DepthOf(TW_UINT16 pixelType) {
  return pixelType == TWPT_BW ? 1 : pixelType == TWPT_GRAY ? 8 : 24;
}

Byte GreyOf(const Byte* pixel) {
  return static_cast<Byte>((114 * pixel[0] + 587 * pixel[1] + 299 * pixel[2] + 500) / 1000);
}

// The target row is zero before.
void ConvertRow(const Byte* source, Long width, int depth, Byte* target) {
  if (depth == 24) {
    std::memcpy(target, source, static_cast<std::size_t>(width) * 3);
    return;
  }
  constexpr int kMidGrey = 128;
  for (Long x = 0; x < width; ++x) {
    const Byte grey = GreyOf(source + 3 * x);
    if (depth == 8)
      target[x] = grey;
    else if (grey >= kMidGrey)
      target[x / 8] = static_cast<Byte>(target[x / 8] | 0x80 >> (x % 8));
  }
}

// Header and colour table, from black to white.
std::vector<Byte> PackedHeader(Long width, Long height, int depth, const ScanSettings& settings) {
  const int colors = depth > 8 ? 0 : 1 << depth;
  BITMAPINFOHEADER header;
  header.biWidth = width;
  header.biHeight = height;
  header.biBitCount = static_cast<std::uint16_t>(depth);
  header.biSizeImage = static_cast<std::uint32_t>(DibStride(width, depth) * height);
  header.biXPelsPerMeter = ToLong(settings.xResolution / kMetresPerInch);
  header.biYPelsPerMeter = ToLong(settings.yResolution / kMetresPerInch);
  header.biClrUsed = static_cast<std::uint32_t>(colors);
  std::vector<Byte> bytes(sizeof header);
  std::memcpy(bytes.data(), &header, sizeof header);
  for (int i = 0; i < colors; ++i) {
    const auto level = static_cast<Byte>(255 * i / (colors - 1));
    bytes.insert(bytes.end(), {level, level, level, 0});
  }
  return bytes;
}

Dib::Format Format24(Long width, Long height) {
  return {.width = width, .height = height, .depth = 24};
}

// The top-left corner of a bitmap.
Dib Corner(const Dib& source, Long width, Long height) {
  if (width == source.Width() && height == source.Height()) return source;
  Dib corner(Format24(width, height));
  TransferPixels({source.Row(0), source.StrideDown(), &source.GetFormat()}, {}, corner, {}, width,
                 height);
  return corner;
}

Dib Stretched(const Dib& source, Long width, Long height) {
  return Stretch(source, width, height, BestKernels().set, nullptr);
}

// One axis of a page on the glass: how many of its pixels lie there, and how many they become.
struct PageAxis {
  Long seen, scanned;
};

PageAxis PlacePage(Long pixels, double pixelsPerInch, TW_FIX32 glass, int resolution) {
  const double fits = std::ceil(FromFix32(glass) * pixelsPerInch);
  const Long seen = fits < pixels ? ToLong(fits) : pixels;
  return {seen, std::max(ToLong(seen / pixelsPerInch * resolution), Long{1})};
}

}  // namespace

GlobalHandle ScannerGlass::Scan(GlobalMemory& memory, const ScanSettings& settings) const try {
  const auto& [frame, pixelType, xResolution, yResolution] = settings;
  const TestPageSize size = GlassSize(xResolution, yResolution);
  const Stretch1D columns = PixelsOf(frame.Left, frame.Right, xResolution, size.width);
  const Stretch1D lines = PixelsOf(frame.Top, frame.Bottom, yResolution, size.height);
  const Long width = columns.to - columns.from;
  const Long height = lines.to - lines.from;
  const int depth = DepthOf(pixelType);
  const std::vector<Byte> header = PackedHeader(width, height, depth, settings);
  const auto stride = static_cast<std::ptrdiff_t>(DibStride(width, depth));

  UniqueGlobal block(memory,
                     memory.GlobalAlloc(header.size() + static_cast<std::size_t>(stride * height)));
  {
    const GlobalLockGuard lock(memory, block.get());
    if (!lock.get()) return GlobalHandle::None;
    auto* const bytes = static_cast<Byte*>(lock.get());
    std::memcpy(bytes, header.data(), header.size());
    Byte* const top = bytes + header.size() + stride * (height - 1);
    if (!m_page && depth == 24 && xResolution == yResolution && width == size.width &&
        height == size.height) {
      RenderTestPage(xResolution, top, -stride);  // a large page is in memory just once
    } else {
      const Dib look = Look(xResolution, yResolution);
      for (Long y = 0; y < height; ++y)
        ConvertRow(look.Row(lines.from + y) + 3 * columns.from, width, depth, top - y * stride);
    }
  }
  return std::exchange(block.out(), GlobalHandle::None);
} catch (const std::bad_alloc&) {
  return GlobalHandle::None;
}

// The whole glass in 24 bits.
Dib ScannerGlass::Look(int xResolution, int yResolution) const {
  const TestPageSize size = GlassSize(xResolution, yResolution);
  if (!m_page) {
    const int finest = std::max(xResolution, yResolution);
    const TestPageSize whole = SizeOfTestPage(finest);
    Dib page(Format24(whole.width, whole.height));
    RenderTestPage(finest, page.WritableBits(), page.Stride());
    return xResolution == yResolution ? page : Stretched(page, size.width, size.height);
  }
  Dib look(Format24(size.width, size.height));
  for (Long y = 0; y < size.height; ++y) std::memset(look.WritableRow(y), 0xFF, look.RowBytes());

  const Dib::Format& format = m_page->GetFormat();
  const double fill =
      std::max(format.width / FromFix32(GlassWidth()), format.height / FromFix32(GlassHeight()));
  const bool known = format.xPelsPerMeter > 0 && format.yPelsPerMeter > 0;
  const PageAxis across =
      PlacePage(format.width, known ? format.xPelsPerMeter * kMetresPerInch : fill, GlassWidth(),
                xResolution);
  const PageAxis down =
      PlacePage(format.height, known ? format.yPelsPerMeter * kMetresPerInch : fill, GlassHeight(),
                yResolution);
  const Dib page = Stretched(Corner(*m_page, across.seen, down.seen), across.scanned, down.scanned);
  TransferPixels({page.Row(0), page.StrideDown(), &page.GetFormat()}, {}, look, {},
                 std::min(across.scanned, size.width), std::min(down.scanned, size.height));
  return look;
}

}  // namespace quillet
