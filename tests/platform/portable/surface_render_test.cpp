#include <gtest/gtest.h>

#include "base/rounding.h"
#include "platform/contracts/owned_handles.h"
#include "platform/portable/portable_platform.h"
#include "platform/portable/portable_surface.h"
#include "tests/support/pictures.h"
#include "tests/support/surface_layout.h"

namespace quillet {

void PrintTo(const Rgb& color, std::ostream* out) {
  *out << int{color.red} << ',' << int{color.green} << ',' << int{color.blue};
}

namespace {

constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kGray{128, 128, 128};
constexpr Rgb kDark{64, 64, 64};
constexpr Rgb kFace{212, 208, 200};

// Red counts columns, green counts rows.
PictureRef CountingPicture(const Platform& platform, Long width, Long height) {
  return PictureOf(platform, width, height, [](Long x, Long y) {
    return Pixel{7, LowByte(y), LowByte(x)};
  });
}

class SurfaceRender : public testing::Test {
 protected:
  PortablePlatform platform;
  std::shared_ptr<PortableSurface> surface = platform.CreateSurface(200, 150);
};

TEST_F(SurfaceRender, TheFixedFrameIsSunkenAndTwoPixelsWide) {
  LayOut(*surface, false, false);
  const Raster framed = surface->Render();
  ASSERT_EQ(framed.Bounds(), (PixelRect{0, 0, 204, 154}));
  EXPECT_EQ(framed.At(0, 70), kGray);
  EXPECT_EQ(framed.At(1, 70), kDark);
  EXPECT_EQ(framed.At(2, 70), kWhite) << "the box";
  EXPECT_EQ(framed.At(203, 153), kWhite);
  EXPECT_EQ(framed.At(202, 152), kFace);
  EXPECT_EQ(framed.At(100, 0), kGray);
  EXPECT_EQ(framed.At(100, 153), kWhite);

  surface->UserControl().PutBorderStyle(0);
  surface->picTwain().PutBackColor(0x00030201);
  LayOut(*surface, false, false);
  const Raster bare = surface->Render();
  ASSERT_EQ(bare.Bounds(), (PixelRect{0, 0, 204, 154})) << "the outer size stays";
  EXPECT_EQ(bare.At(0, 0), (Rgb{1, 2, 3}));
  EXPECT_EQ(bare.At(203, 153), (Rgb{1, 2, 3}));
}

TEST_F(SurfaceRender, ColoursAreTheirOwnBytesOrTheClassicScheme) {
  const struct {
    OLE_COLOR color;
    Rgb shown;
  } cases[] = {
      {0x00FF8001u, {0x01, 0x80, 0xFF}},
      {0x80000005u, kWhite},
      {0x8000000Fu, kFace},
      {0x80000001u, {0x3A, 0x6E, 0xA5}},
      {0x80000018u, {0xFF, 0xFF, 0xE1}},
      {0x800000FFu, kBlack},
  };
  for (const auto& [color, shown] : cases) {
    surface->picTwain().PutBackColor(color);
    EXPECT_EQ(surface->Render().At(50, 50), shown) << std::hex << color;
  }
}

TEST_F(SurfaceRender, ThePictureStandsUnscaledInTheBoxesCorner) {
  LayOut(*surface, false, false);
  surface->picTwain().PutPicture(CountingPicture(platform.Contracts(), 101, 61));
  Raster raster = surface->Render();
  EXPECT_EQ(raster.At(2, 2), (Rgb{0, 0, 7}));
  EXPECT_EQ(raster.At(102, 62), (Rgb{100, 60, 7}));
  EXPECT_EQ(raster.At(103, 62), kWhite);
  EXPECT_EQ(raster.At(102, 63), kWhite);

  surface->picTwain().Move(-30, 45, 45, 30);
  raster = surface->Render();
  EXPECT_EQ(raster.At(2, 5), (Rgb{2, 0, 7})) << "cut by the control on the left";
  EXPECT_EQ(raster.At(2, 6), (Rgb{2, 1, 7}));
  EXPECT_EQ(raster.At(3, 6), kFace) << "cut by the box on the right";
  EXPECT_EQ(raster.At(2, 7), kFace);

  surface->picTwain().PutPicture(platform.Contracts().pictures.EmptyPicture());
  EXPECT_EQ(surface->Render().At(2, 5), kWhite);
}

TEST_F(SurfaceRender, ABitmapThatTheHostKeepsSelectedIsShownAllTheSame) {
  const PictureRef picture = CountingPicture(platform.Contracts(), 400, 300);
  surface->picTwain().PutPicture(picture);
  const Raster before = surface->Render();
  const CensusCounts census = platform.Census();
  {
    BitmapServices& bitmaps = platform.Contracts().bitmaps;
    const UniqueDC dc(bitmaps);
    const SelectGuard selected(bitmaps, dc.get(), picture->Handle());
    ASSERT_TRUE(selected);
    const Raster meanwhile = surface->Render();
    for (int x = 0; x < 204; x += 7) EXPECT_EQ(meanwhile.At(x, 90), before.At(x, 90));
  }
  EXPECT_EQ(platform.Census(), census);
}

TEST_F(SurfaceRender, ABarHasArrowsADitheredTroughAndAThumb) {
  surface->UserControl().PutBorderStyle(0);  // inside 204 x 154
  LayOut(*surface, true, true);
  PortableScrollBar& bar = surface->VScroll1();
  bar.PutMax(100);
  bar.PutLargeChange(100);
  bar.PutValue(100);
  ASSERT_EQ(bar.Place(), (PixelRect{187, 0, 17, 135}));
  ASSERT_EQ(bar.Geometry().ThumbStart(), 68);
  ASSERT_EQ(bar.Geometry().ThumbLength(), 50);
  struct Expected {
    int x, y;
    Rgb color;
  };
  const auto check = [&](std::initializer_list<Expected> pixels) {
    const Raster raster = surface->Render();
    for (const auto& [x, y, color] : pixels) EXPECT_EQ(raster.At(x, y), color) << x << "," << y;
  };
  check({{195, 6, kBlack},   {196, 6, kFace},    {192, 9, kBlack},  {195, 10, kFace},
         {192, 124, kBlack}, {195, 127, kBlack}, {195, 128, kFace},  // arrows
         {187, 0, kFace},    {188, 1, kWhite},   {203, 16, kDark},  {202, 15, kGray},
         {190, 20, kWhite},  {191, 20, kFace},   {190, 21, kFace},  {190, 67, kFace},
         {187, 68, kFace},   {188, 69, kWhite},  {195, 90, kFace},  {194, 90, kFace},
         {202, 116, kGray},  {203, 117, kDark},  {201, 152, kFace}});

  bar.PutValue(0);
  check({{188, 18, kWhite}, {203, 66, kDark}, {190, 68, kWhite}, {191, 68, kFace}});

  surface->UserControl().PutEnabled(false);
  check({{195, 6, kGray}, {196, 10, kWhite}, {190, 20, kWhite}, {191, 20, kFace}});

  bar.PutVisible(false);
  check({{195, 6, kFace}});
}

}  // namespace
}  // namespace quillet
