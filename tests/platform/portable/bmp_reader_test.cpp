#include "platform/portable/bmp_reader.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

#include "platform/portable/transfer.h"
#include "tests/support/bmp_file.h"
#include "tests/support/error_of.h"
#include "tests/support/pictures.h"

namespace quillet {
namespace {

constexpr Long kWidth = 7;
constexpr Long kHeight = 5;

Dib Read(const std::vector<Byte>& bytes) {
  MemorySource source(bytes);
  return ReadBmp(source);
}

PixelRows24 Shown(const Dib& dib) {
  PixelRows24 rows = RowsOf(dib.Width(), dib.Height(), [](Long, Long) { return Pixel{}; });
  ReadRows24(dib, dib.Height(), true, rows.bytes.data());
  return rows;
}

ErrorNumber Refusal(const BmpFile& file) {
  return ErrorOf([&] { Read(file.Bytes()); });
}

std::uint32_t Index(Long x, Long y, int depth) {
  return static_cast<std::uint32_t>(x + 3 * y) & ((1u << depth) - 1);
}

BmpFile PaletteFile(int depth, std::uint32_t headerSize = 40) {
  BmpFile file{.headerSize = headerSize, .width = kWidth, .height = kHeight, .depth = depth};
  for (int i = 0; i < 1 << depth; ++i) {
    file.palette.push_back({static_cast<Byte>(200 - i), static_cast<Byte>(i), 77});
  }
  file.PackPixels([&](Long x, Long y) { return Index(x, y, depth); });
  return file;
}

BmpFile ColorFile(std::uint32_t headerSize = 40) {
  BmpFile file{.headerSize = headerSize, .width = kWidth, .height = kHeight, .depth = 24};
  file.PackPixels([](Long x, Long y) {
    const Pixel pixel = Gradient(x, y);
    return static_cast<std::uint32_t>(pixel.blue | pixel.green << 8 | pixel.red << 16);
  });
  return file;
}

// The stream in hexadecimal.
BmpFile RleFile(int depth, const std::string& stream) {
  BmpFile file = PaletteFile(depth);
  file.compression = depth == 8 ? 1 : 2;
  file.pixels.clear();
  std::istringstream bytes(stream);
  for (int byte; bytes >> std::hex >> byte;) file.pixels.push_back(static_cast<Byte>(byte));
  return file;
}

TEST(BmpReader, EveryHeaderIsReadAtEveryPaletteDepth) {
  for (const std::uint32_t headerSize : {12u, 40u, 52u, 56u, 108u, 124u}) {
    for (const int depth : {1, 4, 8}) {
      const Dib dib = Read(PaletteFile(depth, headerSize).Bytes());
      EXPECT_EQ(dib.Depth(), depth);
      EXPECT_EQ(Shown(dib), RowsOf(kWidth, kHeight,
                                   [&](Long x, Long y) {
                                     const Byte i = static_cast<Byte>(Index(x, y, depth));
                                     return Pixel{static_cast<Byte>(200 - i), i, 77};
                                   }))
          << headerSize << ", " << depth;
    }
    EXPECT_EQ(Shown(Read(ColorFile(headerSize).Bytes())), RowsOf(kWidth, kHeight, Gradient));
  }
}

TEST(BmpReader, RowsMayGoTopDownAndPixelsStartLater) {
  BmpFile file = ColorFile();
  file.height = -kHeight;
  file.PackPixels([](Long x, Long) { return static_cast<std::uint32_t>(x); });
  file.pixels.insert(file.pixels.begin(), 10, Byte{0xEE});
  file.pixelsStart = 54 + 10;
  file.xPelsPerMeter = 11811;
  file.yPelsPerMeter = 5906;
  const Dib dib = Read(file.Bytes());
  EXPECT_EQ(Shown(dib), RowsOf(kWidth, kHeight, [](Long x, Long) {
              return Pixel{static_cast<Byte>(x), 0, 0};
            }));
  EXPECT_EQ(dib.GetFormat().xPelsPerMeter, 11811);
  EXPECT_EQ(dib.GetFormat().yPelsPerMeter, 5906);
}

TEST(BmpReader, AShortPaletteIsBlackBeyondItsEnd) {
  BmpFile file = PaletteFile(4);
  file.palette.erase(file.palette.begin() + 3, file.palette.end());
  EXPECT_EQ(Shown(Read(file.Bytes())).At(4, 0), (Pixel{0, 0, 0}));
  // Sixteen colours are promised, three are there before the pixels start.
  file.colorsUsed = 0;
  const PixelRows24 shown = Shown(Read(file.Bytes()));
  EXPECT_EQ(shown.At(2, 0), (Pixel{198, 2, 77}));
  EXPECT_EQ(shown.At(4, 0), (Pixel{0, 0, 0}));
}

TEST(BmpReader, MasksSayWhereTheChannelsLie) {
  const struct {
    int depth;
    std::vector<std::uint32_t> masks;
    std::uint32_t value;
    Pixel expected;
  } cases[] = {
      {16, {}, 0x7C00 | 3, {24, 0, 255}},
      {16, {0xF800, 0x07E0, 0x001F}, 0x07E0 | 2, {16, 255, 0}},
      {16, {0xF800, 0x07E0, 0x001F}, 0x0400 | 0x8000, {0, 130, 132}},
      {16, {0x0F00, 0x00F0, 0x000F}, 0x0A51, {17, 85, 170}},
      {32, {}, 0xFF030201, {1, 2, 3}},
      {32, {0x000000FF, 0x0000FF00, 0x00FF0000}, 0xFF030201, {3, 2, 1}},
      {32, {0x3FF00000, 0x000FFC00, 0x000003FF}, 0x20000003 | 0x000FFC00, {1, 255, 128}},
      {32, {0, 0, 0xFFFFFFFF}, 0x80808080, {128, 0, 0}},
  };
  for (const auto& test : cases) {
    for (const std::uint32_t headerSize : {40u, 108u}) {
      BmpFile file{.headerSize = headerSize, .width = 3, .height = 1, .depth = test.depth};
      file.compression = test.masks.empty() ? 0 : 3;
      file.masks = test.masks;
      file.PackPixels([&](Long x, Long) { return x == 1 ? test.value : 0; });
      const PixelRows24 shown = Shown(Read(file.Bytes()));
      EXPECT_EQ(shown.At(1, 0), test.expected) << test.depth << ", " << test.value;
      EXPECT_EQ(shown.At(2, 0), (Pixel{0, 0, 0}));
    }
  }
}

// The indexes of the rows as shown.
std::vector<std::vector<int>> Indexes(const Dib& dib) {
  std::vector<std::vector<int>> rows;
  for (Long y = 0; y < dib.Height(); ++y) {
    rows.emplace_back();
    for (Long x = 0; x < dib.Width(); ++x) {
      const Byte byte = dib.Row(y)[dib.Depth() == 8 ? x : x / 2];
      rows.back().push_back(dib.Depth() == 8 ? byte : x % 2 == 0 ? byte >> 4 : byte & 15);
    }
  }
  return rows;
}

TEST(BmpReader, RunLengthsAreDecoded) {
  const struct {
    const char* what;
    int depth;
    const char* stream;
    std::vector<std::vector<int>> rows;  // of 4 x 2 pixels, as shown
  } cases[] = {
      {"runs and ends of lines", 8, "04 01 00 00 02 02 02 03 00 01", {{2, 2, 3, 3}, {1, 1, 1, 1}}},
      {"odd absolute run", 8, "00 03 05 06 07 00 01 09 00 01", {{0, 0, 0, 0}, {5, 6, 7, 9}}},
      {"a jump", 8, "01 01 00 02 01 01 02 08 00 01", {{0, 0, 8, 8}, {1, 0, 0, 0}}},
      {"full without an end", 8, "04 01 00 00 04 02", {{2, 2, 2, 2}, {1, 1, 1, 1}}},
      {"a run over the edge", 8, "C8 01 00 00 01 02 00 01", {{2, 0, 0, 0}, {1, 1, 1, 1}}},
      {"rows too many", 8, "00 02 00 09 04 01 00 01", {{0, 0, 0, 0}, {0, 0, 0, 0}}},
      {"alternating nibbles", 4, "03 12 01 50 00 00 00 01", {{0, 0, 0, 0}, {1, 2, 1, 5}}},
      {"absolute nibbles", 4, "01 90 00 03 12 30 00 01", {{0, 0, 0, 0}, {9, 1, 2, 3}}},
  };
  for (const auto& test : cases) {
    BmpFile file = RleFile(test.depth, test.stream);
    file.width = 4;
    file.height = 2;
    const Dib dib = Read(file.Bytes());
    EXPECT_EQ(dib.Depth(), test.depth) << test.what;
    EXPECT_EQ(Indexes(dib), test.rows) << test.what;
  }
}

TEST(BmpReader, HeadersThatLieAreRefusedBeforeMemoryIsAskedFor) {
  const auto with = [](auto&& change) {
    BmpFile file = ColorFile();
    change(file);
    return file;
  };
  constexpr Long kMin = std::numeric_limits<Long>::min();
  constexpr Long kMax = std::numeric_limits<Long>::max();
  const BmpFile cases[] = {
      with([](BmpFile& f) { f.width = 0; }),
      with([](BmpFile& f) { f.width = -7; }),
      with([](BmpFile& f) { f.height = 0; }),
      with([](BmpFile& f) { f.height = kMin; }),
      with([](BmpFile& f) { f.width = f.height = kMax; }),
      with([](BmpFile& f) { f.height = kMax; }),
      with([](BmpFile& f) { f.width = 30000, f.height = 30000; }),
      with([](BmpFile& f) { f.height = kHeight + 1; }),
      with([](BmpFile& f) { f.depth = 2; }),
      with([](BmpFile& f) { f.depth = 0; }),
      with([](BmpFile& f) { f.planes = 3; }),
      with([](BmpFile& f) { f.compression = 4; }),
      with([](BmpFile& f) { f.compression = 1; }),
      with([](BmpFile& f) { f.compression = 3; }),
      with([](BmpFile& f) { f.headerSize = 41; }),
      with([](BmpFile& f) { f.pixelsStart = 20; }),
      with([](BmpFile& f) { f.pixelsStart = 0xFFFFFFF0; }),
      with([](BmpFile& f) {
        f.depth = 16, f.compression = 3, f.masks = {0xF0F0, 0x0F00, 0x000F};
      }),
      RleFile(8, ""),
      RleFile(8, "00 09 01 02"),
      RleFile(8, "00 02 01"),
      RleFile(8, "07 01 00 00"),
      RleFile(4, "05"),
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(Refusal(cases[i]), ErrorNumber::InvalidPicture) << "case " << i;
  }
}

TEST(BmpReader, AFileCutShortAnywhereIsRefused) {
  for (const BmpFile& file : {ColorFile(), ColorFile(12), PaletteFile(4),
                              RleFile(8, "07 01 00 00 00 03 01 02 03 00 00 01")}) {
    const std::vector<Byte> whole = file.Bytes();
    Read(whole);
    // The last row's alignment bytes are not missed.
    const std::size_t alignment = file.compression == 0 ? 3 : 0;
    for (std::size_t size = 0; size < whole.size() - alignment; ++size) {
      const std::vector<Byte> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      EXPECT_EQ(ErrorOf([&] { Read(cut); }), ErrorNumber::InvalidPicture) << size;
    }
  }
}

TEST(BmpReader, DirtInAlignmentBytesIsLeftOut) {
  for (const Long height : {kHeight, -kHeight}) {
    BmpFile file = ColorFile();
    file.height = height;
    file.pixels.assign(file.pixels.size(), 0xFF);
    const Dib dib = Read(file.Bytes());
    for (Long y = 0; y < kHeight; ++y) {
      EXPECT_EQ(dib.Row(y)[20], 0xFF);
      for (int i = 21; i < 24; ++i) EXPECT_EQ(dib.Row(y)[i], 0);
    }
  }
}

}  // namespace
}  // namespace quillet
