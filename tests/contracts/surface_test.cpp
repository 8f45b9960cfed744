#include "platform/contracts/surface.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "tests/contracts/contract_platform.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_surface.h"
#include "tests/support/recording_surface_events.h"
#include "tests/support/surface_layout.h"

namespace quillet {
namespace {

using Log = std::vector<std::string>;

// A control of 400 x 300 pixels inside; both bars range over 0 to 1000 in steps of 10 and 100.
class SurfaceContract : public testing::Test {
 protected:
  SurfaceContract() {
    LayOut(*surface, true, true);
    for (ScrollBar* bar : {&horizontal, &vertical}) {
      bar->PutMax(1000);
      bar->PutSmallChange(10);
      bar->PutLargeChange(100);
    }
    window->Idle();
    surface->Connect(&events);
  }

  std::unique_ptr<ContractPlatform> platform = MakeContractPlatform();
  std::unique_ptr<ControlWindow> window = platform->OpenWindow(400, 300);
  std::shared_ptr<Surface> surface = window->ControlsSurface();
  ControlSurface& control = surface->UserControl();
  PictureBox& box = surface->picTwain();
  ScrollBar& horizontal = surface->HScroll1();
  ScrollBar& vertical = surface->VScroll1();
  RecordingSurfaceEvents events;
};

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

TEST_F(SurfaceContract, APersonMovesABarWithinItsRange) {
  const struct {
    Integer max, from;
    std::function<void()> act;
    Integer to;
    Log log;
  } cases[] = {
      {1000, 500, [&] { window->ClickArrow(Bar::Horizontal, true); }, 510, {"H Change"}},
      {1000, 500, [&] { window->ClickArrow(Bar::Horizontal, false); }, 490, {"H Change"}},
      {1000, 500, [&] { window->ClickPage(Bar::Horizontal, true); }, 600, {"H Change"}},
      {1000, 30, [&] { window->ClickPage(Bar::Horizontal, false); }, 0, {"H Change"}},
      {1000, 0, [&] { window->ClickPage(Bar::Horizontal, false); }, 0, {}},
      {-1000, -500, [&] { window->ClickArrow(Bar::Horizontal, true); }, -510, {"H Change"}},
      {-1000, -950, [&] { window->ClickPage(Bar::Horizontal, true); }, -1000, {"H Change"}},
      {1000, 500, [&] { window->DragThumb(Bar::Horizontal, 7); }, 7, {"H Scroll", "H Change"}},
      {1000,
       500,
       [&] { window->DragThumb(Bar::Horizontal, 9999); },
       1000,
       {"H Scroll", "H Change"}},
      {1000, 500, [&] { window->DragThumb(Bar::Horizontal, 500); }, 500, {}},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(i);
    const auto& c = cases[i];
    horizontal.PutMax(c.max);
    horizontal.PutValue(c.from);
    events.Take();
    c.act();
    EXPECT_EQ(horizontal.Value(), c.to);
    EXPECT_EQ(events.Take(), c.log);
  }
}

TEST_F(SurfaceContract, AHiddenBarAndADisabledControlTakeNoInput) {
  const auto touchTheBar = [&] {
    window->DragThumb(Bar::Vertical, 300);
    window->ClickArrow(Bar::Vertical, true);
    window->ClickPage(Bar::Vertical, true);
    window->Mouse(MouseAction::Click, 392, 8, 1, 0);
  };
  vertical.PutVisible(false);
  touchTheBar();
  vertical.PutVisible(true);
  control.PutEnabled(false);
  touchTheBar();
  window->Mouse(MouseAction::DblClick, 20, 20, 1, 0);
  window->Mouse(MouseAction::Move, 20, 20, 0, 0);
  window->Key(KeyAction::Down, 65, 0);
  window->Key(KeyAction::Press, 97, 0);
  window->Key(KeyAction::Up, 65, 0);
  EXPECT_EQ(events.Take(), Log{});
  EXPECT_EQ(vertical.Value(), 0);
}

TEST_F(SurfaceContract, OnlyTheBoxReportsTheMouse) {
  window->Mouse(MouseAction::Click, 5, 7, 1, 3);
  EXPECT_EQ(events.Take(), (Log{"MouseDown 1 3 5 7", "MouseUp 1 3 5 7", "Click"}));
  window->Mouse(MouseAction::Click, 5, 7, 2, 0);
  EXPECT_EQ(events.Take(), (Log{"MouseDown 2 0 5 7", "MouseUp 2 0 5 7"}));
  window->Mouse(MouseAction::DblClick, 5, 7, 1, 0);
  EXPECT_EQ(events.Take(),
            (Log{"MouseDown 1 0 5 7", "MouseUp 1 0 5 7", "Click", "DblClick", "MouseUp 1 0 5 7"}));
  window->Mouse(MouseAction::Move, 382, 282, 0, 4);
  EXPECT_EQ(events.Take(), Log{"MouseMove 0 4 382 282"});
  for (const auto& [x, y] : {std::pair{392, 292}, {386, 299}, {-1, 5}, {5, 300}}) {
    window->Mouse(MouseAction::Click, x, y, 1, 0);
    window->Mouse(MouseAction::Move, x, y, 0, 0);
  }
  EXPECT_EQ(events.Take(), Log{});
}

TEST_F(SurfaceContract, TheBoxKeepsTheMouseWhileAButtonIsDown) {
  box.Move(150, 150, 1500, 1500);
  events.Take();
  window->Mouse(MouseAction::Down, 15, 15, 1, 0);
  window->Mouse(MouseAction::Down, 16, 15, 2, 0);
  window->Mouse(MouseAction::Move, 2, 200, 3, 0);
  window->Mouse(MouseAction::Up, 2, 200, 1, 0);
  window->Mouse(MouseAction::Up, 1, 200, 2, 0);
  window->Mouse(MouseAction::Move, 2, 200, 0, 0);
  EXPECT_EQ(events.Take(), (Log{"MouseDown 1 0 5 5", "MouseDown 2 0 6 5", "MouseMove 3 0 -8 190",
                                "MouseUp 1 0 -8 190", "MouseUp 2 0 -9 190"}));
}

TEST_F(SurfaceContract, TheControlSeesEveryKeyBeforeTheBarWithTheFocus) {
  window->Key(KeyAction::Down, 40, 1);
  window->Key(KeyAction::Press, 97, 0);
  window->Key(KeyAction::Up, 40, 2);
  EXPECT_EQ(events.Take(), (Log{"KeyDown 40 1", "KeyPress 97", "KeyUp 40 2"}));
  EXPECT_EQ(vertical.Value(), 0) << "no bar has the focus yet";

  window->ClickArrow(Bar::Vertical, true);
  events.Take();
  const struct {
    Integer code, value;
  } cases[] = {{40, 20}, {39, 30},   {38, 20}, {37, 10}, {34, 110},
               {33, 10}, {35, 1000}, {36, 0},  {65, 0}};
  for (const auto& [code, value] : cases) {
    const Integer before = vertical.Value();
    window->Key(KeyAction::Down, code, 0);
    EXPECT_EQ(vertical.Value(), value) << code;
    Log expected{"KeyDown " + std::to_string(code) + " 0"};
    if (value != before) expected.push_back("V Change");
    EXPECT_EQ(events.Take(), expected);
  }
  events.eatKeys = true;
  window->Key(KeyAction::Down, 40, 0);
  EXPECT_EQ(vertical.Value(), 0);
  EXPECT_EQ(events.Take(), Log{"KeyDown 40 0"});
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

// Whatever raises an event, its handler may disconnect, let go of the surface and close the window.
TEST_F(SurfaceContract, AHandlerMayEndEverything) {
  const struct {
    const char* event;
    std::function<void(ControlWindow&, Surface&)> act;
  } cases[] = {
      {"Resize", [](ControlWindow& w, Surface&) { w.Resize(50, 50); }},
      {"BoxResize", [](ControlWindow&, Surface& s) { s.picTwain().Move(0, 0, 15, 15); }},
      {"Paint", [](ControlWindow& w, Surface&) { w.Idle(); }},
      {"Paint", [](ControlWindow& w, Surface&) { w.Capture(); }},
      {"Paint", [](ControlWindow&, Surface& s) { s.picTwain().Refresh(); }},
      {"H Change", [](ControlWindow&, Surface& s) { s.HScroll1().PutValue(5); }},
      {"H Change", [](ControlWindow& w, Surface&) { w.ClickArrow(Bar::Horizontal, true); }},
      {"V Change", [](ControlWindow& w, Surface&) { w.ClickPage(Bar::Vertical, true); }},
      {"V Scroll", [](ControlWindow& w, Surface&) { w.DragThumb(Bar::Vertical, 9); }},
      {"MouseDown", [](ControlWindow& w, Surface&) { w.Mouse(MouseAction::DblClick, 5, 5, 1, 0); }},
      {"MouseUp", [](ControlWindow& w, Surface&) { w.Mouse(MouseAction::Click, 5, 5, 1, 0); }},
      {"Click", [](ControlWindow& w, Surface&) { w.Mouse(MouseAction::DblClick, 5, 5, 1, 0); }},
      {"DblClick", [](ControlWindow& w, Surface&) { w.Mouse(MouseAction::DblClick, 5, 5, 1, 0); }},
      {"MouseMove", [](ControlWindow& w, Surface&) { w.Mouse(MouseAction::Move, 5, 5, 0, 0); }},
      {"KeyDown", [](ControlWindow& w, Surface&) { w.Key(KeyAction::Down, 40, 0); }},
      {"KeyPress", [](ControlWindow& w, Surface&) { w.Key(KeyAction::Press, 97, 0); }},
      {"KeyUp", [](ControlWindow& w, Surface&) { w.Key(KeyAction::Up, 40, 0); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.event);
    auto doomedWindow = platform->OpenWindow(200, 200);
    auto doomed = doomedWindow->ControlsSurface();
    LayOut(*doomed, true, true);
    const std::weak_ptr<Surface> watch = doomed;
    RecordingSurfaceEvents receiver;
    receiver.during = [&](const std::string& event) {
      if (!event.starts_with(c.event)) return;
      ASSERT_TRUE(doomed);
      doomed->Connect(nullptr);
      doomed.reset();
      doomedWindow.reset();
    };
    doomed->Connect(&receiver);
    c.act(*doomedWindow, *doomed);
    EXPECT_TRUE(watch.expired());
    const Log log = receiver.Take();
    ASSERT_FALSE(log.empty());
    EXPECT_TRUE(log.back().starts_with(c.event)) << "nothing comes after it: " << log.back();
  }
  surface->Connect(nullptr);
  surface.reset();
  window.reset();
  EXPECT_EQ(platform->Census(), CensusCounts{});
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

TEST_F(SurfaceContract, AHandlerMayHideTheBarOrDisableTheControlInsideADrag) {
  events.during = [&](const std::string& event) {
    if (event == "V Scroll") vertical.PutVisible(false);
    if (event == "H Scroll") control.PutEnabled(false);
  };
  window->DragThumb(Bar::Vertical, 250);
  EXPECT_EQ(events.Take(), (Log{"V Scroll", "V Change"}));
  EXPECT_EQ(vertical.Value(), 250);
  window->DragThumb(Bar::Horizontal, 250);
  EXPECT_EQ(events.Take(), (Log{"H Scroll", "H Change"}));
  window->DragThumb(Bar::Horizontal, 500);
  EXPECT_EQ(events.Take(), Log{});
}

}  // namespace
}  // namespace quillet
