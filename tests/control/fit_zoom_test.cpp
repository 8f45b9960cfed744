#include <gtest/gtest.h>

#include <map>

#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"

namespace quillet {
namespace {

// The size of the displayed picture, seen through a view large enough for it: the part of the
// screen that is not background.
std::string Displayed(HostedControl& hosted) {
  hosted.Put("BackColor", Long{0xFF00FF});  // a colour that the gradient has not
  const PixelRows24 screen = hosted.Screen();
  const Pixel background{255, 0, 255};
  Long width = 0;
  Long height = 0;
  while (width < screen.width && screen.At(width, 0) != background) ++width;
  while (height < screen.height && screen.At(0, height) != background) ++height;
  return std::to_string(width) + "x" + std::to_string(height);
}

TEST(Fit, ModesGiveTheirSizes) {
  const struct {
    int viewWidth, viewHeight;
    Long width, height;
    FIT_TYPE mode;
    const char* displayed;
  } cases[] = {
      {400, 300, 800, 600, twFITNONE, "383x283"}, {500, 300, 100, 50, twFITINTO, "500x250"},
      {400, 300, 100, 50, twFITINTO, "400x200"},  {400, 300, 100, 50, twFITSTRECH, "400x300"},
      {400, 300, 100, 50, twFITWIDTH, "400x200"}, {400, 300, 100, 50, FIT_TYPE{5}, "100x50"},
      {55, 55, 3, 22, twFITINTO, "7x55"},  // 3/22 x 55 = 7.4999...
      {60, 60, 22, 3, twFITINTO, "60x8"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " mode " << c.mode);
    HostedControl hosted(c.viewWidth, c.viewHeight);
    hosted.Assign(c.width, c.height);
    hosted.Call("Fit", Long{c.mode});
    EXPECT_EQ(Displayed(hosted), c.displayed);
    EXPECT_EQ(hosted.Number("BitmapWidth"), c.width);
  }
}

TEST(Fit, TakesTheBoxAsItIsWithItsBars) {
  HostedControl hosted(400, 300);
  hosted.Assign(800, 600);
  hosted.Call("Fit");
  EXPECT_EQ(Displayed(hosted), "377x283");  // 4:3 inside 383x283
  EXPECT_EQ(hosted.Layout(), "400x300");
  hosted.Call("Flip");  // fits anew, now without bars
  EXPECT_EQ(Displayed(hosted), "400x300");
}

TEST(Zoom, RoundsASinglePrecisionFactorTimesTheSize) {
  const struct {
    Integer factor;
    Long width, height;
    const char* displayed;
  } cases[] = {
      {150, 101, 51, "152x76"}, {110, 15, 10, "17x11"}, {90, 15, 10, "13x9"},
      {100, 40, 30, "40x30"},   {50, 101, 51, "50x26"}, {1, 150, 150, "1x1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.factor);
    HostedControl hosted(400, 300);
    hosted.Assign(c.width, c.height);
    hosted.Call("Zoom", c.factor);
    EXPECT_EQ(Displayed(hosted), c.displayed);
  }
}

TEST(Zoom, OnlyEnlargementsAndFitsAreRedoneAfterAnOperation) {
  HostedControl hosted(400, 300);
  hosted.Assign(60, 40);
  hosted.Call("Zoom", Integer{50});
  EXPECT_EQ(Displayed(hosted), "30x20");
  hosted.Call("Flip");
  EXPECT_EQ(Displayed(hosted), "60x40");
  hosted.Call("Zoom", Integer{200});
  hosted.Call("Rotate");
  EXPECT_EQ(Displayed(hosted), "80x120");
  hosted.Assign(60, 40);
  EXPECT_EQ(Displayed(hosted), "60x40");
  hosted.Call("Flip");
  EXPECT_EQ(Displayed(hosted), "60x40");
}

TEST(Fit, OnlyWidthAndStretchFollowAResize) {
  const struct {
    const char* method;
    Variant argument;
    const char* displayed;
  } cases[] = {{"Fit", Long{twFITWIDTH}, "200x100"},
               {"Fit", Long{twFITSTRECH}, "200x200"},
               {"Fit", Long{twFITINTO}, "300x150"},
               {"Zoom", Integer{50}, "50x25"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.displayed);
    HostedControl hosted(300, 300);
    hosted.Assign(100, 50);
    hosted.Call(c.method, c.argument);
    hosted.window->Resize(200, 200);
    hosted.window->Resize(301, 301);
    hosted.window->Resize(200, 200);
    if (std::string(c.displayed) == "300x150") hosted.window->Resize(400, 400);
    EXPECT_EQ(Displayed(hosted), c.displayed);
  }
}

TEST(Fit, ARefitTakesTheBoxOfTheNewSizeWithItsBars) {
  HostedControl hosted(300, 300);
  hosted.Assign(100, 200);
  hosted.Call("Fit", Long{twFITWIDTH});
  EXPECT_EQ(hosted.Layout(),
            "283x283 hv");  // 300x600 beside bars that were not there when it was made
  hosted.window->Resize(250, 310);
  EXPECT_EQ(hosted.Layout(), "233x310 v");
  EXPECT_EQ(hosted.BarMax(Bar::Vertical), 466 - 310);
}

TEST(Fit, ARefitIsShownWithoutAutoRedrawTooSinceTheBoxChanged) {
  HostedControl hosted(100, 100);
  hosted.Assign(100, 50);
  hosted.Call("Fit", Long{twFITSTRECH});
  hosted.Put("AutoRedraw", false);
  hosted.window->Resize(150, 150);
  EXPECT_EQ(Displayed(hosted), "150x150");
}

TEST(Fit, ARefitWithoutAPictureLaysNothingOut) {
  HostedControl hosted(100, 100);
  hosted.Assign(100, 50);
  hosted.PutPicture(nullptr);
  hosted.Call("Fit", Long{twFITWIDTH});
  hosted.window->Resize(150, 150);
  EXPECT_EQ(hosted.Layout(), "100x100");
}

TEST(Fit, SizesBelowOnePixelAreError9AndKeepTheDisplay) {
  HostedControl hosted(100, 100);
  hosted.Assign(1000, 1);
  const PixelRows24 before = hosted.Screen();
  const auto call = [&](const char* method, Variant argument) {
    return ErrorOf([&] { hosted.Call(method, argument); });
  };
  EXPECT_EQ(call("Fit", Long{twFITINTO}), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(call("Zoom", Integer{0}), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(call("Zoom", Integer{-50}), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(call("Zoom", Integer{10}), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(hosted.Screen(), before);
  EXPECT_EQ(hosted.Number("BitmapWidth"), 1000);
}

TEST(Zoom, FactorsThatLeaveAllBoundsAreErrors) {
  HostedControl hosted(100, 100);
  hosted.Assign(2480, 3508);
  EXPECT_EQ(ErrorOf([&] { hosted.Call("Zoom", Integer{32767}); }), ErrorNumber::OutOfMemory);
  hosted.PutPicture(PalettePicture(hosted.platform.Contracts(), 1, {{}, Pixel{255, 255, 255}},
                                   8000000, 1, [](Long, Long) { return Byte{0}; }));
  EXPECT_EQ(ErrorOf([&] { hosted.Call("Zoom", Integer{32767}); }), ErrorNumber::Overflow);
  EXPECT_EQ(hosted.Number("BitmapWidth"), 8000000);
}

TEST(Fit, WithoutAPictureShowsNothingQuietly) {
  HostedControl hosted(100, 100);
  for (const Long mode : {0, 1, 2, 3, 5}) hosted.Call("Fit", mode);
  hosted.Call("Zoom", Integer{0});
  hosted.PutPicture(nullptr);
  for (const Long mode : {0, 1, 2, 3, 5}) hosted.Call("Fit", mode);
  hosted.Call("Zoom", Integer{200});
  hosted.Assign(60, 40);
  EXPECT_EQ(Displayed(hosted), "60x40");
}

}  // namespace
}  // namespace quillet
