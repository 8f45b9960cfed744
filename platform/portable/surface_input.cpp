#include "platform/portable/surface_input.h"

#include "base/rounding.h"

namespace quillet {
namespace {

constexpr Integer kLeftButton = 1;

// Virtual key codes that a scroll bar answers to.
enum ScrollKey : Integer {
  kPageUp = 33,
  kPageDown = 34,
  kEnd = 35,
  kHome = 36,
  kLeft = 37,
  kUp = 38,
  kRight = 39,
  kDown = 40,
};

void ScrollByKey(PortableScrollBar& bar, Integer code) {
  switch (code) {
    case kPageUp:
    case kPageDown:
      return bar.Page(code == kPageDown);
    case kHome:
    case kEnd:
      return bar.GoToEnd(code == kEnd);
    case kLeft:
    case kUp:
      return bar.Step(false);
    case kRight:
    case kDown:
      return bar.Step(true);
    default:
      return;
  }
}

}  // namespace

SurfaceInput::SurfaceInput(SurfaceLink& link, const PortableControlSurface& control,
                           PortablePictureBox& box, PortableScrollBar& horizontal,
                           PortableScrollBar& vertical)
    : m_link(link),
      m_control(control),
      m_box(box),
      m_horizontal(horizontal),
      m_vertical(vertical) {}

void SurfaceInput::MouseDown(Integer x, Integer y, Integer button, Integer shift) {
  Press(x, y, button, shift, false);
}

void SurfaceInput::MouseDoubleDown(Integer x, Integer y, Integer button, Integer shift) {
  Press(x, y, button, shift, true);
}

void SurfaceInput::Press(int x, int y, Integer button, Integer shift, bool second) {
  const auto alive = m_link.KeepAlive();
  if (!MouseReaches()) return;
  if (m_held == 0) {
    m_pressedBar = BarAt(x, y);
    m_boxPressed = InBox(x, y);
  }
  m_held = LowWord(m_held | button);
  if (m_pressedBar) {
    if (button == kLeftButton && BarAt(x, y) == m_pressedBar) PressBar(x, y);
  } else if (m_boxPressed) {
    m_focus = nullptr;
    if (button == kLeftButton) m_clickDue = !second;
    if (second && button == kLeftButton) return m_link.Raise(&SurfaceEvents::picTwain_DblClick);
    auto boxX = static_cast<Single>(x - m_box.Place().left);
    auto boxY = static_cast<Single>(y - m_box.Place().top);
    m_link.Raise(&SurfaceEvents::picTwain_MouseDown, button, shift, boxX, boxY);
  }
}

void SurfaceInput::PressBar(int x, int y) {
  PortableScrollBar& bar = *m_pressedBar;
  if (!Works(bar)) return;
  m_focus = &bar;
  const int position = bar.PositionAlong(x, y);
  switch (bar.Geometry().PartAt(position)) {
    case ScrollBarPart::BackArrow:
      return bar.Step(false);
    case ScrollBarPart::ForwardArrow:
      return bar.Step(true);
    case ScrollBarPart::BackTrough:
      return bar.Page(false);
    case ScrollBarPart::ForwardTrough:
      return bar.Page(true);
    case ScrollBarPart::Thumb:
      m_dragging = true;
      m_dragFrom = position;
      m_valueBeforeDrag = bar.Value();
      return;
    case ScrollBarPart::BareTrough:
      return;
  }
}

void SurfaceInput::MouseMove(Integer x, Integer y, Integer buttons, Integer shift) {
  const auto alive = m_link.KeepAlive();
  if (!MouseReaches()) return;
  if (m_pressedBar) {
    if (m_dragging && Works(*m_pressedBar)) {
      const int moved = m_pressedBar->PositionAlong(x, y) - m_dragFrom;
      m_pressedBar->DragTo(m_pressedBar->Geometry().ValueAfterMove(m_valueBeforeDrag, moved));
    }
  } else if (m_boxPressed || (m_held == 0 && InBox(x, y))) {
    Integer held = LowWord(m_held | buttons);
    auto boxX = static_cast<Single>(x - m_box.Place().left);
    auto boxY = static_cast<Single>(y - m_box.Place().top);
    m_link.Raise(&SurfaceEvents::picTwain_MouseMove, held, shift, boxX, boxY);
  }
}

void SurfaceInput::MouseUp(Integer x, Integer y, Integer button, Integer shift) {
  const auto alive = m_link.KeepAlive();
  if (!MouseReaches()) return;
  const bool inBox = InBox(x, y);
  const bool toBox = m_boxPressed || (m_held == 0 && inBox);
  const bool click = button == kLeftButton && m_clickDue && inBox;
  m_held = LowWord(m_held & ~button);
  if (m_held == 0) m_boxPressed = false;
  if (button == kLeftButton) {
    m_clickDue = false;
    LetGoOfBar();
  }
  if (m_held == 0) m_pressedBar = nullptr;
  if (!toBox) return;
  auto boxX = static_cast<Single>(x - m_box.Place().left);
  auto boxY = static_cast<Single>(y - m_box.Place().top);
  m_link.Raise(&SurfaceEvents::picTwain_MouseUp, button, shift, boxX, boxY);
  if (click && TakesInput()) m_link.Raise(&SurfaceEvents::picTwain_Click);
}

void SurfaceInput::KeyDown(Integer code, Integer shift) {
  const auto alive = m_link.KeepAlive();
  if (!TakesInput()) return;
  m_link.Raise(&SurfaceEvents::UserControl_KeyDown, code, shift);
  if (m_focus && Works(*m_focus)) ScrollByKey(*m_focus, code);
}

void SurfaceInput::KeyPress(Integer ascii) {
  if (TakesInput()) m_link.Raise(&SurfaceEvents::UserControl_KeyPress, ascii);
}

void SurfaceInput::KeyUp(Integer code, Integer shift) {
  if (TakesInput()) m_link.Raise(&SurfaceEvents::UserControl_KeyUp, code, shift);
}

void SurfaceInput::DragThumb(PortableScrollBar& bar, Integer value) {
  const auto alive = m_link.KeepAlive();
  if (!Works(bar) || !bar.Geometry().HasThumb()) return;
  m_focus = &bar;
  bar.DragTo(value);
  bar.LetGo();
}

void SurfaceInput::ClickArrow(PortableScrollBar& bar, bool forward) {
  if (!Works(bar)) return;
  m_focus = &bar;
  bar.Step(forward);
}

void SurfaceInput::ClickPage(PortableScrollBar& bar, bool forward) {
  if (!Works(bar) || !bar.Geometry().HasThumb()) return;
  m_focus = &bar;
  bar.Page(forward);
}

bool SurfaceInput::MouseReaches() {
  if (TakesInput()) return true;
  CancelMode();
  return false;
}

void SurfaceInput::CancelMode() {
  m_held = 0;
  m_boxPressed = m_clickDue = false;
  LetGoOfBar();
  m_pressedBar = nullptr;
}

bool SurfaceInput::Works(const PortableScrollBar& bar) const {
  return TakesInput() && bar.Visible() && !bar.Place().Intersection(m_control.Inside()).Empty();
}

PortableScrollBar* SurfaceInput::BarAt(int x, int y) const {
  if (!m_control.Inside().Contains(x, y)) return nullptr;
  for (PortableScrollBar* bar : {&m_vertical, &m_horizontal})
    if (bar->Visible() && bar->Place().Contains(x, y)) return bar;
  return nullptr;
}

bool SurfaceInput::InBox(int x, int y) const {
  return m_control.Inside().Contains(x, y) && m_box.Place().Contains(x, y) && !BarAt(x, y);
}

void SurfaceInput::LetGoOfBar() {
  if (!m_dragging) return;
  m_dragging = false;
  m_pressedBar->LetGo();
}

}  // namespace quillet
