#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/error_of.h"
#include "tests/support/faulty_platform.h"
#include "tests/support/hosted_control.h"

namespace quillet {
namespace {

std::ptrdiff_t CountOf(const std::vector<std::string>& log, const std::string& line) {
  return std::count(log.begin(), log.end(), line);
}

TEST(ImageMethods, TransformThePictureAndShowIt) {
  HostedControl hosted(100, 100);
  hosted.Assign(30, 20);
  hosted.Call("Rotate");
  EXPECT_EQ(hosted.Number("BitmapWidth"), 20);
  EXPECT_EQ(hosted.Number("BitmapHeight"), 30);
  EXPECT_EQ(PixelsOf(hosted.platform.Contracts(), hosted.Picture()),
            RowsOf(20, 30, [](Long x, Long y) { return Gradient(y, 19 - x); }));
  EXPECT_EQ(hosted.Screen().At(0, 0), Gradient(0, 19));
  hosted.Call("Resize", Long{40}, Long{10});
  hosted.Call("Crop", Long{-1}, Long{2}, Long{5}, Long{3});
  EXPECT_EQ(hosted.Number("BitmapWidth"), 5);
  EXPECT_EQ(hosted.Screen().At(0, 0), Pixel{});
}

TEST(ImageMethods, ProgressComesOncePerRowAndEndsWith100) {
  HostedControl hosted(100, 100);
  hosted.Assign(4, 101);
  hosted.TakeLog();
  hosted.Call("Flip");
  const auto log = hosted.TakeLog();
  EXPECT_EQ(log.size(), 101u);
  EXPECT_EQ(log.back(), "Progress 100");
  hosted.Call("Resize", Long{3}, Long{3});
  hosted.Call("Fit");
  hosted.Call("Zoom", Integer{300});
  EXPECT_EQ(CountOf(hosted.TakeLog(), "Progress 0"), 0);
}

TEST(ImageMethods, WithoutAPictureTheyRunThroughAndLeaveNone) {
  for (const auto& [name, arguments] : std::vector<std::pair<const char*, std::vector<Variant>>>{
           {"Flip", {}},
           {"Reverse", {}},
           {"Rotate", {}},
           {"Resize", {Long{0}, Long{0}}},
           {"Crop", {Long{0}, Long{0}, Long{0}, Long{0}}}}) {
    SCOPED_TRACE(name);
    HostedControl hosted(100, 100);
    std::vector<Variant> values = arguments;
    Invoke(*hosted.control, NumberOf(name), Access::Method, values);
    EXPECT_EQ(hosted.Picture(), nullptr);
    Invoke(*hosted.control, NumberOf(name), Access::Method, values);
    EXPECT_TRUE(hosted.TakeLog().empty());
    hosted.PutPicture(IconPicture(hosted.platform.Contracts()));
    Invoke(*hosted.control, NumberOf(name), Access::Method, values);
    EXPECT_EQ(hosted.Picture(), nullptr);
  }
}

TEST(ImageMethods, AnErrorKeepsPictureAndScreen) {
  HostedControl hosted(100, 100);
  hosted.Assign(30, 20);
  const PictureRef picture = hosted.Picture();
  const PixelRows24 screen = hosted.Screen();
  EXPECT_EQ(ErrorOf([&] { hosted.Call("Resize", Long{0}, Long{5}); }),
            ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(ErrorOf([&] { hosted.Call("Resize", Long{2147483647}, Long{2147483647}); }),
            ErrorNumber::Overflow);
  EXPECT_EQ(ErrorOf([&] { hosted.Call("Crop", Long{0}, Long{0}, Long{-3}, Long{5}); }),
            ErrorNumber::SubscriptOutOfRange);
  EXPECT_TRUE(SameObject(hosted.Picture(), picture));
  EXPECT_EQ(hosted.Screen(), screen);
  hosted.Call("Flip");
  EXPECT_EQ(hosted.Number("BitmapHeight"), 20);
}

TEST(ImageMethods, EveryServiceFailureKeepsThePictureAndLeaksNothing) {
  for (int call = 1;; ++call) {
    const auto stage = MakeStage();
    FaultyPlatform faulty(stage->Contracts());
    bool failed = false;
    {
      const auto window = stage->OpenWindow(50, 50);
      const auto control = TWAIN::Create(faulty.Contracts(), window->ControlsSurface(), nullptr);
      control->InitProperties();
      const PictureRef picture = PictureOf(stage->Contracts(), 80, 60, Gradient);
      control->PutRefPicture(picture);
      faulty.FailCall(call);
      try {
        control->Rotate();
        EXPECT_FALSE(SameObject(control->CurrentPicture(), picture));
      } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::OutOfMemory);
        EXPECT_TRUE(SameObject(control->CurrentPicture(), picture)) << "call " << call;
      }
      failed = faulty.HasFailed();
      faulty.FailCall(0);
      control->Refresh();
    }
    EXPECT_EQ(stage->Census(), CensusCounts{}) << "call " << call;
    if (!failed) break;
  }
}

TEST(Reentrancy, ProgressHandlersMayUseTheControl) {
  for (const auto& action :
       {+[](HostedControl& h) { h.Call("Refresh"); }, +[](HostedControl& h) { h.Call("Rotate"); },
        +[](HostedControl& h) { h.Assign(300, 3); },
        +[](HostedControl& h) { h.PutPicture(nullptr); },
        +[](HostedControl& h) { h.Call("Zoom", Integer{300}); },
        +[](HostedControl& h) { h.window->Resize(31, 17); }}) {
    HostedControl hosted(100, 100);
    hosted.Assign(120, 40);
    bool running = false;
    hosted.onEvent = [&](Event event, std::span<Variant>) {
      if (event != Event::Progress || running) return;
      running = true;
      action(hosted);
      running = false;
    };
    hosted.Call("Flip");
    EXPECT_EQ(PixelsOf(hosted.platform.Contracts(), hosted.Picture()),
              RowsOf(120, 40, [](Long x, Long y) { return Gradient(x, 39 - y); }));
    hosted.onEvent = nullptr;
    hosted.Call("Refresh");
  }
}

TEST(Lifetime, AControlLeavesNothingBehindAndItsPicturesStayWithTheHost) {
  PictureRef kept;
  const auto stage = MakeStage();
  {
    const auto window = stage->OpenWindow(100, 100);
    const auto control = TWAIN::Create(stage->Contracts(), window->ControlsSurface(), nullptr);
    control->InitProperties();
    control->PutRefPicture(PictureOf(stage->Contracts(), 300, 200, Gradient));
    control->Zoom(150);
    control->Flip();
    kept = control->CurrentPicture();
  }
  EXPECT_EQ(stage->Census(), (CensusCounts{.bitmaps = 1, .pictures = 1}));
  EXPECT_EQ(PixelsOf(stage->Contracts(), kept).width, 300);
  kept.reset();
  EXPECT_EQ(stage->Census(), CensusCounts{});
}

}  // namespace
}  // namespace quillet
