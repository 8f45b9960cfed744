#include "platform/surface/ranged_scroll_bar.h"

#include <algorithm>

#include "base/rounding.h"
#include "base/runtime_error.h"

namespace quillet {
namespace {

void RequireStep(Integer step) {
  if (step < 1) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
}

}  // namespace

RangedScrollBar::RangedScrollBar(SurfaceLink& link, Orientation orientation)
    : m_link(link), m_orientation(orientation) {
  const bool horizontal = orientation == Orientation::Horizontal;
  m_change = horizontal ? &SurfaceEvents::HScroll1_Change : &SurfaceEvents::VScroll1_Change;
  m_scroll = horizontal ? &SurfaceEvents::HScroll1_Scroll : &SurfaceEvents::VScroll1_Scroll;
}

void RangedScrollBar::PutVisible(bool visible) {
  m_link.RequireOpen();
  m_visible = visible;
  ShowOrHide();
}

void RangedScrollBar::PutMin(Integer min) {
  SetRange(min, m_max);
}

void RangedScrollBar::PutMax(Integer max) {
  SetRange(m_min, max);
}

void RangedScrollBar::PutValue(Integer value) {
  m_link.RequireOpen();
  if (value != Clamped(value)) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  SetValue(value);
}

void RangedScrollBar::PutSmallChange(Integer step) {
  m_link.RequireOpen();
  RequireStep(step);
  m_smallChange = step;
}

void RangedScrollBar::PutLargeChange(Integer step) {
  m_link.RequireOpen();
  RequireStep(step);
  m_largeChange = step;
  ShowRange();
}

void RangedScrollBar::DragTo(int value) {
  const Integer target = LowWord(Clamped(value));
  if (target == m_value) return;
  m_value = target;
  ShowRange();
  m_link.Raise(m_scroll);
}

void RangedScrollBar::LetGo() {
  if (m_value == m_announced) return;
  m_announced = m_value;
  m_link.Raise(m_change);
}

void RangedScrollBar::SetRange(Integer min, Integer max) {
  m_link.RequireOpen();
  m_min = min;
  m_max = max;
  if (m_value == Clamped(m_value)) return ShowRange();
  SetValue(Clamped(m_value));
}

void RangedScrollBar::SetValue(int value) {
  if (value == m_value) return;
  m_value = m_announced = LowWord(value);
  ShowRange();
  m_link.Raise(m_change);
}

void RangedScrollBar::StepBy(int step) {
  SetValue(Clamped(m_max < m_min ? m_value - step : m_value + step));
}

int RangedScrollBar::Clamped(int value) const noexcept {
  const auto [low, high] = std::minmax(m_min, m_max);
  return std::clamp(value, static_cast<int>(low), static_cast<int>(high));
}

}  // namespace quillet
