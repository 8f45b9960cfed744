#include "control/events.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <stdexcept>

#include "tests/support/error_of.h"
#include "tests/support/faulty_surface.h"
#include "tests/support/hosted_control.h"

namespace quillet {
namespace {

using Log = std::vector<std::string>;

class Sink : public EventSink {
 public:
  using Handler = std::function<void(Event, std::span<Variant>)>;
  explicit Sink(Handler handler) : m_handler(std::move(handler)) {}
  void Invoke(Event event, std::span<Variant> arguments) override { m_handler(event, arguments); }

 private:
  Handler m_handler;
};

// Where the surface's side of the events can be heard.
class TappedSurface : public FaultySurface {
 public:
  using FaultySurface::FaultySurface;
  void Connect(SurfaceEvents* receiver) override {
    events = receiver;
    FaultySurface::Connect(receiver);
  }
  SurfaceEvents* events = nullptr;
};

// A control of which the test plays the surface, and sinks that write down what they hear.
class Events : public testing::Test {
 protected:
  Events() { control->InitProperties(); }

  int Connect(const std::string& name, const Sink::Handler& handler = {}) {
    return control->Connect(
        std::make_shared<Sink>([this, name, handler](Event event, std::span<Variant> arguments) {
          std::string line = name;
          line.append(" ").append(Describe(event).name);
          for (const Variant& argument : arguments)
            line.append(" ").append(VariantToString(argument));
          log.push_back(line);
          if (handler) handler(event, arguments);
        }));
  }
  Log Take() { return std::exchange(log, {}); }
  void Click() { surface->events->picTwain_Click(); }

