#include "platform/contracts/bitmap_services.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "embed/stage.h"
#include "tests/contracts/platform_traits.h"
#include "tests/support/pictures.h"
#include "tests/support/print_census.h"

namespace quillet {
namespace {

constexpr Long kMin = std::numeric_limits<Long>::min();
constexpr Long kMax = std::numeric_limits<Long>::max();

Pixel Gray(Long, Long) {
  return {128, 128, 128};
}

class BitmapServicesContract : public testing::Test {
 protected:
  ~BitmapServicesContract() override { EXPECT_EQ(m_platform->Census(), CensusCounts{}); }

  UniqueBitmap Section(Long width, Long height, int depth, void** bits = nullptr) {
    const UniqueDC dc(services);
    BITMAPINFOHEADER header = Header24(width, height);
    header.biBitCount = static_cast<std::uint16_t>(depth);
    void* ignored = nullptr;
    return {services, services.CreateDIBSection(dc.get(), header, bits ? *bits : ignored)};
  }

  // A copy that is no other name for its source, or none.
  UniqueBitmap CopyOf(BitmapHandle source, Long width = 0, Long height = 0) {
    const BitmapHandle copy = services.CopyImage(source, width, height);
    if (copy != source) return {services, copy};
    EXPECT_TRUE(TraitsOfPlatform().copyMayBeItsSource);
    return {};
  }

