#include "platform/surface/surface_link.h"

#include "base/runtime_error.h"

namespace quillet {

void SurfaceLink::RequireOpen() const {
  if (!m_open) throw RunTimeError(ErrorNumber::InvalidPropertyValue, "the window is gone");
}

}  // namespace quillet
