#include "platform/portable/portable_surface.h"

#include <utility>

#include "platform/portable/portable_bitmaps.h"
#include "platform/portable/portable_platform.h"
#include "platform/portable/scroll_bar_painter.h"
#include "platform/portable/system_colors.h"

namespace quillet {

std::shared_ptr<PortableSurface> PortablePlatform::CreateSurface(int insideWidth,
                                                                 int insideHeight) {
  return std::make_shared<PortableSurface>(m_bitmaps, m_windows, insideWidth, insideHeight);
}

PortableSurface::PortableSurface(std::shared_ptr<PortableBitmaps> bitmaps,
                                 std::shared_ptr<WindowTable> windows, int insideWidth,
                                 int insideHeight)
    : m_bitmaps(std::move(bitmaps)),
      m_link(*this),
      m_control(m_link, windows, insideWidth, insideHeight),
      m_box(m_link, *m_bitmaps, windows, m_control.Inside()),
      m_horizontal(m_link, Orientation::Horizontal),
      m_vertical(m_link, Orientation::Vertical),
      m_input(m_link, m_control, m_box, m_horizontal, m_vertical) {}

void PortableSurface::Idle() {
  const auto bitmaps = m_bitmaps;  // a handler of Paint may let go of the surface
  if (m_link.IsOpen()) m_box.PaintPending();
  bitmaps->GiveBackMemory();
}

void PortableSurface::Close() {
  m_link.Close();
  m_box.DestroyWindow();
  m_control.DestroyWindow();
}

Raster PortableSurface::Render() const {
  const PixelRect area = m_control.Inside();
  Raster inside(area.width, area.height, ResolveColor(kFace3D));
  m_box.DrawOn(inside);
  for (const PortableScrollBar* bar : {&m_horizontal, &m_vertical})
    if (bar->Visible()) DrawScrollBar(inside, *bar, m_control.Enabled());
  const int frame = m_control.FrameWidth();
  if (frame == 0) return inside;

  const PixelRect outside = m_control.Outside();
  Raster whole(outside.width, outside.height, ResolveColor(kFace3D));
  whole.Edge(outside, ResolveColor(kShadow3D), ResolveColor(kHighlight3D));
  whole.Edge(outside.Inset(1), ResolveColor(kDarkShadow3D), ResolveColor(kLight3D));
  whole.Paste(inside, frame, frame);
  return whole;
}

}  // namespace quillet
