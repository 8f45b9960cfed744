#include "platform/portable/surface_input.h"

#include <gtest/gtest.h>

#include "platform/portable/portable_platform.h"
#include "platform/portable/portable_surface.h"
#include "tests/support/error_of.h"
#include "tests/support/recording_surface_events.h"
#include "tests/support/surface_layout.h"

namespace quillet {
namespace {

using Log = std::vector<std::string>;

TEST(ScrollBarGeometry, TheThumbShowsShareAndPlace) {
  const struct {
    int length;
    ScrollBarGeometry::State state;
    int thumbStart, thumbLength;
  } cases[] = {
      {234, {0, 900, 0, 100}, 17, 20},     // a tenth of the 200 pixels between the arrows
      {234, {0, 900, 900, 100}, 197, 20},  // against the far arrow
      {234, {0, 900, 450, 100}, 107, 20},  // half way
      {234, {0, -900, 0, 100}, 17, 20},    // a falling range starts at its Min too
      {234, {0, -900, -900, 100}, 197, 20},
      {234, {-450, 450, 0, 100}, 107, 20},
      {234, {0, 32767, 0, 1}, 17, 8},  // never shorter than 8
      {234, {-32768, 32767, 32767, 32767}, 150, 67},
      {42, {0, 10, 10, 100}, 17, 8},  // fills its trough
      {41, {0, 10, 0, 100}, 0, 0},    // no room for one
      {234, {5, 5, 5, 100}, 0, 0},    // nothing to scroll
      {0, {0, 10, 0, 1}, 0, 0},
  };
  for (const auto& c : cases) {
    const ScrollBarGeometry geometry(c.length, c.state);
    SCOPED_TRACE(testing::Message() << c.length << " " << c.state.max << " " << c.state.value);
    EXPECT_EQ(geometry.ThumbStart(), c.thumbStart);
    EXPECT_EQ(geometry.ThumbLength(), c.thumbLength);
    EXPECT_EQ(geometry.HasThumb(), c.thumbLength > 0);
  }
}

// The vertical bar is 234 pixels long: 200 between the arrows, 20 of them its thumb, so that each
// pixel the thumb is moved by is worth 5 of its range of 900.
class SurfaceInputTest : public testing::Test {
 protected:
  SurfaceInputTest() {
    LayOut(*surface, true, true);
    surface->VScroll1().PutMax(900);
    surface->VScroll1().PutSmallChange(10);
    surface->VScroll1().PutLargeChange(100);
    surface->Connect(&events);
  }

  static constexpr int kBarX = 265;

