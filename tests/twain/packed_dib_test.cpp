#include "twain/packed_dib.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/contracts/bitmap_services.h"

namespace quillet {
namespace {

constexpr std::size_t kNone = 0;

TEST(PackedDib, IsMeasuredByItsHeaderWithinItsBlock) {
  const struct {
    const char* name;
    BITMAPINFOHEADER header;
    std::size_t blockSize, size, rowsOffset;  // size kNone: refused
  } cases[] = {
      {"24 bits", {.biWidth = 100, .biHeight = 10, .biBitCount = 24}, 3040, 3040, 40},
      {"larger block", {.biWidth = 100, .biHeight = 10, .biBitCount = 24}, 4096, 3040, 40},
      {"cut short", {.biWidth = 100, .biHeight = 10, .biBitCount = 24}, 3039, kNone, 0},
      {"all greys", {.biWidth = 4, .biHeight = 1, .biBitCount = 8}, 1068, 1068, 1064},
      {"some greys", {.biWidth = 4, .biHeight = 1, .biBitCount = 8, .biClrUsed = 2}, 52, 52, 48},
      {"one pixel", {.biWidth = 1, .biHeight = 1, .biBitCount = 1}, 52, 52, 48},
      {"top-down", {.biWidth = 1, .biHeight = -2, .biBitCount = 24}, 48, 48, 40},
      {"masks", {.biWidth = 1, .biHeight = 1, .biBitCount = 32, .biCompression = 3}, 56, 56, 52},
      {"long header",
       {.biSize = 108, .biWidth = 1, .biHeight = 1, .biBitCount = 32, .biCompression = 3},
       112,
       112,
       108},
      {"no header", {.biWidth = 1, .biHeight = 1, .biBitCount = 24}, 39, kNone, 0},
      {"short header", {.biSize = 12, .biWidth = 1, .biHeight = 1, .biBitCount = 24}, 99, kNone, 0},
      {"header beyond",
       {.biSize = 0xFFFFFFFF, .biWidth = 1, .biHeight = 1, .biBitCount = 24},
       99,
       kNone,
       0},
      {"no width", {.biWidth = 0, .biHeight = 1, .biBitCount = 24}, 99, kNone, 0},
      {"negative width", {.biWidth = -1, .biHeight = 1, .biBitCount = 24}, 99, kNone, 0},
      {"no height", {.biWidth = 1, .biHeight = 0, .biBitCount = 24}, 99, kNone, 0},
      {"2^31 rows", {.biWidth = 1, .biHeight = INT32_MIN, .biBitCount = 24}, 99, kNone, 0},
      {"huge", {.biWidth = INT32_MAX, .biHeight = INT32_MAX, .biBitCount = 32}, 99, kNone, 0},
      {"no bits", {.biWidth = 1, .biHeight = 1, .biBitCount = 0}, 99, kNone, 0},
      {"odd bits", {.biWidth = 1, .biHeight = 1, .biBitCount = 7}, 99, kNone, 0},
      {"compressed",
       {.biWidth = 1, .biHeight = 1, .biBitCount = 8, .biCompression = 1},
       2000,
       kNone,
       0},
      {"colours beyond",
       {.biWidth = 1, .biHeight = 1, .biBitCount = 8, .biClrUsed = 0xFFFFFFFF},
       2000,
       kNone,
       0},
  };
  for (const auto& [name, header, blockSize, size, rowsOffset] : cases) {
    SCOPED_TRACE(name);
    std::vector<Byte> block(std::max(blockSize, sizeof header));
    std::memcpy(block.data(), &header, sizeof header);
    block.resize(blockSize);  // so that a sanitizer sees a read beyond it
    block.shrink_to_fit();
    const auto dib = PackedDib::Measure(block.data(), block.size());
    ASSERT_EQ(dib.has_value(), size != kNone);
    if (!dib) continue;
    EXPECT_EQ(dib->size, size);
    EXPECT_EQ(dib->rowsOffset, rowsOffset);
  }
}

}  // namespace
}  // namespace quillet
