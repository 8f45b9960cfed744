#pragma once

#include "platform/portable/scroll_bar_geometry.h"
#include "platform/portable/surface_rect.h"
#include "platform/surface/ranged_scroll_bar.h"

namespace quillet {

// A scroll bar with its place. Until it is first moved it has a thickness and no length.
class PortableScrollBar : public RangedScrollBar {
 public:
  PortableScrollBar(SurfaceLink& link, Orientation orientation);

  void Move(Single left, Single top, Single width) override;
  void Move(Single left, Single top, Single width, Single height) override;

  // In pixels of the control's inside.
  const PixelRect& Place() const noexcept { return m_place; }
  ScrollBarGeometry Geometry() const;
  // The distance of a point of the control's inside from the bar's left or top end.
  int PositionAlong(int x, int y) const noexcept;

 private:
  PixelRect m_place;
};

}  // namespace quillet