  std::unique_ptr<Stage> m_platform = MakeStage();
  Platform& platform = m_platform->Contracts();
  BitmapServices& services = platform.bitmaps;
};

TEST_F(BitmapServicesContract, ABitmapTellsItsSizeAndDepth) {
  for (const int depth : {1, 4, 8, 16, 24, 32}) {
    const UniqueBitmap bitmap = Section(5, -3, depth);
    BITMAP record;
    ASSERT_TRUE(services.GetObjectA(bitmap.get(), record)) << depth;
    EXPECT_EQ(record.bmWidth, 5);
    EXPECT_EQ(record.bmHeight, 3);
    EXPECT_EQ(record.bmBitsPixel, depth);
  }
}

TEST_F(BitmapServicesContract, HandlesThatNameNothingOfTheKindAreRefused) {
  const UniqueDC dc(services);
  const UniqueDC other(services);
  const UniqueBitmap bitmap = MakeBitmap(platform, 2, 2, Gradient);
  UniqueBitmap gone = MakeBitmap(platform, 2, 2, Gradient);
  const BitmapHandle stale = gone.get();
  gone.reset();
  const DCHandle staleDc = UniqueDC(services).get();
  const PictureRef icon = IconPicture(platform);

  Byte block[16] = {};
  for (const BitmapHandle wrong : {BitmapHandle::None, stale, icon->Handle(),
                                   BitmapHandle{static_cast<std::uintptr_t>(dc.get())}}) {
    BITMAP record{.bmWidth = 77};
    EXPECT_FALSE(services.GetObjectA(wrong, record));
    EXPECT_EQ(record.bmWidth, 77);
    EXPECT_EQ(services.CopyImage(wrong, 0, 0), BitmapHandle::None);
    EXPECT_EQ(services.SelectObject(dc.get(), wrong), BitmapHandle::None);
    EXPECT_EQ(services.GetDIBits(dc.get(), wrong, 2, block, Header24(2, -2)), 0);
    EXPECT_FALSE(services.DeleteObject(wrong));
  }
  for (const DCHandle wrong :
       {DCHandle::None, staleDc, DCHandle{static_cast<std::uintptr_t>(bitmap.get())}}) {
    EXPECT_EQ(services.SelectObject(wrong, bitmap.get()), BitmapHandle::None);
    EXPECT_EQ(services.SetDIBitsToDevice(wrong, 2, 2, block, Header24(2, -2)), 0);
    EXPECT_FALSE(services.BitBlt(wrong, 2, 2, dc.get(), 0, 0));
    EXPECT_FALSE(services.BitBlt(dc.get(), 2, 2, wrong, 0, 0));
    EXPECT_FALSE(services.DeleteDC(wrong));
  }
}

TEST_F(BitmapServicesContract, SectionsThatCannotBeAreRefused) {
  const UniqueDC dc(services);
  const struct {
    Long width, height;
    int depth;
  } cases[] = {{0, 4, 24}, {-4, 4, 24},        {4, 0, 24},       {4, kMin, 24}, {4, 4, 7},
               {4, 4, 0},  {60000, 60000, 24}, {kMax, kMax, 32}, {kMax, 1, 32}};
  for (const auto& [width, height, depth] : cases) {
    EXPECT_FALSE(Section(width, height, depth)) << width << " x " << height << ", " << depth;
  }
}

TEST_F(BitmapServicesContract, ABlockIsWrittenAndReadInEitherRowOrder) {
  for (const Long targetOrder : {-1, 1}) {
    for (const Long writeOrder : {-1, 1}) {
      for (const Long readOrder : {-1, 1}) {
        void* bits = nullptr;
        const UniqueBitmap bitmap = Section(5, 3 * targetOrder, 24, &bits);
        const UniqueDC dc(services);
        const SelectGuard selected(services, dc.get(), bitmap.get());
        ASSERT_TRUE(selected);

        PixelRows24 block =
            RowsOf(5, 3, [&](Long x, Long y) { return Gradient(x, writeOrder < 0 ? y : 2 - y); });
        for (std::size_t row = 0; row < 3; ++row) block.bytes[row * 16 + 15] = 0xEE;
        ASSERT_EQ(services.SetDIBitsToDevice(dc.get(), 5, 3, block.bytes.data(),
                                             Header24(5, 3 * writeOrder)),
                  3);
        for (std::size_t row = 0; row < 3; ++row) {
          EXPECT_EQ(static_cast<Byte*>(bits)[row * 16 + 15], 0) << "an alignment byte";
        }
        block.bytes.assign(block.bytes.size(), 0xEE);
        ASSERT_EQ(services.GetDIBits(dc.get(), bitmap.get(), 3, block.bytes.data(),
                                     Header24(5, 3 * readOrder)),
                  3);
        EXPECT_EQ(block, RowsOf(5, 3, [&](Long x, Long y) {
                    return Gradient(x, readOrder < 0 ? y : 2 - y);
                  }));
      }
    }
  }
}

TEST_F(BitmapServicesContract, ABlockOfAnotherSizeThanTheBitmapIsClipped) {
  const PixelRows24 block = RowsOf(4, 4, Gradient);
  for (const Long size : {2, 6}) {
    const UniqueBitmap bitmap = MakeBitmap(platform, size, size, Gray);
    const UniqueDC dc(services);
    const SelectGuard selected(services, dc.get(), bitmap.get());
    EXPECT_GT(services.SetDIBitsToDevice(dc.get(), 4, 4, block.bytes.data(), Header24(4, -4)), 0);
    EXPECT_EQ(PixelsOf(platform, bitmap.get()), RowsOf(size, size, [](Long x, Long y) {
                return x < 4 && y < 4 ? Gradient(x, y) : Gray(x, y);
              }));
  }
}

TEST_F(BitmapServicesContract, EveryDepthIsReadAs24Bits) {
  const Pixel black{0, 0, 0}, white{255, 255, 255};
  const struct {
    int depth;
    std::vector<Byte> row;  // of two pixels
    Pixel first, second;
  } cases[] = {
      {1, {0x40}, black, white},
      {4, {0x0F}, black, white},
      {8, {0x00, 0xFF}, black, white},
      {16, {0xE1, 0x03, 0x00, 0x48}, {8, 255, 0}, {0, 0, 148}},
      {24, {1, 2, 3, 250, 251, 252}, {1, 2, 3}, {250, 251, 252}},
      {32, {1, 2, 3, 99, 250, 251, 252, 0}, {1, 2, 3}, {250, 251, 252}},
  };
  for (const auto& test : cases) {
    void* bits = nullptr;
    const UniqueBitmap bitmap = Section(2, -1, test.depth, &bits);
    ASSERT_TRUE(bitmap) << test.depth;
    std::ranges::copy(test.row, static_cast<Byte*>(bits));
    const PixelRows24 rows = PixelsOf(platform, bitmap.get());
    EXPECT_EQ(rows.At(0, 0), test.first) << test.depth;
    EXPECT_EQ(rows.At(1, 0), test.second) << test.depth;
  }
}

TEST_F(BitmapServicesContract, TheFirstRowsOfABlockMayBeReadAlone) {
  const UniqueBitmap bitmap = MakeBitmap(platform, 5, 4, Gradient);
  const UniqueDC dc(services);
  for (const Long order : {-1, 1}) {
    PixelRows24 block{5, 4, std::vector<Byte>(4 * 16, 0xEE)};
    ASSERT_EQ(
        services.GetDIBits(dc.get(), bitmap.get(), 2, block.bytes.data(), Header24(5, 4 * order)),
        2);
    for (Long row = 0; row < 2; ++row) {
      EXPECT_EQ(block.At(4, row), Gradient(4, order < 0 ? row : 3 - row));
    }
    EXPECT_EQ(block.bytes[2 * 16], 0xEE);
  }
}

TEST_F(BitmapServicesContract, ABitmapIsReadWhileItIsSelectedElsewhere) {
  const UniqueBitmap bitmap = MakeBitmap(platform, 5, 3, Gradient);
  const UniqueDC dc(services);
  const SelectGuard selected(services, dc.get(), bitmap.get());
  ASSERT_TRUE(selected);
  EXPECT_EQ(PixelsOf(platform, bitmap.get()), RowsOf(5, 3, Gradient));
  if (const UniqueBitmap copy = CopyOf(bitmap.get())) {
    EXPECT_EQ(PixelsOf(platform, copy.get()), RowsOf(5, 3, Gradient));
  }
}

TEST_F(BitmapServicesContract, ABlockTransferCopiesWhatLiesInBothBitmaps) {
  const UniqueBitmap source = MakeBitmap(platform, 7, 5, Gradient);
  const UniqueDC sourceDc(services);
  const SelectGuard sourceSelected(services, sourceDc.get(), source.get());
  const struct {
    Long width, height, x, y;
  } cases[] = {{4, 4, 0, 0},
               {4, 4, 3, 1},
               {4, 4, 5, 4},
               {4, 4, -2, -3},
               {3, 2, 1, 1},
               {9, 9, -1, 2},
               {4, 4, 7, 0},
               {4, 4, 0, -4},
               {0, 4, 0, 0},
               {kMax, kMax, -3, -1},
               {kMax, kMax, 2, 2},
               {4, 4, kMax, 0},
               {4, 4, 0, kMin},
               {kMax, kMax, kMin, kMin},
               {kMax, kMax, kMax, kMax}};
  for (const auto& test : cases) {
    const UniqueBitmap target = MakeBitmap(platform, 6, 4, Gray);
    const UniqueDC dc(services);
    const SelectGuard selected(services, dc.get(), target.get());
    services.BitBlt(dc.get(), test.width, test.height, sourceDc.get(), test.x, test.y);
    EXPECT_EQ(PixelsOf(platform, target.get()),
              RowsOf(6, 4,
                     [&](Long x, Long y) {
                       const std::int64_t fromX = std::int64_t{test.x} + x;
                       const std::int64_t fromY = std::int64_t{test.y} + y;
                       const bool inside = x < test.width && y < test.height && fromX >= 0 &&
                                           fromX < 7 && fromY >= 0 && fromY < 5;
                       return inside ? Gradient(static_cast<Long>(fromX), static_cast<Long>(fromY))
                                     : Gray(x, y);
                     }))
        << test.width << " x " << test.height << " at " << test.x << ", " << test.y;
  }
}

TEST_F(BitmapServicesContract, ABlockTransferWithinOneBitmapMayOverlap) {
  for (const auto& [dx, dy] : {std::pair<Long, Long>{1, 2}, {-1, -2}, {2, -1}, {-2, 0}}) {
    const UniqueBitmap bitmap = MakeBitmap(platform, 7, 6, Gradient);
    const UniqueDC dc(services);
    const SelectGuard selected(services, dc.get(), bitmap.get());
    ASSERT_TRUE(services.BitBlt(dc.get(), 7, 6, dc.get(), dx, dy));
    EXPECT_EQ(PixelsOf(platform, bitmap.get()),
              RowsOf(7, 6,
                     [&](Long x, Long y) {
                       const bool inside = x + dx >= 0 && x + dx < 7 && y + dy >= 0 && y + dy < 6;
                       return inside ? Gradient(x + dx, y + dy) : Gradient(x, y);
                     }))
        << dx << ", " << dy;
  }
}

TEST_F(BitmapServicesContract, ABitmapIsSelectedIntoOneContextAtATime) {
  const UniqueBitmap bitmap = MakeBitmap(platform, 2, 2, Gradient);
  const UniqueBitmap next = MakeBitmap(platform, 2, 2, Gradient);
  const UniqueDC first(services);
  const UniqueDC second(services);

  const BitmapHandle original = services.SelectObject(first.get(), bitmap.get());
  ASSERT_NE(original, BitmapHandle::None);
  EXPECT_EQ(services.SelectObject(second.get(), bitmap.get()), BitmapHandle::None);
  EXPECT_FALSE(services.DeleteObject(bitmap.get()));
  EXPECT_EQ(services.SelectObject(first.get(), next.get()), bitmap.get());
  EXPECT_NE(services.SelectObject(second.get(), bitmap.get()), BitmapHandle::None);
  EXPECT_EQ(services.SelectObject(first.get(), original), next.get());
}

TEST_F(BitmapServicesContract, DeletingAContextLetsGoOfItsBitmap) {
  const UniqueBitmap bitmap = MakeBitmap(platform, 2, 2, Gradient);
  {
    const UniqueDC dc(services);
    ASSERT_NE(services.SelectObject(dc.get(), bitmap.get()), BitmapHandle::None);
  }
  EXPECT_EQ(PixelsOf(platform, bitmap.get()), RowsOf(2, 2, Gradient));
}

TEST_F(BitmapServicesContract, ACopyAndItsSourceChangeApart) {
  void* bits = nullptr;
  const UniqueBitmap source = Section(4, -4, 24, &bits);
  const PixelRows24 before = RowsOf(4, 4, Gradient);
  std::ranges::copy(before.bytes, static_cast<Byte*>(bits));
  const UniqueBitmap copy = CopyOf(source.get());
  if (!copy) GTEST_SKIP() << "the copy is its source";
  *static_cast<Byte*>(bits) = 99;
  EXPECT_EQ(PixelsOf(platform, copy.get()), before);

  const UniqueBitmap second = CopyOf(copy.get());
  if (!second) GTEST_SKIP() << "the copy is its source";
  const UniqueDC dc(services);
  const SelectGuard selected(services, dc.get(), second.get());
  const PixelRows24 gray = RowsOf(4, 4, Gray);
  ASSERT_EQ(services.SetDIBitsToDevice(dc.get(), 4, 4, gray.bytes.data(), Header24(4, -4)), 4);
  EXPECT_EQ(PixelsOf(platform, second.get()), gray);
  EXPECT_EQ(PixelsOf(platform, copy.get()), before);
}

TEST_F(BitmapServicesContract, ACopyHasItsSourcesDepthOrTheScreens) {
  const int screen = TraitsOfPlatform().depthOfCopies;
  for (const int depth : {1, 8, 16, 24, 32}) {
    const UniqueBitmap source = Section(8, 8, depth);
    for (const Long size : {0, 3}) {
      const UniqueBitmap copy = CopyOf(source.get(), size, size);
      if (!copy) continue;
      BITMAP record;
      ASSERT_TRUE(services.GetObjectA(copy.get(), record));
      if (screen && record.bmBitsPixel == 1 && depth == 1) continue;
      EXPECT_EQ(record.bmBitsPixel, screen ? screen : size ? 24 : depth);
    }
  }
}

TEST_F(BitmapServicesContract, ACopyOfAnotherSizeShowsTheSameInThatSize) {
  const auto halves = [](Long width) {
    return [width](Long x, Long) { return x < width / 2 ? Pixel{10, 20, 30} : Pixel{200, 0, 90}; };
  };
  const PictureRef indexed = PalettePicture(platform, 8, {{10, 20, 30}, {200, 0, 90}}, 8, 6,
                                            [](Long x, Long) { return static_cast<Byte>(x / 4); });
  const PictureRef colors = PictureOf(platform, 8, 6, halves(8));
  for (const PictureRef& picture : {indexed, colors}) {
    const UniqueBitmap half = CopyOf(picture->Handle(), 4, 3);
    EXPECT_EQ(PixelsOf(platform, half.get()), RowsOf(4, 3, halves(4)));
    const UniqueBitmap large = CopyOf(picture->Handle(), 80, 7);
    const PixelRows24 shown = PixelsOf(platform, large.get());
    ASSERT_EQ(shown.width, 80);
    ASSERT_EQ(shown.height, 7);
    EXPECT_EQ(shown.At(0, 6), (Pixel{10, 20, 30}));
    EXPECT_EQ(shown.At(79, 0), (Pixel{200, 0, 90}));

    for (const auto& [width, height] :
         {std::pair<Long, Long>{-1, 4}, {4, kMin}, {kMax, 1}, {60000, 60000}}) {
      EXPECT_EQ(services.CopyImage(picture->Handle(), width, height), BitmapHandle::None);
    }
  }
}

TEST_F(BitmapServicesContract, ACopyOutlivesThePictureItWasMadeFrom) {
  PictureRef picture = PictureOf(platform, 9, 4, Gradient);
  const UniqueBitmap copy = CopyOf(picture->Handle());
  if (!copy) GTEST_SKIP() << "the copy is its source";
  picture.reset();
  EXPECT_EQ(PixelsOf(platform, copy.get()), RowsOf(9, 4, Gradient));
}

}  // namespace
}  // namespace quillet
