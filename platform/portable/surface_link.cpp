#include "platform/portable/surface_link.h"

#include "base/runtime_error.h"
#include "platform/portable/portable_surface.h"

namespace quillet {

void SurfaceLink::RequireOpen() const {
  if (!m_open) throw RunTimeError(ErrorNumber::InvalidPropertyValue, "the window is gone");
}

std::shared_ptr<const void> SurfaceLink::KeepAlive() const {
  return m_surface.shared_from_this();
}

}  // namespace quillet
