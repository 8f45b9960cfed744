#pragma once

#include <memory>
#include <vector>

#include "bench/page.h"
#include "control/TWAIN.h"
#include "control/dispatch.h"
#include "embed/portable_window.h"

namespace quillet::bench {

// A control in a window with an 800x600 view on a page, driven as a host drives it.
class HostedPage {
 public:
  explicit HostedPage(int dotsPerInch);

  template <typename... Arguments>
  void Call(const char* method, Arguments... arguments) {
    std::vector<Variant> values{Variant(arguments)...};
    Invoke(*m_control, NumberOf(method), Access::Method, values);
    m_window->Idle();
  }
  // Shows that page instead, or nothing for 0.
  void PutPage(int dotsPerInch);
  Long BitmapWidth();
  Long BitmapHeight();
  Integer ScrollValue() const { return m_window->BarPlace(Bar::Vertical).value; }
  // One click on an arrow of the vertical bar, painted.
  void ClickArrow(bool down);

 private:
  PortablePlatform m_platform;
  std::unique_ptr<PortableWindow> m_window;
  std::shared_ptr<TWAIN> m_control;
};

}  // namespace quillet::bench
