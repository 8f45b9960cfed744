#include "platform/portable/scanner_glass.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/contracts/bitmap_services.h"
#include "platform/portable/portable_memory.h"
#include "platform/portable/source_capabilities.h"
#include "platform/portable/test_page.h"

namespace quillet {
namespace {

constexpr int kResolution = 50;

// A packed bitmap, read at points counted from the top-left corner.
struct Image {
  BITMAPINFOHEADER header;
  std::vector<Byte> rows;  // as they come

  std::size_t Stride() const { return rows.size() / static_cast<std::size_t>(header.biHeight); }
  const Byte* Row(Long y) const {
    return rows.data() + static_cast<std::size_t>(header.biHeight - 1 - y) * Stride();
  }
  const Byte* Pixel24(Long x, Long y) const { return Row(y) + 3 * x; }
  bool IsWhite(Long x, Long y) const { return (Row(y)[x / 8] >> (7 - x % 8) & 1) != 0; }
};

Image Scan(const ScannerGlass& glass, TW_UINT16 pixelType, TW_FRAME frame) {
  PortableMemory memory;
  const UniqueGlobal block(memory,
                           glass.Scan(memory, {frame, pixelType, kResolution, kResolution}));
  const GlobalLockGuard lock(memory, block.get());
  const auto* const bytes = static_cast<const Byte*>(lock.get());
  Image image;
  std::memcpy(&image.header, bytes, sizeof image.header);
  const std::size_t start = sizeof image.header + 4 * image.header.biClrUsed;
  image.rows.assign(bytes + start, bytes + start + image.header.biSizeImage);
  return image;
}

TW_FRAME Whole() {
  return {{}, {}, GlassWidth(), GlassHeight()};
}

// A picture of one colour and that size; no resolution for 0 pixels per metre.
Dib Plain(Long width, Long height, PaletteColor color, Long pelsPerMeter) {
  Dib dib({.width = width,
           .height = height,
           .depth = 24,
           .xPelsPerMeter = pelsPerMeter,
           .yPelsPerMeter = pelsPerMeter});
  for (Long y = 0; y < height; ++y)
    for (Long x = 0; x < width; ++x) std::memcpy(dib.WritableRow(y) + 3 * x, &color, 3);
  return dib;
}

TEST(ScannerGlass, TheTestPageIsScannedPixelForPixelAndCroppedByTheFrame) {
  const TestPageSize size = SizeOfTestPage(kResolution);
  const std::size_t stride = static_cast<std::size_t>(size.width) * 3;
  std::vector<Byte> page(stride * static_cast<std::size_t>(size.height));
  RenderTestPage(kResolution, page.data(), static_cast<std::ptrdiff_t>(stride));
  const auto at = [&](Long x, Long y) {
    return page.data() + static_cast<std::size_t>(y) * stride + 3 * x;
  };
  const ScannerGlass glass;
  const Image whole = Scan(glass, TWPT_RGB, Whole());
  ASSERT_EQ(whole.header.biWidth, size.width);
  ASSERT_EQ(whole.header.biHeight, size.height);
  for (Long y = 0; y < size.height; ++y)
    ASSERT_EQ(std::memcmp(whole.Row(y), at(0, y), stride), 0) << y;

  const Image part = Scan(glass, TWPT_RGB, {{2, 0}, {3, 0x8000}, {4, 0}, {5, 0}});
  ASSERT_EQ(part.header.biWidth, 100);
  ASSERT_EQ(part.header.biHeight, 75);
  for (Long y = 0; y < 75; ++y) ASSERT_EQ(std::memcmp(part.Row(y), at(100, 175 + y), 300), 0) << y;
}

TEST(ScannerGlass, ColoursBecomeGreysByTheirBrightnessAndSplitAtTheMiddle) {
  const struct {
    PaletteColor color;
    Byte grey;
    bool white;
  } cases[] = {{{0, 0, 0}, 0, false},       {{255, 255, 255}, 255, true},
               {{0, 0, 255}, 76, false},    {{0, 255, 0}, 150, true},
               {{255, 0, 0}, 29, false},    {{127, 127, 127}, 127, false},
               {{128, 128, 128}, 128, true}};
  for (const auto& [color, grey, white] : cases) {
    ScannerGlass glass;
    glass.PutPage(Plain(20, 10, color, 0));
    EXPECT_EQ(Scan(glass, TWPT_GRAY, Whole()).Row(3)[9], grey);
    EXPECT_EQ(Scan(glass, TWPT_BW, Whole()).IsWhite(9, 3), white);
  }
}

TEST(ScannerGlass, APictureLiesThereInItsOwnSize) {
  const PaletteColor red{0, 0, 255};
  const struct {
    Long width, height, pelsPerMeter;
    Long scannedWidth, scannedHeight;
  } cases[] = {
      {200, 100, 3937, 100, 50},   // 2 x 1 inches
      {50, 25, 985, 100, 50},      // the same, coarser
      {4000, 100, 3937, 413, 50},  // hangs over the right edge
      {100, 200, 0, 292, 585},     // as large as the glass takes
      {500000, 1, 39, 413, 50},    // enormous, and a thin line: one inch high
  };
  for (const auto& page : cases) {
    ScannerGlass glass;
    glass.PutPage(Plain(page.width, page.height, red, page.pelsPerMeter));
    const Image image = Scan(glass, TWPT_RGB, Whole());
    ASSERT_EQ(image.header.biWidth, 413);
    ASSERT_EQ(image.header.biHeight, 585);
    Long width = 0, height = 0;
    while (width < 413 && image.Pixel24(width, 0)[0] == 0) ++width;
    while (height < 585 && image.Pixel24(0, height)[0] == 0) ++height;
    EXPECT_EQ(width, page.scannedWidth) << page.width;
    EXPECT_EQ(height, page.scannedHeight) << page.height;
    EXPECT_EQ(image.Pixel24(width - 1, height - 1)[2], 255);
  }
}

}  // namespace
}  // namespace quillet
