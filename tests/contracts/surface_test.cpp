#include <functional>
#include <limits>

#include "tests/contracts/surface_contract.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_surface.h"

namespace quillet {
namespace {

TEST_F(SurfaceContract, ANewSurfaceHasItsDocumentedValues) {
  const auto other = platform->OpenWindow(800, 600);
  Surface& fresh = *other->ControlsSurface();
  EXPECT_EQ(fresh.UserControl().Width(), 800 * 15 + 60);
  EXPECT_EQ(fresh.UserControl().Height(), 600 * 15 + 60);
  EXPECT_EQ(fresh.UserControl().BorderStyle(), 1);
  EXPECT_TRUE(fresh.UserControl().Enabled());
  EXPECT_EQ(fresh.picTwain().BackColor(), kWindowBackground);
  EXPECT_EQ(fresh.picTwain().MousePointer(), 0);
  EXPECT_EQ(fresh.picTwain().MouseIcon(), nullptr);
  EXPECT_EQ(fresh.picTwain().ToolTipText(), "");
  EXPECT_NE(fresh.picTwain().hDC(), DCHandle::None);
  EXPECT_NE(fresh.picTwain().hWnd(), fresh.UserControl().hWnd());
  for (const Bar bar : {Bar::Horizontal, Bar::Vertical}) {
    const auto place = other->BarPlace(bar);
    EXPECT_TRUE(place.visible);
    EXPECT_EQ(place.min, 0);
    EXPECT_EQ(place.max, 32767);
    EXPECT_EQ(place.value, 0);
  }
  fresh.HScroll1().Move(15, 30, 450);
  EXPECT_EQ(other->BarPlace(Bar::Horizontal).height, 255);
}

TEST_F(SurfaceContract, OnlyTheHostChangesTheOuterSize) {
  control.PutBorderStyle(0);
  EXPECT_EQ(control.Width(), 400 * 15 + 60);
  EXPECT_EQ(events.Take(), Log{});
  window->Resize(404, 304);
  EXPECT_EQ(events.Take(), Log{}) << "the same outer size";
  window->Resize(200, 100);
  EXPECT_EQ(control.Width(), 200 * 15);
  EXPECT_EQ(control.Height(), 100 * 15);
  EXPECT_EQ(events.Take(), Log{"Resize"});
  control.PutBorderStyle(1);
  window->Resize(0, 0);
  EXPECT_EQ(control.Width(), 60);
  EXPECT_EQ(events.Take(), Log{"Resize"});
}

TEST_F(SurfaceContract, ABoxThatChangesItsPixelSizeSaysSoBeforeMoveReturns) {
  const struct {
    Single left, top, width, height;
    Single scaleWidth, scaleHeight;
    bool resized;
  } cases[] = {
      {0, 0, 1500, 750, 100, 50, true},     {0, 0, 1507, 750, 100, 50, false},  // 100.47 pixels
      {30, 45, 1500, 750, 100, 50, false},                                      // only the place
      {0, 0, 1507.5f, 750, 100, 50, false},  // a half goes to the even neighbour
      {0, 0, 1522.5f, 750, 102, 50, true},  {-150, 0, 1530, 765, 102, 51, true},
      {0, 0, 0, 765, 0, 51, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.width);
    box.Move(c.left, c.top, c.width, c.height);
    EXPECT_EQ(box.ScaleWidth(), c.scaleWidth);
    EXPECT_EQ(box.ScaleHeight(), c.scaleHeight);
    EXPECT_EQ(events.Take(), c.resized ? Log{"BoxResize"} : Log{});
  }
}

TEST_F(SurfaceContract, ARefusedValueChangesNothing) {
  const Single notANumber = std::numeric_limits<Single>::quiet_NaN();
  vertical.PutValue(700);
  box.PutMousePointer(99);
  events.Take();
  const auto barBefore = window->BarPlace(Bar::Vertical);
  const std::function<void()> writes[] = {
      [&] { control.PutBorderStyle(2); },    [&] { control.PutBorderStyle(-1); },
      [&] { box.PutMousePointer(16); },      [&] { box.PutMousePointer(-1); },
      [&] { box.PutMousePointer(100); },     [&] { box.Move(0, 0, -1, 300); },
      [&] { box.Move(0, 0, 300, -15); },     [&] { box.Move(0, 0, notANumber, 300); },
      [&] { box.Move(1e30f, 0, 300, 300); }, [&] { vertical.Move(0, 0, 300, -15); },
      [&] { vertical.Move(0, 0, -300); },    [&] { vertical.PutValue(1001); },
      [&] { vertical.PutValue(-1); },        [&] { vertical.PutSmallChange(0); },
      [&] { vertical.PutLargeChange(-5); },
  };
  for (const auto& write : writes) EXPECT_EQ(ErrorOf(write), ErrorNumber::InvalidPropertyValue);
  EXPECT_EQ(events.Take(), Log{});
  EXPECT_EQ(control.BorderStyle(), 1);
  EXPECT_EQ(box.MousePointer(), 99);
  EXPECT_EQ(box.ScaleWidth(), 383);
  EXPECT_EQ(vertical.Value(), 700);
  EXPECT_EQ(window->BarPlace(Bar::Vertical).width, barBefore.width);
  EXPECT_EQ(window->BarPlace(Bar::Vertical).height, barBefore.height);
}

TEST_F(SurfaceContract, ANewRangeTakesTheValueToItsNearestEndAndSaysSo) {
  const struct {
    void (ScrollBar::*write)(Integer);
    Integer end, before, after;
  } cases[] = {
      // The range was -100 to 100.
      {&ScrollBar::PutMax, 50, 80, 50},      {&ScrollBar::PutMax, 50, 50, 50},
      {&ScrollBar::PutMax, -200, 80, -100},  {&ScrollBar::PutMax, -200, -100, -100},
      {&ScrollBar::PutMax, 32767, 100, 100}, {&ScrollBar::PutMin, 20, 5, 20},
      {&ScrollBar::PutMin, 200, 5, 100},     {&ScrollBar::PutMin, -32768, -100, -100},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.end);
    horizontal.PutMin(-100);
    horizontal.PutMax(100);
    horizontal.PutValue(c.before);
    events.Take();
    (horizontal.*c.write)(c.end);
    EXPECT_EQ(horizontal.Value(), c.after);
    EXPECT_EQ(events.Take(), c.before == c.after ? Log{} : Log{"H Change"});
  }
}

TEST_F(SurfaceContract, AWrittenValueRaisesChangeOnlyWhenItIsAnother) {
  vertical.PutValue(40);
  EXPECT_EQ(events.Take(), Log{"V Change"});
  vertical.PutValue(40);
  vertical.PutVisible(false);
  EXPECT_EQ(events.Take(), Log{});
  vertical.PutValue(41);
  EXPECT_EQ(events.Take(), Log{"V Change"}) << "hidden bars have a value too";
}

TEST_F(SurfaceContract, PaintComesOnceForAllChangesOrAtOnceByRefresh) {
  const PictureRef picture = platform->Contracts().pictures.EmptyPicture();
  window->Idle();
  EXPECT_EQ(events.Take(), Log{}) << "nothing changed";
  box.PutPicture(picture);
  box.PutBackColor(0x0000FF);
  EXPECT_EQ(events.Take(), Log{});
  window->Idle();
  window->Idle();
  EXPECT_EQ(events.Take(), Log{"Paint"});
  box.Refresh();
  EXPECT_EQ(events.Take(), Log{"Paint"});
  window->Idle();
  EXPECT_EQ(events.Take(), Log{});
  box.Move(0, 0, 300, 300);
  window->Capture();
  EXPECT_EQ(events.Take(), (Log{"BoxResize", "Paint"}));
}

TEST_F(SurfaceContract, APaintHandlerMayRefresh) {
  events.during = [&](const std::string&) { box.Refresh(); };
  box.Refresh();
  EXPECT_EQ(events.Take(), Log{"Paint"});
  window->Idle();
  EXPECT_EQ(events.Take(), Log{"Paint"}) << "what was asked for while painting";
}

TEST_F(SurfaceContract, TheBoxKeepsItsAppearanceAndItsPictures) {
  PictureRef icon = platform->Contracts().pictures.EmptyPicture();
  const std::weak_ptr<Picture> watch = icon;
  const DCHandle dc = box.hDC();
  box.PutMouseIcon(icon);
  box.PutMousePointer(15);
  box.PutToolTipText("Scan è pronto");
  box.PutBackColor(0x8000000Fu);
  box.Move(0, 0, 3000, 3000);
  EXPECT_TRUE(SameObject(box.MouseIcon(), icon));
  EXPECT_EQ(box.MousePointer(), 15);
  EXPECT_EQ(box.ToolTipText(), "Scan è pronto");
  EXPECT_EQ(box.BackColor(), 0x8000000Fu);
  EXPECT_EQ(box.hDC(), dc);

  box.PutPicture(icon);
  box.PutMouseIcon(nullptr);
  icon.reset();
  EXPECT_FALSE(watch.expired()) << "still shown";
  box.PutPicture(nullptr);
  EXPECT_TRUE(watch.expired());
}

TEST_F(SurfaceContract, AfterItsWindowIsGoneASurfaceCanOnlyBeRead) {
  horizontal.PutValue(70);
  box.PutToolTipText("tip");
  events.Take();
  const WindowHandle boxWindow = box.hWnd();
  window.reset();
  EXPECT_EQ(platform->Census().windows, 0);

  EXPECT_EQ(control.Width(), 400 * 15 + 60);
  EXPECT_TRUE(control.Enabled());
  EXPECT_EQ(box.ScaleWidth(), 383);
  EXPECT_EQ(box.ToolTipText(), "tip");
  EXPECT_EQ(box.hWnd(), boxWindow);
  EXPECT_EQ(horizontal.Value(), 70);
  EXPECT_TRUE(horizontal.Visible());
  const std::function<void()> writes[] = {
      [&] { control.PutBorderStyle(0); },
      [&] { control.PutEnabled(false); },
      [&] { box.PutPicture(nullptr); },
      [&] { box.Move(0, 0, 15, 15); },
      [&] { box.Refresh(); },
      [&] { box.PutBackColor(0); },
      [&] { box.PutMousePointer(1); },
      [&] { box.PutMouseIcon(nullptr); },
      [&] { box.PutToolTipText(""); },
      [&] { horizontal.PutVisible(false); },
      [&] { horizontal.PutMin(80); },
      [&] { horizontal.PutMax(60); },
      [&] { horizontal.PutValue(71); },
      [&] { horizontal.PutSmallChange(2); },
      [&] { horizontal.PutLargeChange(2); },
      [&] { horizontal.Move(0, 0, 15); },
      [&] { horizontal.Move(0, 0, 15, 15); },
  };
  for (const auto& write : writes) EXPECT_EQ(ErrorOf(write), ErrorNumber::InvalidPropertyValue);
  EXPECT_EQ(horizontal.Value(), 70);
  EXPECT_EQ(events.Take(), Log{});
  surface->Connect(nullptr);
}

TEST_F(SurfaceContract, EachOperationOfALayoutCanBeMadeToFail) {
  FaultySurface faulty(surface);
  LayOut(faulty, false, false);
  const int operations = faulty.Operations();
  EXPECT_EQ(operations, 8);
  for (int n = 1; n <= operations; ++n) {
    LayOut(*surface, true, true);
    faulty.FailAt(n);
    EXPECT_EQ(ErrorOf([&] { LayOut(faulty, false, false); }), ErrorNumber::InvalidPropertyValue);
    EXPECT_EQ(faulty.Operations(), n);
    EXPECT_EQ(box.ScaleWidth(), 383) << "the box is moved last";
    EXPECT_EQ(horizontal.Visible(), n <= 5);
  }
}

}  // namespace
}  // namespace quillet
