#include <gtest/gtest.h>

#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"

namespace quillet {
namespace {

const Pixel kWhite{255, 255, 255};

// A rectangle of the gradient as the box shows it, the background beside it.
PixelRows24 Part(Long boxWidth, Long boxHeight, Long pictureWidth, Long pictureHeight, Long x = 0,
                 Long y = 0) {
  return RowsOf(boxWidth, boxHeight, [=](Long column, Long row) {
    return column + x < pictureWidth && row + y < pictureHeight ? Gradient(column + x, row + y)
                                                                : kWhite;
  });
}

TEST(View, LaysOutBoxAndBarsByThePicturesSize) {
  const struct {
    const char* what;
    int viewWidth, viewHeight;
    Long pictureWidth, pictureHeight;
    bool scrollable;
    const char* layout;
    Long maxH, maxV;
  } cases[] = {
      {"smaller", 100, 100, 50, 30, true, "100x100", -50, -70},
      {"equal", 100, 100, 100, 100, true, "100x100", 0, 0},
      {"one pixel wider", 100, 100, 101, 50, true, "100x83 h", 1, -33},
      {"one pixel taller", 100, 100, 50, 101, true, "83x100 v", -33, 1},
      {"larger", 100, 100, 300, 200, true, "83x83 hv", 217, 117},
      {"wider, and taller than what the bar leaves", 100, 100, 200, 95, true, "83x83 hv", 117, 12},
      {"not scrollable", 100, 100, 300, 200, false, "100x100", 200, 100},
      {"beyond 16 bits", 100, 100, 40000, 50, true, "100x83 h", 32767, -33},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    HostedControl hosted(c.viewWidth, c.viewHeight);
    hosted.Put("Scrollable", c.scrollable);
    hosted.Assign(c.pictureWidth, c.pictureHeight);
    EXPECT_EQ(hosted.Layout(), c.layout);
    EXPECT_EQ(hosted.BarMax(Bar::Horizontal), c.maxH);
    EXPECT_EQ(hosted.BarMax(Bar::Vertical), c.maxV);
    const auto box = hosted.window->BoxPlace();
    EXPECT_EQ(hosted.Screen(),
              Part(static_cast<Long>(box.width) / 15, static_cast<Long>(box.height) / 15,
                   c.pictureWidth, c.pictureHeight));
  }
}

TEST(View, PlacesBarsInTwipsByTheBorder) {
  HostedControl hosted(100, 100);  // 1560 twips with its border
  for (const Integer border : {Integer{1}, Integer{0}}) {
    SCOPED_TRACE(border);
    hosted.Put("BorderStyle", border);
    hosted.Assign(300, 300);
    const Single allowance = border == 1 ? 60 : 0;
    const auto box = hosted.window->BoxPlace();
    EXPECT_EQ(box.width, 1560 - 255 - allowance);
    EXPECT_EQ(box.height, 1560 - 255 - allowance);
    const auto horizontal = hosted.window->BarPlace(Bar::Horizontal);
    EXPECT_EQ(horizontal.left, 0);
    EXPECT_EQ(horizontal.top, 1560 - 255 - allowance);
    EXPECT_EQ(horizontal.width, 1560 - 285);
    EXPECT_EQ(horizontal.height, 255);
    const auto vertical = hosted.window->BarPlace(Bar::Vertical);
    EXPECT_EQ(vertical.left, 1560 - 255 - allowance);
    EXPECT_EQ(vertical.top, 0);
    EXPECT_EQ(vertical.width, 255);
    EXPECT_EQ(vertical.height, 1560 - 285);
  }
}

TEST(View, BarsPersistBecauseTheyAreJudgedByTheBoxAsItIs) {
  HostedControl hosted(100, 100);
  hosted.Assign(200, 200);
  hosted.Assign(100, 100);
  EXPECT_EQ(hosted.Layout(), "83x83 hv");
}

TEST(View, ANestOfLayoutsThatWouldRunForEverSettlesOnWhatTheWholeAreaAsksFor) {
  HostedControl hosted(100, 100);
  hosted.Assign(200, 50);
  ASSERT_EQ(hosted.Layout(), "100x83 h");
  hosted.Assign(100, 100);
  EXPECT_EQ(hosted.Layout(), "100x100");
  EXPECT_EQ(hosted.Screen(), Part(100, 100, 100, 100));
  hosted.Assign(200, 50);  // and the next nest starts afresh
  EXPECT_EQ(hosted.Layout(), "100x83 h");
}

TEST(View, ANestThatEndsByItselfIsNotSettled) {
  HostedControl hosted(100, 100);
  hosted.Assign(200, 95);
  hosted.Put("AutoRedraw", false);
  hosted.Call("Flip");
  EXPECT_EQ(hosted.Layout(), "83x83 hv");
}

TEST(View, LayoutsOfAHostsOwnInsideANestDoNotSettleIt) {
  HostedControl hosted(300, 300);
  hosted.Assign(200, 95);
  bool running = false;
  hosted.onEvent = [&](Event event, std::span<Variant>) {
    if (event != Event::Paint || std::exchange(running, true)) return;
    hosted.Call("Refresh");
    running = false;
  };
  hosted.window->Resize(100, 100);
  EXPECT_EQ(hosted.Layout(), "83x83 hv");
}

TEST(View, ScrollingMovesOverThePicture) {
  HostedControl hosted(100, 100);
  hosted.Assign(300, 200);
  hosted.window->ClickArrow(Bar::Horizontal, true);
  hosted.window->ClickPage(Bar::Vertical, true);
  EXPECT_EQ(hosted.BarValue(Bar::Horizontal), 10);
  EXPECT_EQ(hosted.BarValue(Bar::Vertical), 100);
  EXPECT_EQ(hosted.Screen(), Part(83, 83, 300, 200, 10, 100));
  hosted.window->DragThumb(Bar::Horizontal, 217);
  EXPECT_EQ(hosted.Screen(), Part(83, 83, 300, 200, 217, 100));
}

TEST(View, OnlyDraggingRaisesScroll) {
  HostedControl hosted(100, 100);
  hosted.Assign(300, 200);
  hosted.window->Idle();
  hosted.TakeLog();
  hosted.window->ClickArrow(Bar::Horizontal, true);
  hosted.window->ClickPage(Bar::Horizontal, true);
  EXPECT_EQ(hosted.TakeLog(), std::vector<std::string>{});
  hosted.window->DragThumb(Bar::Horizontal, 50);
  EXPECT_EQ(hosted.TakeLog(), std::vector<std::string>{"Scroll"});
}

TEST(View, ANewPictureKeepsTheScrollPositionAsFarAsItReaches) {
  HostedControl hosted(100, 100);
  hosted.Assign(300, 300);
  hosted.window->DragThumb(Bar::Horizontal, 60);
  hosted.window->DragThumb(Bar::Vertical, 200);
  hosted.Assign(300, 250);
  EXPECT_EQ(hosted.BarValue(Bar::Horizontal), 60);
  EXPECT_EQ(hosted.BarValue(Bar::Vertical), 167);
  EXPECT_EQ(hosted.Screen(), Part(83, 83, 300, 250, 60, 167));
}

TEST(View, TheZoomScalesScrollPositionsInEveryLayout) {
  HostedControl hosted(100, 100);
  hosted.Assign(300, 300);
  hosted.window->DragThumb(Bar::Horizontal, 20);
  hosted.Call("Zoom", Integer{200});
  EXPECT_EQ(hosted.Layout(), "83x83 hv");
  EXPECT_EQ(hosted.BarValue(Bar::Horizontal), 40);
  hosted.Call("Refresh");
  EXPECT_EQ(hosted.BarValue(Bar::Horizontal), 80);
  hosted.window->DragThumb(Bar::Horizontal, 400);
  hosted.Call("Refresh");  // 800 lies beyond the range: refused
  EXPECT_EQ(hosted.BarValue(Bar::Horizontal), 400);
}

TEST(View, WithoutAutoRedrawTheScreenWaitsForARefresh) {
  HostedControl hosted(100, 100);
  hosted.Assign(60, 60);
  hosted.Put("AutoRedraw", false);
  hosted.Call("Crop", Long{0}, Long{0}, Long{30}, Long{30});
  EXPECT_EQ(hosted.Number("BitmapWidth"), 30);
  EXPECT_EQ(hosted.Screen(), Part(100, 100, 60, 60));
  hosted.Call("Refresh");
  EXPECT_EQ(hosted.Screen(), Part(100, 100, 30, 30));
  EXPECT_FALSE(VariantToBoolean(hosted.Get("AutoRedraw")));
}

TEST(View, WithoutAutoRedrawABarsChangeStillRepaints) {
  HostedControl hosted(100, 100);
  hosted.Assign(300, 300);
  hosted.Put("AutoRedraw", false);
  hosted.window->ClickArrow(Bar::Vertical, true);
  EXPECT_EQ(hosted.Screen(), Part(83, 83, 300, 300, 0, 10));
}

TEST(View, AssigningNothingKeepsTheScreenAndLaysNothingOut) {
  HostedControl hosted(100, 100);
  hosted.Assign(60, 60);
  hosted.PutPicture(nullptr);
  EXPECT_EQ(hosted.Picture(), nullptr);
  EXPECT_EQ(hosted.Number("BitmapWidth"), 0);
  hosted.Call("Refresh");
  hosted.window->Resize(90, 80);
  EXPECT_EQ(hosted.Layout(), "100x100");
  hosted.window->Resize(100, 100);
  EXPECT_EQ(hosted.Screen(), Part(100, 100, 60, 60));
}

TEST(View, ResizeIsRaisedAfterTheNewLayout) {
  HostedControl hosted(100, 100);
  hosted.Assign(150, 150);
  std::string seen;
  hosted.onEvent = [&](Event event, std::span<Variant>) {
    if (event == Event::Resize) seen = hosted.Layout();
  };
  hosted.window->Resize(200, 200);
  EXPECT_EQ(seen, "200x200");
}

TEST(View, AControlTooSmallForItsBarsSurvives) {
  HostedControl hosted(40, 40);
  hosted.Assign(300, 300);
  for (const int size : {20, 17, 16, 5, 1, 0, 40}) {
    hosted.window->Resize(size, size);
    hosted.window->Idle();
  }
  hosted.window->Resize(100, 100);
  EXPECT_EQ(hosted.Layout(), "83x83 hv");
  EXPECT_EQ(hosted.Screen(), Part(83, 83, 300, 300));
}

TEST(View, RefreshPaintsAtOnceAndOtherChangesWhenTheHostMayPaint) {
  HostedControl hosted(100, 100);
  hosted.Assign(60, 60);
  EXPECT_EQ(hosted.TakeLog(), std::vector<std::string>{"notify Picture"});
  hosted.window->Idle();
  EXPECT_EQ(hosted.TakeLog(), std::vector<std::string>{"Paint"});
  hosted.Call("Refresh");
  EXPECT_EQ(hosted.TakeLog(), std::vector<std::string>{"Paint"});
}

}  // namespace
}  // namespace quillet
