#include "platform/portable/test_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

#include "tests/support/error_of.h"

namespace quillet {
namespace {

struct Page {
  explicit Page(int dotsPerInch, std::ptrdiff_t gap = 0)
      : size(SizeOfTestPage(dotsPerInch)),
        stride(3 * size.width + gap),
        bytes(static_cast<std::size_t>(stride * size.height), kUntouched) {}

  const Byte* Pixel(int column, int row) const { return &bytes[Offset(column, row)]; }
  std::size_t Offset(int column, int row) const {
    return static_cast<std::size_t>(row * stride + 3 * column);
  }

  static constexpr Byte kUntouched = 0xA5;
  TestPageSize size;
  std::ptrdiff_t stride;
  std::vector<Byte> bytes;
};

TEST(TestPage, MeasuresA4ToTheNearestPixel) {
  const struct {
    int dotsPerInch, width, height;
  } cases[] = {{50, 413, 585},    {75, 620, 877},    {96, 794, 1123},    {150, 1240, 1754},
               {300, 2480, 3508}, {600, 4961, 7016}, {1200, 9921, 14031}};
  for (const auto& [dotsPerInch, width, height] : cases) {
    const TestPageSize size = SizeOfTestPage(dotsPerInch);
    EXPECT_EQ(size.width, width) << dotsPerInch;
    EXPECT_EQ(size.height, height) << dotsPerInch;
  }
}

TEST(TestPage, RefusesResolutionsThatNoScannerOffersAndRowsThatOverlap) {
  for (const int dotsPerInch : {-150, 0, 49, 1201})
    EXPECT_EQ(ErrorOf([&] { SizeOfTestPage(dotsPerInch); }), ErrorNumber::InvalidProcedureCall);
  Page page(50);
  for (const std::ptrdiff_t stride : {page.stride - 1, 1 - page.stride, std::ptrdiff_t{0}})
    EXPECT_EQ(ErrorOf([&] { RenderTestPage(50, page.bytes.data(), stride); }),
              ErrorNumber::InvalidProcedureCall);
  EXPECT_EQ(std::count(page.bytes.begin(), page.bytes.end(), Page::kUntouched),
            std::ssize(page.bytes));
}

// FNV-1a, 64 bits. The page is a reference for other results, so it changes only on purpose.
TEST(TestPage, IsTheSameToTheLastBitEverywhere) {
  const struct {
    int dotsPerInch;
    std::uint64_t sum;
  } cases[] = {{50, 0xDA0F4DAD57801EE1u}, {75, 0xC574EB2CFAA22774u}};
  for (const auto& [dotsPerInch, expected] : cases) {
    Page page(dotsPerInch);
    RenderTestPage(dotsPerInch, page.bytes.data(), page.stride);
    std::uint64_t sum = 0xCBF29CE484222325u;
    for (const Byte byte : page.bytes) sum = (sum ^ byte) * 0x100000001B3u;
    EXPECT_EQ(sum, expected) << dotsPerInch << std::hex << " gives 0x" << sum;
  }
}

TEST(TestPage, LeavesTheBytesBetweenRowsAloneAndDrawsEitherWayUp) {
  Page down(50, 5), up(50);
  RenderTestPage(50, down.bytes.data(), down.stride);
  RenderTestPage(50, &up.bytes[up.Offset(0, up.size.height - 1)], -up.stride);
  for (int row = 0; row < down.size.height; ++row) {
    const Byte* gap = down.Pixel(down.size.width, row);
    ASSERT_EQ(std::count(gap, gap + 5, Page::kUntouched), 5) << row;
    ASSERT_TRUE(std::equal(down.Pixel(0, row), gap, up.Pixel(0, up.size.height - 1 - row))) << row;
  }
}

TEST(TestPage, HasPaperAroundItsMarksAndManyColoursInBetween) {
  Page page(75);
  RenderTestPage(75, page.bytes.data(), page.stride);
  std::map<std::uint32_t, int> colours;
  for (std::size_t i = 0; i < page.bytes.size(); i += 3)
    ++colours[page.bytes[i] | page.bytes[i + 1] << 8 | page.bytes[i + 2] << 16];
  const std::uint32_t paper = 0xFCFBF6;
  const int pixels = page.size.width * page.size.height;
  EXPECT_GT(colours[paper], pixels / 3);
  EXPECT_LT(colours[paper], pixels * 3 / 4);
  EXPECT_GT(colours.size(), 20000u);
  for (const std::uint32_t primary : {0xFF0000u, 0x00FF00u, 0x0000FFu, 0xFFFFFFu, 0x000000u})
    EXPECT_GT(colours[primary], pixels / 1000) << std::hex << primary;
  for (const int column : {0, page.size.width - 1})
    for (const int row : {0, page.size.height - 1})
      EXPECT_EQ(*page.Pixel(column, row), 0xF6) << column << ',' << row;
}

}  // namespace
}  // namespace quillet
