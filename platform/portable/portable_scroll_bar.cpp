#include "platform/portable/portable_scroll_bar.h"

namespace quillet {
namespace {

constexpr int kThickness = 17;  // 255 twips

}  // namespace

PortableScrollBar::PortableScrollBar(SurfaceLink& link, Orientation orientation)
    : RangedScrollBar(link, orientation) {
  (orientation == Orientation::Horizontal ? m_place.height : m_place.width) = kThickness;
}

void PortableScrollBar::Move(Single left, Single top, Single width) {
  Move(left, top, width, TwipsFromPixels(m_place.height));
}

void PortableScrollBar::Move(Single left, Single top, Single width, Single height) {
  Link().RequireOpen();
  m_place = RectFromTwips(left, top, width, height);
}

ScrollBarGeometry PortableScrollBar::Geometry() const {
  const int length = Direction() == Orientation::Horizontal ? m_place.width : m_place.height;
  return ScrollBarGeometry(length, {Min(), Max(), Value(), LargeChange()});
}

int PortableScrollBar::PositionAlong(int x, int y) const noexcept {
  return Direction() == Orientation::Horizontal ? x - m_place.left : y - m_place.top;
}

}  // namespace quillet