  std::unique_ptr<Stage> stage = MakeStage();
  std::unique_ptr<ControlWindow> window = stage->OpenWindow(100, 100);
  std::shared_ptr<TappedSurface> surface =
      std::make_shared<TappedSurface>(window->ControlsSurface());
  std::shared_ptr<TWAIN> control = TWAIN::Create(stage->Contracts(), surface, nullptr);
  Log log;
};

TEST_F(Events, SinksHearThemInTheOrderInWhichTheyConnected) {
  Connect("a");
  const int b = Connect("b");
  Connect("c");
  Click();
  EXPECT_EQ(Take(), (Log{"a Click", "b Click", "c Click"}));
  EXPECT_TRUE(control->Disconnect(b));
  EXPECT_FALSE(control->Disconnect(b));
  EXPECT_NE(Connect("d"), b);
  Click();
  EXPECT_EQ(Take(), (Log{"a Click", "c Click", "d Click"}));
  EXPECT_EQ(ErrorOf([&] { control->Connect(nullptr); }), ErrorNumber::InvalidProcedureCall);
}

TEST_F(Events, WhatSinksLeaveInTheArgumentsIsWhatTheSurfaceGoesOnWith) {
  const struct {
    std::function<void(SurfaceEvents&, Integer&, Integer&, Single&, Single&)> raise;
    std::string heard;
  } cases[] = {
      {[](auto& on, Integer& a, Integer& b, Single&, Single&) { on.UserControl_KeyDown(a, b); },
       "sink KeyDown 1 2"},
      {[](auto& on, Integer& a, Integer& b, Single&, Single&) { on.UserControl_KeyUp(a, b); },
       "sink KeyUp 1 2"},
      {[](auto& on, Integer& a, Integer& b, Single& x, Single& y) {
         on.picTwain_MouseDown(a, b, x, y);
       },
       "sink MouseDown 1 2 3.5 -4"},
      {[](auto& on, Integer& a, Integer& b, Single& x, Single& y) {
         on.picTwain_MouseMove(a, b, x, y);
       },
       "sink MouseMove 1 2 3.5 -4"},
      {[](auto& on, Integer& a, Integer& b, Single& x, Single& y) {
         on.picTwain_MouseUp(a, b, x, y);
       },
       "sink MouseUp 1 2 3.5 -4"},
  };
  Connect("sink", [](Event, std::span<Variant> arguments) {
    for (Variant& argument : arguments) argument = Long{7};
  });
  for (const auto& c : cases) {
    Integer first = 1, second = 2;
    Single x = 3.5f, y = -4;
    c.raise(*surface->events, first, second, x, y);
    EXPECT_EQ(Take(), Log{c.heard});
    const bool hasPoint = c.heard.find("Mouse") != std::string::npos;
    EXPECT_EQ(first, 7) << c.heard;
    EXPECT_EQ(second, 7) << c.heard;
    EXPECT_EQ(x, hasPoint ? 7.0f : 3.5f) << c.heard;
    EXPECT_EQ(y, hasPoint ? 7.0f : -4.0f) << c.heard;
  }
  Integer key = 97;
  surface->events->UserControl_KeyPress(key);
  EXPECT_EQ(key, 7);
}

TEST_F(Events, AnArgumentKeepsItsKindFromSinkToSink) {
  const struct {
    Variant left;
    const char* next;
    Integer key;
  } cases[] = {
      {std::string("65"), "65", 65},
      {true, "-1", -1},
      {2.5, "2", 2},
      {std::string("no number"), "97", 97},
      {Long{70000}, "97", 97},
      {std::monostate{}, "0", 0},
      {ObjectRef(), "97", 97},
      {std::numeric_limits<double>::quiet_NaN(), "97", 97},
  };
  Variant left;
  Connect("a", [&](Event, std::span<Variant> arguments) { arguments[0] = left; });
  Connect("b");
  for (const auto& c : cases) {
    left = c.left;
    Integer key = 97;
    surface->events->UserControl_KeyPress(key);
    EXPECT_EQ(Take(), (Log{"a KeyPress 97", std::string("b KeyPress ").append(c.next)}));
    EXPECT_EQ(key, c.key);
  }
}

TEST_F(Events, ASinkThatFailsStopsNeitherTheOthersNorTheControl) {
  Connect("a", [](Event, std::span<Variant> arguments) {
    if (!arguments.empty()) arguments[0] = Integer{5};
    throw RunTimeError(ErrorNumber::Overflow);
  });
  Connect("b", [](Event, std::span<Variant>) { throw std::runtime_error("of its own"); });
  Connect("c", [](Event, std::span<Variant>) { throw 1; });
  Integer key = 97;
  surface->events->UserControl_KeyPress(key);
  EXPECT_EQ(Take(), (Log{"a KeyPress 97", "b KeyPress 5", "c KeyPress 5"}));
  EXPECT_EQ(key, 5);

  control->PutRefPicture(PictureOf(stage->Contracts(), 4, 2, Gradient));
  Take();
  control->Flip();
  EXPECT_EQ(Take(), (Log{"a Progress 0", "b Progress 0", "c Progress 0", "a Progress 100",
                         "b Progress 100", "c Progress 100"}));
  EXPECT_EQ(PixelsOf(stage->Contracts(), control->CurrentPicture()).At(0, 0), Gradient(0, 1));
}

TEST_F(Events, SinksMayComeAndGoInsideAnEvent) {
  int second = 0;
  bool connected = false;
  Connect("a", [&](Event, std::span<Variant>) {
    control->Disconnect(second);
    if (!std::exchange(connected, true)) Connect("late");
  });
  second = Connect("b");
  int self = 0;
  self = Connect("c", [&](Event, std::span<Variant>) { control->Disconnect(self); });
  Click();
  EXPECT_EQ(Take(), (Log{"a Click", "c Click"}));
  Click();
  EXPECT_EQ(Take(), (Log{"a Click", "late Click"}));
}

// A host's object may be listener and owner in one, and end both from its destructor.
TEST_F(Events, ADyingSinkMayDisconnectOthersAndLetGoOfTheControl) {
  struct Owner : Sink {
    using Sink::Sink;
    ~Owner() override { atEnd(); }
    std::function<void()> atEnd;
  };
  const int other = Connect("other");
  auto owner = std::make_shared<Owner>([](Event, std::span<Variant>) {});
  owner->atEnd = [&] { EXPECT_TRUE(control->Disconnect(other)); };
  const int cookie = control->Connect(std::move(owner));
  Connect("last");
  control->Disconnect(cookie);
  Click();
  EXPECT_EQ(Take(), Log{"last Click"});

  auto keeper = std::make_shared<Owner>([](Event, std::span<Variant>) {});
  TWAIN* const raw = control.get();
  keeper->atEnd = [raw] { EXPECT_FALSE(raw->Disconnect(1)); };
  control->Connect(std::move(keeper));
  surface.reset();
  control.reset();
}

TEST_F(Events, OfAControlThatIsGoneComeNoMore) {
  const std::weak_ptr<TWAIN> watch = control;
  Connect("a", [&](Event, std::span<Variant>) { control.reset(); });
  Connect("b");
  surface->events->picTwain_DblClick();
  EXPECT_EQ(Take(), (Log{"a DblClick", "b DblClick"})) << "this event still goes to all";
  EXPECT_TRUE(watch.expired());
  EXPECT_EQ(surface->events, nullptr);
}

TEST(Input, CountsInTheBoxsOwnPixelsWhateverTheViewShows) {
  HostedControl hosted(100, 100);
  hosted.Assign(300, 200);
  const auto clickAt = [&](int x, int y) {
    hosted.window->Idle();
    hosted.TakeLog();
    hosted.window->Mouse(MouseAction::Click, x, y, 1, 0);
    return hosted.TakeLog();
  };
  const Log atTheEdge{"MouseDown 1 0 0 5", "MouseUp 1 0 0 5", "Click"};
  EXPECT_EQ(clickAt(0, 5), atTheEdge);
  hosted.window->DragThumb(Bar::Horizontal, 100);
  EXPECT_EQ(clickAt(0, 5), atTheEdge);
  hosted.Call("Zoom", Integer{300});
  EXPECT_EQ(clickAt(0, 5), atTheEdge);
  EXPECT_EQ(clickAt(95, 5), Log{}) << "a bar";
  EXPECT_EQ(clickAt(95, 95), Log{}) << "the corner between the bars";
  hosted.Put("Enabled", false);
  EXPECT_EQ(clickAt(0, 5), Log{});
}

TEST(Input, AKeyThatTheHostEatsMovesNoBar) {
  HostedControl hosted(100, 100);
  hosted.Assign(300, 50);
  hosted.window->ClickArrow(Bar::Horizontal, true);  // the bar has the focus now
  hosted.window->Key(KeyAction::Down, 39, 0);        // right
  EXPECT_EQ(hosted.BarValue(Bar::Horizontal), 20);
  hosted.onEvent = [](Event event, std::span<Variant> arguments) {
    if (event == Event::KeyDown) arguments[0] = Integer{0};
  };
  hosted.window->Key(KeyAction::Down, 39, 0);
  EXPECT_EQ(hosted.BarValue(Bar::Horizontal), 20);
}

}  // namespace
}  // namespace quillet
