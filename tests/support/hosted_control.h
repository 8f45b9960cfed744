#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "control/TWAIN.h"
#include "control/dispatch.h"
#include "embed/stage.h"
#include "tests/support/pictures.h"

namespace quillet {

// A control on a window, reached as a host reaches it: by name, through dispatch.
class HostedControl {
 public:
  // Puts a service of the test's own in place of one of the platform's.
  using Replace = std::function<Platform(const Platform& platform)>;

  // The window's inside size in pixels.
  HostedControl(int width, int height, const Replace& replace = {},
                std::unique_ptr<Stage> stage = MakeStage());

  Variant Get(const char* name);
  Long Number(const char* name) { return VariantToLong(Get(name)); }
  PictureRef Picture();
  void Put(const char* name, Variant value);
  void PutPicture(const PictureRef& picture);
  void Assign(Long width, Long height);  // a gradient of that size

  template <typename... Arguments>
  Variant Call(const char* name, Arguments... arguments) {
    std::vector<Variant> values{Variant(arguments)...};
    return Invoke(*control, NumberOf(name), Access::Method, values);
  }

  // Inside size of the picture box in pixels, and which bars show: "83x83 hv".
  std::string Layout() const;
  Long BarValue(Bar bar) const { return window->BarPlace(bar).value; }
  Long BarMax(Bar bar) const { return window->BarPlace(bar).max; }
  // What the picture box shows, painted now; the border and the bars left out.
  PixelRows24 Screen();

  // Events ("Progress 50") and notifications ("notify Quality") since the last call.
  std::vector<std::string> TakeLog();

  // Runs at every event, after it was logged.
  std::function<void(Event, std::span<Variant>)> onEvent;

  const std::unique_ptr<Stage> stage;
  Stage& platform = *stage;
  Platform contracts;  // what the control sees
  std::unique_ptr<ControlWindow> window;
  std::shared_ptr<TWAIN> control;

 private:
  class Recorder;
  std::shared_ptr<std::vector<std::string>> m_log = std::make_shared<std::vector<std::string>>();
};

}  // namespace quillet
