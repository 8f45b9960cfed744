// What a host may do inside an event: everything, in every event.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <utility>

#include "base/runtime_error.h"
#include "tests/support/bmp_file.h"
#include "tests/support/hosted_control.h"
#include "tests/support/print_census.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

class OtherSink : public EventSink {
 public:
  void Invoke(Event, std::span<Variant>) override {}
};

// A host with its window and its control, both of which it may let go of at any moment.
struct Host {
  explicit Host(std::string file) : pictureFile(std::move(file)) {
    control = TWAIN::Create(stage->Contracts(), window->ControlsSurface(), nullptr);
    control->InitProperties();
    Assign(140, 120);
    Call("Refresh");
    window->Idle();
    Connect();
  }

  void Connect() {
    struct Sink : EventSink {
      explicit Sink(Host& h) : host(h) {}
      void Invoke(Event event, std::span<Variant>) override {
        ++host.heard;
        if (host.onEvent) host.onEvent(event);
      }
      Host& host;
    };
    cookie = control->Connect(std::make_shared<Sink>(*this));
  }

  // Errors are the business of other tests.
  template <typename... Arguments>
  void Call(const char* name, Arguments... arguments) {
    std::vector<Variant> values{Variant(arguments)...};
    Invoke(name, Access::Method, values);
  }
  void Put(const char* name, Variant value) { Invoke(name, Access::Put, {&value, 1}); }
  void PutPicture(const PictureRef& picture) {
    Variant value = ObjectRef(picture);
    Invoke("Picture", Access::PutRef, {&value, 1});
  }
  void Assign(Long width, Long height) {
    PutPicture(PictureOf(stage->Contracts(), width, height, Gradient));
  }
  void Invoke(const char* name, Access access, std::span<Variant> arguments) {
    if (!control) return;
    try {
      quillet::Invoke(*control, NumberOf(name), access, arguments);
    } catch (const RunTimeError&) {
    }
  }

  // Where a test makes events; nothing once the window is gone.
  template <typename Action>
  void Use(Action&& action) {
    if (window) action(*window);
  }

  std::string pictureFile;
  std::unique_ptr<Stage> stage = MakeStage();
  std::unique_ptr<ControlWindow> window = stage->OpenWindow(100, 100);
  std::shared_ptr<TWAIN> control;
  int cookie = 0;
  int heard = 0;
  std::function<void(Event)> onEvent;
};

struct Named {
  const char* name;
  void (*run)(Host&);
  bool asksAPerson = false;
};

// Where scanners and dialogs are real, a person would have to answer; and windows on a display take
// their time.
bool IsSimulated() {
  return !KnownSources().empty();
}
bool CanRun(const Named& action) {
  return !action.asksAPerson || IsSimulated();
}

// One cause for each of the twelve events, in the order of their numbers.
constexpr Named kCauses[] = {
    {"Paint", [](Host& h) { h.Call("Refresh"); }},
    {"Click", [](Host& h) { h.Use([](auto& w) { w.Mouse(MouseAction::Click, 5, 5, 1, 0); }); }},
    {"Resize", [](Host& h) { h.Use([](auto& w) { w.Resize(90, 130); }); }},
    {"Scroll", [](Host& h) { h.Use([](auto& w) { w.DragThumb(Bar::Horizontal, 20); }); }},
    {"DblClick",
     [](Host& h) { h.Use([](auto& w) { w.Mouse(MouseAction::DblClick, 5, 5, 1, 0); }); }},
    {"KeyPress", [](Host& h) { h.Use([](auto& w) { w.Key(KeyAction::Press, 97, 0); }); }},
    {"KeyUp", [](Host& h) { h.Use([](auto& w) { w.Key(KeyAction::Up, 65, 0); }); }},
    {"KeyDown", [](Host& h) { h.Use([](auto& w) { w.Key(KeyAction::Down, 40, 0); }); }},
    {"MouseUp", [](Host& h) { h.Use([](auto& w) { w.Mouse(MouseAction::Up, 5, 5, 2, 0); }); }},
    {"MouseDown", [](Host& h) { h.Use([](auto& w) { w.Mouse(MouseAction::Down, 5, 5, 2, 0); }); }},
    {"MouseMove", [](Host& h) { h.Use([](auto& w) { w.Mouse(MouseAction::Move, 5, 5, 0, 0); }); }},
    {"Progress", [](Host& h) { h.Call("Flip"); }},
};

