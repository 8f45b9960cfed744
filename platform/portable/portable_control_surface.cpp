#include "platform/portable/portable_control_surface.h"

#include <limits>
#include <utility>

#include "base/runtime_error.h"

namespace quillet {
namespace {

int CheckedSize(int pixels) {
  if (pixels < 0 || pixels > std::numeric_limits<Integer>::max())
    throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  return pixels;
}

}  // namespace

PortableControlSurface::PortableControlSurface(SurfaceLink& link,
                                               std::shared_ptr<WindowTable> windows,
                                               int insideWidth, int insideHeight)
    : m_link(link),
      m_window(std::move(windows)),
      m_width(CheckedSize(insideWidth) + 2 * FrameWidth()),
      m_height(CheckedSize(insideHeight) + 2 * FrameWidth()) {}

void PortableControlSurface::PutBorderStyle(Integer style) {
  m_link.RequireOpen();
  if (style < 0 || style > 1) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  m_borderStyle = style;
}

void PortableControlSurface::PutEnabled(bool enabled) {
  m_link.RequireOpen();
  m_enabled = enabled;
}

PixelRect PortableControlSurface::Inside() const noexcept {
  const PixelRect inside = Outside().Inset(FrameWidth());
  return {0, 0, inside.width, inside.height};
}

void PortableControlSurface::Resize(int insideWidth, int insideHeight) {
  m_link.RequireOpen();
  const int width = CheckedSize(insideWidth) + 2 * FrameWidth();
  const int height = CheckedSize(insideHeight) + 2 * FrameWidth();
  if (width == m_width && height == m_height) return;
  m_width = width;
  m_height = height;
  m_link.Raise(&SurfaceEvents::UserControl_Resize);
}

}  // namespace quillet
