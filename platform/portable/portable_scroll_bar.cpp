#include "platform/portable/portable_scroll_bar.h"

#include <algorithm>

#include "base/rounding.h"
#include "base/runtime_error.h"

namespace quillet {
namespace {

constexpr int kThickness = 17;  // 255 twips

void RequireStep(Integer step) {
  if (step < 1) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
}

}  // namespace

PortableScrollBar::PortableScrollBar(SurfaceLink& link, Orientation orientation)
    : m_link(link), m_orientation(orientation) {
  if (orientation == Orientation::Horizontal) {
    m_change = &SurfaceEvents::HScroll1_Change;
    m_scroll = &SurfaceEvents::HScroll1_Scroll;
    m_place.height = kThickness;
  } else {
    m_change = &SurfaceEvents::VScroll1_Change;
    m_scroll = &SurfaceEvents::VScroll1_Scroll;
    m_place.width = kThickness;
  }
}

void PortableScrollBar::PutVisible(bool visible) {
  m_link.RequireOpen();
  m_visible = visible;
}

void PortableScrollBar::PutMin(Integer min) {
  SetRange(min, m_max);
}

void PortableScrollBar::PutMax(Integer max) {
  SetRange(m_min, max);
}

void PortableScrollBar::PutValue(Integer value) {
  m_link.RequireOpen();
  if (value != Clamped(value)) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  SetValue(value);
}

void PortableScrollBar::PutSmallChange(Integer step) {
  m_link.RequireOpen();
  RequireStep(step);
  m_smallChange = step;
}

void PortableScrollBar::PutLargeChange(Integer step) {
  m_link.RequireOpen();
  RequireStep(step);
  m_largeChange = step;
}

void PortableScrollBar::Move(Single left, Single top, Single width) {
  Move(left, top, width, TwipsFromPixels(m_place.height));
}

void PortableScrollBar::Move(Single left, Single top, Single width, Single height) {
  m_link.RequireOpen();
  m_place = RectFromTwips(left, top, width, height);
}

ScrollBarGeometry PortableScrollBar::Geometry() const {
  const int length = m_orientation == Orientation::Horizontal ? m_place.width : m_place.height;
  return ScrollBarGeometry(length, {m_min, m_max, m_value, m_largeChange});
}

int PortableScrollBar::PositionAlong(int x, int y) const noexcept {
  return m_orientation == Orientation::Horizontal ? x - m_place.left : y - m_place.top;
}

void PortableScrollBar::DragTo(Integer value) {
  const Integer target = LowWord(Clamped(value));
  if (target == m_value) return;
  m_value = target;
  m_link.Raise(m_scroll);
}

void PortableScrollBar::LetGo() {
  if (m_value == m_announced) return;
  m_announced = m_value;
  m_link.Raise(m_change);
}

void PortableScrollBar::SetRange(Integer min, Integer max) {
  m_link.RequireOpen();
  m_min = min;
  m_max = max;
  SetValue(Clamped(m_value));
}

void PortableScrollBar::SetValue(int value) {
  if (value == m_value) return;
  m_value = m_announced = LowWord(value);
  m_link.Raise(m_change);
}

void PortableScrollBar::StepBy(int step) {
  SetValue(Clamped(m_max < m_min ? m_value - step : m_value + step));
}

int PortableScrollBar::Clamped(int value) const noexcept {
  const auto [low, high] = std::minmax(m_min, m_max);
  return std::clamp(value, static_cast<int>(low), static_cast<int>(high));
}

}  // namespace quillet
