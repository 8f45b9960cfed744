#pragma once

#include "platform/contracts/surface.h"
#include "platform/surface/surface_link.h"

namespace quillet {

enum class Orientation { Horizontal, Vertical };

// The range, the value and the steps of a scroll bar, and its events; where and how it shows is the
// derived class's.
//
// Invariant: the value lies between min and max.
class RangedScrollBar : public ScrollBar {
 public:
  RangedScrollBar(SurfaceLink& link, Orientation orientation);

  bool Visible() const override { return m_visible; }
  void PutVisible(bool visible) override;
  void PutMin(Integer min) override;
  void PutMax(Integer max) override;
  Integer Value() const override { return m_value; }
  void PutValue(Integer value) override;
  void PutSmallChange(Integer step) override;
  void PutLargeChange(Integer step) override;

  Integer Min() const noexcept { return m_min; }
  Integer Max() const noexcept { return m_max; }
  Integer LargeChange() const noexcept { return m_largeChange; }
  Orientation Direction() const noexcept { return m_orientation; }

  // What a person does; each takes the value at most to the ends of the range.
  void Step(bool forward) { StepBy(forward ? m_smallChange : -m_smallChange); }
  void Page(bool forward) { StepBy(forward ? m_largeChange : -m_largeChange); }
  void GoToEnd(bool forward) { SetValue(forward ? m_max : m_min); }
  // A drag is any number of DragTo, then LetGo, which raises the Change still owed.
  void DragTo(int value);
  void LetGo();

 protected:
  ~RangedScrollBar() override = default;

  // Shows the bar or not, or shows its thumb anew; comes before the event that tells of it.
  virtual void ShowOrHide() {}
  virtual void ShowRange() {}

  SurfaceLink& Link() const noexcept { return m_link; }

 private:
  void SetRange(Integer min, Integer max);
  void SetValue(int value);
  void StepBy(int step);
  int Clamped(int value) const noexcept;

  SurfaceLink& m_link;
  Orientation m_orientation;
  void (SurfaceEvents::*m_change)();
  void (SurfaceEvents::*m_scroll)();
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
