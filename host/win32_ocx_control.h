#pragma once

#include <memory>
#include <optional>

#include "host/hosted_control.h"
#include "host/win32_ocx_sinks.h"
#include "host/win32_ocx_window.h"
#include "platform/win32/win32_pictures.h"

namespace quillet {

// A control that its class object made, in a container of ours: nothing of it is known but its
// interfaces and its windows.
class OcxControl : public HostedControl {
 public:
  // The inside size in pixels. RequireCall's errors, those of OcxWindow.
  OcxControl(IClassFactory& factory, Win32Pictures& pictures, int width, int height);
  OcxControl(const OcxControl&) = delete;
  OcxControl& operator=(const OcxControl&) = delete;
  ~OcxControl() override;

  void Listen(std::shared_ptr<HostListener> listener) override;
  // From here on, as from every other use, the control stands in its window.
  AttendedWindow& Window() override;
  Variant Invoke(const Member& member, std::span<Variant> arguments) override;
  // As the first use: a control that is new otherwise starts with these settings.
  void ReadProperties(PropertyBag& bag) override;
  void WriteProperties(PropertyBag& bag) override;

 private:
  void Start();
  void Show();

  Win32Pictures& m_pictures;
  OcxWindow m_window;
  ComPtr<IOleObject> m_object;
  bool m_started = false;
  std::optional<OcxConnection> m_events, m_changes;
};

}  // namespace quillet