  PortablePlatform platform;
  std::shared_ptr<PortableSurface> surface = platform.CreateSurface(272, 249);
  PortableScrollBar& bar = surface->VScroll1();
  SurfaceInput& input = surface->Input();
  RecordingSurfaceEvents events;
};

TEST_F(SurfaceInputTest, APressDoesWhatItLandsOn) {
  bar.PutValue(450);
  ASSERT_EQ(bar.Geometry().ThumbStart(), 107);
  const struct {
    Integer y, button, value;
  } cases[] = {
      {0, 1, 440},   {16, 1, 440},  {17, 1, 350},  {106, 1, 350}, {107, 1, 450}, {126, 1, 450},
      {127, 1, 550}, {216, 1, 550}, {217, 1, 460}, {231, 1, 460}, {0, 2, 450},   {217, 4, 450},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.y);
    bar.PutValue(450);
    events.Take();
    input.MouseDown(kBarX, c.y, c.button, 0);
    input.MouseUp(kBarX, c.y, c.button, 0);
    EXPECT_EQ(bar.Value(), c.value);
    EXPECT_EQ(events.Take(), c.value == 450 ? Log{} : Log{"V Change"});
  }
}

TEST_F(SurfaceInputTest, AThumbDraggedByPixelsScrollsAndChangesOnceAtTheEnd) {
  bar.PutValue(452);
  events.Take();
  input.MouseDown(kBarX, 110, 1, 0);
  input.MouseMove(kBarX, 110, 1, 0);
  EXPECT_EQ(bar.Value(), 452) << "a pointer at rest moves nothing";
  input.MouseMove(kBarX, 112, 1, 0);
  EXPECT_EQ(bar.Value(), 462);
  input.MouseMove(5, 111, 1, 0);
  EXPECT_EQ(bar.Value(), 457) << "over the box too";
  input.MouseMove(kBarX, 1000, 1, 0);
  EXPECT_EQ(bar.Value(), 900);
  input.MouseUp(5, 1000, 1, 0);
  EXPECT_EQ(events.Take(), (Log{"V Scroll", "V Scroll", "V Scroll", "V Change"}));
  input.MouseMove(kBarX, 50, 0, 0);
  EXPECT_EQ(bar.Value(), 900) << "let go";
}

TEST_F(SurfaceInputTest, ADragBackToItsStartRaisesNoChange) {
  input.MouseDown(kBarX, 20, 1, 0);
  input.MouseMove(kBarX, 40, 1, 0);
  input.MouseMove(kBarX, 0, 1, 0);
  input.MouseUp(kBarX, 0, 1, 0);
  EXPECT_EQ(bar.Value(), 0);
  EXPECT_EQ(events.Take(), (Log{"V Scroll", "V Scroll"}));
}

TEST_F(SurfaceInputTest, ADragSurvivesALayoutInsideScroll) {
  events.during = [&](const std::string& event) {
    if (event != "V Scroll") return;
    bar.PutVisible(false);
    bar.PutVisible(true);
  };
  input.MouseDown(kBarX, 20, 1, 0);
  input.MouseMove(kBarX, 30, 1, 0);
  input.MouseMove(kBarX, 40, 1, 0);
  input.MouseUp(kBarX, 40, 1, 0);
  EXPECT_EQ(bar.Value(), 100);
  EXPECT_EQ(events.Take(), (Log{"V Scroll", "V Scroll", "V Change"}));
}

TEST_F(SurfaceInputTest, DisablingTheControlEndsADrag) {
  input.MouseDown(kBarX, 20, 1, 0);
  input.MouseMove(kBarX, 30, 1, 0);
  surface->UserControl().PutEnabled(false);
  input.MouseMove(kBarX, 90, 1, 0);
  EXPECT_EQ(events.Take(), (Log{"V Scroll", "V Change"}));
  surface->UserControl().PutEnabled(true);
  input.MouseMove(kBarX, 120, 1, 0);
  input.MouseUp(kBarX, 120, 1, 0);
  EXPECT_EQ(bar.Value(), 50);
  EXPECT_EQ(events.Take(), Log{});
}

TEST_F(SurfaceInputTest, NoClickWhenAHandlerDisablesTheControl) {
  events.during = [&](const std::string& event) {
    if (event.starts_with("MouseUp")) surface->UserControl().PutEnabled(false);
  };
  input.MouseDown(5, 5, 1, 0);
  input.MouseUp(5, 5, 1, 0);
  EXPECT_EQ(events.Take(), (Log{"MouseDown 1 0 5 5", "MouseUp 1 0 5 5"}));
}

TEST_F(SurfaceInputTest, APressOnTheBoxTakesTheFocusFromABar) {
  input.ClickArrow(bar, true);
  input.MouseDown(5, 5, 1, 0);
  input.MouseUp(5, 5, 1, 0);
  input.KeyDown(40, 0);
  EXPECT_EQ(bar.Value(), 10);
}

TEST_F(SurfaceInputTest, WhatAPersonCannotReachCannotBeClicked) {
  const auto touch = [&] {
    input.ClickArrow(bar, true);
    input.ClickPage(bar, true);
    input.DragThumb(bar, 300);
  };
  bar.Move(0, 0, 255, 0);
  touch();
  bar.Move(0, -6000, 255, 3000);
  touch();
  EXPECT_EQ(bar.Value(), 0);
  bar.Move(0, 0, 255, 600);  // arrows without room for a thumb between them
  touch();
  input.MouseDown(5, 20, 1, 0);
  input.MouseUp(5, 20, 1, 0);
  EXPECT_EQ(bar.Value(), 10);
}

TEST(PortableSurface, RefusesSizesNoWindowHas) {
  PortablePlatform platform;
  for (const auto& [width, height] : {std::pair{-1, 10}, {10, -1}, {32768, 10}})
    EXPECT_EQ(ErrorOf([&] { platform.CreateSurface(width, height); }),
              ErrorNumber::InvalidPropertyValue);
  EXPECT_EQ(platform.Census(), CensusCounts{});
}

}  // namespace
}  // namespace quillet