// About, and what the host does once while its window is open.
template <void (*Act)(Host&)>
void AboutAndInside(Host& h) {
  h.Use([&h](auto& w) {
    w.WhileAFormIsOpen([&h, done = std::make_shared<bool>(false)] {
      if (std::exchange(*done, true)) return false;
      Act(h);
      return true;
    });
  });
  h.Call("About");
}

constexpr Named kActions[] = {
    {"About", [](Host& h) { h.Call("About"); }, true},
    {"work inside About", AboutAndInside<[](Host& h) {
       h.Use([](auto& w) { w.Resize(70, 120); });
       h.Assign(60, 200);
       h.Call("About");
       h.Use([](auto& w) { w.Mouse(MouseAction::Click, 5, 5, 1, 0); });
     }>,
     true},
    {"let go inside About", AboutAndInside<[](Host& h) { h.control.reset(); }>, true},
    {"close the window inside About", AboutAndInside<[](Host& h) { h.window.reset(); }>, true},
    {"Scan", [](Host& h) { h.Call("Scan"); }, true},
    {"SelectSource", [](Host& h) { h.Call("SelectSource"); }, true},
    {"Load",
     [](Host& h) {
       h.Put("filename", h.pictureFile);
       h.Call("Load");
     }},
    {"Load fails",
     [](Host& h) {
       h.Put("filename", std::string("nowhere.bmp"));
       h.Call("Load");
     }},
    {"ShowLoad", [](Host& h) { h.Call("ShowLoad"); }, true},
    {"Picture", [](Host& h) { h.Assign(97, 300); }},
    {"small Picture", [](Host& h) { h.Assign(2, 1); }},
    {"no Picture", [](Host& h) { h.PutPicture(nullptr); }},
    {"Refresh", [](Host& h) { h.Call("Refresh"); }},
    {"Flip", [](Host& h) { h.Call("Flip"); }},
    {"Rotate", [](Host& h) { h.Call("Rotate"); }},
    {"Blur", [](Host& h) { h.Call("Blur"); }},
    {"Crop", [](Host& h) { h.Call("Crop", Long{5}, Long{5}, Long{50}, Long{150}); }},
    {"Resize method", [](Host& h) { h.Call("Resize", Long{95}, Long{95}); }},
    {"Zoom", [](Host& h) { h.Call("Zoom", Integer{200}); }},
    {"Fit", [](Host& h) { h.Call("Fit"); }},
    {"Fit width", [](Host& h) { h.Call("Fit", Long{twFITWIDTH}); }},
    {"Fit stretch", [](Host& h) { h.Call("Fit", Long{twFITSTRECH}); }},
    {"smaller", [](Host& h) { h.Use([](auto& w) { w.Resize(30, 40); }); }},
    {"larger", [](Host& h) { h.Use([](auto& w) { w.Resize(150, 135); }); }},
    {"tiny", [](Host& h) { h.Use([](auto& w) { w.Resize(3, 0); }); }},
    {"no border", [](Host& h) { h.Put("BorderStyle", Long{0}); }},
    {"disable", [](Host& h) { h.Put("Enabled", false); }},
    {"no bars",
     [](Host& h) {
       h.Put("Scrollable", false);
       h.Call("Refresh");
     }},
    {"no AutoRedraw", [](Host& h) { h.Put("AutoRedraw", false); }},
    {"paint", [](Host& h) { h.Use([](auto& w) { w.Capture(); }); }},
    {"drag", [](Host& h) { h.Use([](auto& w) { w.DragThumb(Bar::Vertical, 11); }); }},
    {"press", [](Host& h) { h.Use([](auto& w) { w.Mouse(MouseAction::Down, 95, 30, 1, 0); }); }},
    {"release", [](Host& h) { h.Use([](auto& w) { w.Mouse(MouseAction::Up, 95, 60, 1, 0); }); }},
    {"disconnect",
     [](Host& h) {
       if (h.control) h.control->Disconnect(h.cookie);
     }},
    {"connect another",
     [](Host& h) {
       if (h.control) h.control->Connect(std::make_shared<OtherSink>());
     }},
    {"let go", [](Host& h) { h.control.reset(); }},
    {"close the window", [](Host& h) { h.window.reset(); }},
    {"let go and close",
     [](Host& h) {
       h.control.reset();
       h.window.reset();
     }},
    {"close and let go",
     [](Host& h) {
       h.window.reset();
       h.control.reset();
     }},
};

