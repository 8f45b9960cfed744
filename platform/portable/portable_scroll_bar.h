#pragma once

#include "platform/contracts/surface.h"
#include "platform/portable/scroll_bar_geometry.h"
#include "platform/portable/surface_link.h"
#include "platform/portable/surface_rect.h"

namespace quillet {

// A scroll bar: its range, its value and its place. Until it is first moved it has a thickness and
// no length.
//
// Invariant: the value lies between min and max.
class PortableScrollBar : public ScrollBar {
 public:
  PortableScrollBar(SurfaceLink& link, Orientation orientation);

  bool Visible() const override { return m_visible; }
  void PutVisible(bool visible) override;
  void PutMin(Integer min) override;
  void PutMax(Integer max) override;
  Integer Value() const override { return m_value; }
  void PutValue(Integer value) override;
  void PutSmallChange(Integer step) override;
  void PutLargeChange(Integer step) override;
  void Move(Single left, Single top, Single width) override;
  void Move(Single left, Single top, Single width, Single height) override;

  Integer Min() const noexcept { return m_min; }
  Integer Max() const noexcept { return m_max; }
  Orientation Direction() const noexcept { return m_orientation; }
  // In pixels of the control's inside.
  const PixelRect& Place() const noexcept { return m_place; }
  ScrollBarGeometry Geometry() const;
  // The distance of a point of the control's inside from the bar's left or top end.
  int PositionAlong(int x, int y) const noexcept;

  // What a person does; each takes the value at most to the ends of the range.
  void Step(bool forward) { StepBy(forward ? m_smallChange : -m_smallChange); }
  void Page(bool forward) { StepBy(forward ? m_largeChange : -m_largeChange); }
  void GoToEnd(bool forward) { SetValue(forward ? m_max : m_min); }
  // A drag is any number of DragTo, then LetGo, which raises the Change still owed.
  void DragTo(Integer value);
  void LetGo();

 private:
  void SetRange(Integer min, Integer max);
  void SetValue(int value);
  void StepBy(int step);
  int Clamped(int value) const noexcept;

  SurfaceLink& m_link;
  Orientation m_orientation;
  void (SurfaceEvents::*m_change)();
  void (SurfaceEvents::*m_scroll)();
  PixelRect m_place;
  bool m_visible = true;
  Integer m_min = 0;
  Integer m_max = 32767;
  Integer m_value = 0;
  // The value as of the last Change; they differ only while the thumb is dragged.
  Integer m_announced = 0;
  Integer m_smallChange = 1;
  Integer m_largeChange = 1;
};

}  // namespace quillet
