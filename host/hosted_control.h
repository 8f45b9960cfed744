#pragma once

#include <memory>
#include <optional>
#include <span>

#include "embed/control.h"
#include "embed/control_window.h"
#include "platform/contracts/platform.h"
#include "platform/contracts/site.h"

namespace quillet {

class PropertyBag;

// The host's ear: events, and the names of properties that changed. Does not throw.
class HostListener : public EventSink, public Site {};

// A control in its window, whichever way the host holds it. Destroying it lets go of the control
// and closes the window, in that order, inside the control's calls and events too.
class HostedControl {
 public:
  virtual ~HostedControl() = default;

  // Once, before anything is called.
  virtual void Listen(std::shared_ptr<HostListener> listener) = 0;
  virtual AttendedWindow& Window() = 0;
  // Arguments and errors as of Control.
  virtual Variant Invoke(const Member& member, std::span<Variant> arguments) = 0;
  virtual void ReadProperties(PropertyBag& bag) = 0;
  virtual void WriteProperties(PropertyBag& bag) = 0;
};

// The core's control, called directly.
class CoreHostedControl : public HostedControl {
 public:
  CoreHostedControl(Platform& platform, std::unique_ptr<ControlWindow> window)
      : m_platform(platform), m_window(std::move(window)) {}
  CoreHostedControl(const CoreHostedControl&) = delete;
  CoreHostedControl& operator=(const CoreHostedControl&) = delete;

  void Listen(std::shared_ptr<HostListener> listener) override;
  AttendedWindow& Window() override { return *m_window; }
  Variant Invoke(const Member& member, std::span<Variant> arguments) override;
  void ReadProperties(PropertyBag& bag) override { m_control->ReadProperties(bag); }
  void WriteProperties(PropertyBag& bag) override { m_control->WriteProperties(bag); }

 private:
  Platform& m_platform;
  std::unique_ptr<ControlWindow> m_window;
  std::optional<Control> m_control;
};

}  // namespace quillet
