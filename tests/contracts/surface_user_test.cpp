#include <functional>
#include <iterator>
#include <utility>

#include "tests/contracts/surface_contract.h"
#include "tests/support/error_of.h"

namespace quillet {
namespace {

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

TEST_F(SurfaceContract, AMouseThatCannotBeIsRefused) {
  const struct {
    MouseAction action;
    int x;
    Integer button;
    ErrorNumber error;
  } cases[] = {
      {MouseAction::Down, 5, 3, ErrorNumber::InvalidProcedureCall},
      {MouseAction::Click, 5, 0, ErrorNumber::InvalidProcedureCall},
      {MouseAction::Move, 5, 8, ErrorNumber::InvalidProcedureCall},
      {MouseAction::Move, 40000, 0, ErrorNumber::Overflow},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ErrorOf([&] { window->Mouse(c.action, c.x, 5, c.button, 0); }), c.error);
  EXPECT_EQ(events.Take(), Log{});
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
