#include "platform/portable/portable_bitmaps.h"

#include <gtest/gtest.h>

#include "platform/portable/portable_pictures.h"
#include "platform/portable/portable_platform.h"
#include "tests/support/pictures.h"
#include "tests/support/platform_with.h"

namespace quillet {
namespace {

class PortableBitmapsTest : public testing::Test {
 protected:
  std::shared_ptr<PortableBitmaps> bitmaps = std::make_shared<PortableBitmaps>();
  PortablePictures pictures{bitmaps};
  PortablePlatform rest;
  Platform platform = PlatformWith(*bitmaps, PlatformWith(pictures, rest.Contracts()));
};

TEST_F(PortableBitmapsTest, CopiesOfAPictureShareItsPixelsUntilOneIsWritten) {
  const PictureRef picture = PictureOf(platform, 6, 6, Gradient);
  const UniqueBitmap copy(*bitmaps, bitmaps->CopyImage(picture->Handle(), 0, 0));
  EXPECT_EQ(bitmaps->FindBitmap(copy.get())->Bits(),
            bitmaps->FindBitmap(picture->Handle())->Bits());

  const UniqueBitmap dot = MakeBitmap(platform, 1, 1, [](Long, Long) { return Pixel{9, 9, 9}; });
  const UniqueDC target(*bitmaps), source(*bitmaps);
  const SelectGuard copySelected(*bitmaps, target.get(), copy.get());
  const SelectGuard dotSelected(*bitmaps, source.get(), dot.get());
  ASSERT_TRUE(bitmaps->BitBlt(target.get(), 1, 1, source.get(), 0, 0));
  EXPECT_EQ(PixelsOf(platform, copy.get()).At(0, 0), (Pixel{9, 9, 9}));
  EXPECT_EQ(PixelsOf(platform, picture), RowsOf(6, 6, Gradient));
}

TEST_F(PortableBitmapsTest, APicturesBitmapIsNeitherWrittenNorDeletedByOthers) {
  const PictureRef picture = PictureOf(platform, 2, 2, Gradient);
  const UniqueBitmap other = MakeBitmap(platform, 2, 2, [](Long, Long) { return Pixel{}; });
  const UniqueDC target(*bitmaps), source(*bitmaps);
  const SelectGuard selected(*bitmaps, target.get(), picture->Handle());
  const SelectGuard otherSelected(*bitmaps, source.get(), other.get());
  const Byte block[16] = {};
  EXPECT_EQ(bitmaps->SetDIBitsToDevice(target.get(), 2, 2, block, Header24(2, -2)), 0);
  EXPECT_FALSE(bitmaps->BitBlt(target.get(), 2, 2, source.get(), 0, 0));
  EXPECT_FALSE(bitmaps->DeleteObject(picture->Handle()));
  EXPECT_FALSE(pictures.OleCreatePictureIndirect(picture->Handle()));
  EXPECT_EQ(PixelsOf(platform, picture), RowsOf(2, 2, Gradient));
}

TEST_F(PortableBitmapsTest, ABitmapThatIsSelectedWhenItsPictureGoesIsReleasedAfterwards) {
  PictureRef picture = PictureOf(platform, 2, 2, Gradient);
  {
    const UniqueDC dc(*bitmaps);
    ASSERT_NE(bitmaps->SelectObject(dc.get(), picture->Handle()), BitmapHandle::None);
    picture.reset();
    EXPECT_EQ(bitmaps->BitmapCount(), 1);
  }
  EXPECT_EQ(bitmaps->BitmapCount(), 0);
}

TEST_F(PortableBitmapsTest, AContextsOwnBitmapStaysWithIt) {
  const UniqueBitmap bitmap = MakeBitmap(platform, 2, 2, Gradient);
  const UniqueDC dc(*bitmaps), other(*bitmaps);
  const SelectGuard selected(*bitmaps, dc.get(), bitmap.get());
  const BitmapHandle own = bitmaps->SelectObject(dc.get(), bitmap.get());
  ASSERT_EQ(own, bitmap.get()) << "selecting what is selected changes nothing";
  const BitmapHandle first = bitmaps->SelectObject(other.get(), BitmapHandle::None);
  EXPECT_EQ(first, BitmapHandle::None);
  BITMAP record;
  const UniqueDC third(*bitmaps);
  const UniqueBitmap fresh = MakeBitmap(platform, 2, 2, Gradient);
  const BitmapHandle stock = bitmaps->SelectObject(third.get(), fresh.get());
  ASSERT_TRUE(bitmaps->GetObjectA(stock, record));
  EXPECT_EQ(record.bmBitsPixel, 1);
  EXPECT_FALSE(bitmaps->DeleteObject(stock));
  EXPECT_FALSE(pictures.OleCreatePictureIndirect(stock));
  EXPECT_EQ(bitmaps->SelectObject(other.get(), stock), BitmapHandle::None);
  bitmaps->SelectObject(third.get(), stock);
}

TEST_F(PortableBitmapsTest, PixelsGoToTheNearestColourOfABitmapWithPalette) {
  const UniqueBitmap source = MakeBitmap(platform, 9, 2, [](Long x, Long) {
    const Byte gray = static_cast<Byte>(x * 30);
    return Pixel{gray, gray, gray};
  });
  for (const int depth : {1, 4, 8, 16, 32}) {
    const UniqueDC target(*bitmaps), from(*bitmaps);
    BITMAPINFOHEADER header = Header24(9, 2);
    header.biBitCount = static_cast<std::uint16_t>(depth);
    void* bits = nullptr;
    const UniqueBitmap copy(*bitmaps, bitmaps->CreateDIBSection(target.get(), header, bits));
    const SelectGuard targetSelected(*bitmaps, target.get(), copy.get());
    const SelectGuard sourceSelected(*bitmaps, from.get(), source.get());
    ASSERT_TRUE(bitmaps->BitBlt(target.get(), 9, 2, from.get(), 0, 0));
    const int tolerance = depth == 1 ? 127 : depth == 4 ? 8 : depth == 16 ? 4 : 0;
    for (Long x = 0; x < 9; ++x) {
      EXPECT_NEAR(PixelsOf(platform, copy.get()).At(x, 1).green, x * 30, tolerance) << depth;
    }
  }
}

TEST(PortablePlatform, PicturesMayOutliveIt) {
  PictureRef picture;
  {
    PortablePlatform platform;
    picture = PictureOf(platform.Contracts(), 3, 3, Gradient);
    EXPECT_EQ(platform.Census().pictures, 1);
    EXPECT_EQ(platform.Census().bitmaps, 1);
  }
  EXPECT_NE(picture->Handle(), BitmapHandle::None);
}

}  // namespace
}  // namespace quillet
