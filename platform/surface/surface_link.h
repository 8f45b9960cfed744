#pragma once

#include <memory>

#include "platform/contracts/surface.h"

namespace quillet {

// A surface that can be kept alive while its events are heard.
class SharedSurface : public Surface, public std::enable_shared_from_this<SharedSurface> {};

// What the parts of one surface share: whether its window still stands, and who hears its events.
//
// A handler may disconnect, close the window, and let go of the surface. The surface lives until
// the event has returned, not longer: a part that goes on after an event holds KeepAlive itself.
class SurfaceLink {
 public:
  explicit SurfaceLink(SharedSurface& surface) noexcept : m_surface(surface) {}

  void Connect(SurfaceEvents* events) noexcept { m_events = events; }
  void Close() noexcept { m_open = false; }
  bool IsOpen() const noexcept { return m_open; }
  // Run-time error 380 once the window is gone.
  void RequireOpen() const;

  // None while the surface is being made or destroyed: no event comes then.
  std::shared_ptr<const void> KeepAlive() const noexcept {
    return m_surface.weak_from_this().lock();
  }

  template <typename... Parameters, typename... Arguments>
  void Raise(void (SurfaceEvents::*event)(Parameters...), Arguments&... arguments) {
    const auto alive = KeepAlive();
    if (alive && m_open && m_events) (m_events->*event)(arguments...);
  }

 private:
  SharedSurface& m_surface;
  SurfaceEvents* m_events = nullptr;
  bool m_open = true;
};

}  // namespace quillet