// More than any of these ways of using a control makes.
constexpr int kEndless = 20000;
constexpr int kMostRuns = 12;

class Handlers : public testing::Test {
 protected:
  std::string PictureFile() {
    BmpFile file{.width = 150, .height = 90};
    file.PackPixels([](Long x, Long y) { return static_cast<std::uint32_t>(x * 7 + y * 31); });
    return folder.Write("picture.bmp", file.Bytes());
  }
  // The control still works, if it is still there, and everything goes with it.
  void ExpectSound(Host& host) {
    EXPECT_LT(host.heard, kEndless);
    host.onEvent = nullptr;
    if (host.control) {
      host.Put("AutoRedraw", true);
      host.Assign(9, 7);
      host.Call("Flip");
      EXPECT_EQ(PixelsOf(host.stage->Contracts(), host.control->CurrentPicture()),
                RowsOf(9, 7, [](Long x, Long y) { return Gradient(x, 6 - y); }));
    }
    host.Use([](auto& w) { w.Capture(); });
    host.control.reset();
    host.window.reset();
    EXPECT_EQ(host.stage->Census(), CensusCounts{});
  }

  TemporaryFolder folder;
};

class EachHandler : public Handlers, public testing::WithParamInterface<Named> {};

TEST_P(EachHandler, MayDoAnything) {
  const std::string file = PictureFile();
  const Named& cause = GetParam();
  for (const auto& action : kActions) {
    if (!CanRun(action)) continue;
    // Once in the event itself; then in what comes of it too, so that they nest.
    for (const int deepest : {1, 3}) {
      if (deepest == 1 && !IsSimulated()) continue;
      SCOPED_TRACE(std::string(action.name).append(" inside ").append(cause.name));
      Host host(file);
      int depth = 0;
      int runs = 0;
      host.onEvent = [&](Event event) {
        const bool itsEvent = Describe(event).name == std::string(cause.name);
        if ((!itsEvent && depth == 0) || depth == deepest || runs == kMostRuns) return;
        ++depth;
        ++runs;
        action.run(host);
        --depth;
      };
      cause.run(host);
      EXPECT_GT(runs, 0);
      host.Use([](auto& w) { w.Idle(); });
      ExpectSound(host);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Of, EachHandler, testing::ValuesIn(kCauses),
                         [](const auto& test) { return test.param.name; });

TEST_F(Handlers, MayDoAnythingInAnyOrder) {
  const std::string file = PictureFile();
  const unsigned runs = IsSimulated() ? 60 : 6;
  for (unsigned seed = 1; seed <= runs; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto below = [&](std::size_t count) { return random() % count; };
    Host host(file);
    int depth = 0;
    host.onEvent = [&](Event) {
      if (depth == 4 || host.heard > kEndless || below(4) > 0) return;
      const auto& action = kActions[below(std::size(kActions))];
      if (!CanRun(action)) return;
      ++depth;
      action.run(host);
      --depth;
    };
    for (int step = 0; step < 25; ++step) {
      kCauses[below(std::size(kCauses))].run(host);
      host.Use([](auto& w) { w.Idle(); });
    }
    ExpectSound(host);
  }
}

}  // namespace
}  // namespace quillet
