#pragma once

#include "base/types.h"
#include "platform/portable/portable_control_surface.h"
#include "platform/portable/portable_picture_box.h"
#include "platform/portable/portable_scroll_bar.h"
#include "platform/surface/surface_link.h"

namespace quillet {

// The mouse and the keyboard of a surface: finds what a point lands on, keeps the capture while a
// button is down, and remembers which bar has the focus. Points are pixels of the control's inside;
// buttons are 1 left, 2 right, 4 middle; shift is 1 shift, 2 control, 4 alt, summed.
//
// A disabled control, a hidden bar and a closed surface take no input. A drag ends by the release,
// or with the first mouse message that finds the control disabled. Handlers may do anything.
class SurfaceInput {
 public:
  SurfaceInput(SurfaceLink& link, const PortableControlSurface& control, PortablePictureBox& box,
               PortableScrollBar& horizontal, PortableScrollBar& vertical);

  void MouseDown(Integer x, Integer y, Integer button, Integer shift);
  // The second press of a double click. For the left button the box raises DblClick in place of
  // MouseDown, and no Click for the release.
  void MouseDoubleDown(Integer x, Integer y, Integer button, Integer shift);
  // `buttons` are those held, besides the ones this surface saw going down.
  void MouseMove(Integer x, Integer y, Integer buttons, Integer shift);
  void MouseUp(Integer x, Integer y, Integer button, Integer shift);

  // Gives up the capture and any drag, as when a modal window opens: whatever is held down will be
  // let go of elsewhere.
  void CancelMode();

  // Keys are previewed at the control, wherever the focus is. A bar with the focus then moves by
  // the arrow, page, home and end keys (virtual key codes) that the handler let pass.
  void KeyDown(Integer code, Integer shift);
  void KeyPress(Integer ascii);
  void KeyUp(Integer code, Integer shift);

  // A whole drag that ends on that value, or the nearest end of the range; a click on an arrow; a
  // click beside the thumb.
  void DragThumb(PortableScrollBar& bar, Integer value);
  void ClickArrow(PortableScrollBar& bar, bool forward);
  void ClickPage(PortableScrollBar& bar, bool forward);

 private:
  bool TakesInput() const noexcept { return m_link.IsOpen() && m_control.Enabled(); }
  // False, and the capture and any drag given up, when the control takes no input.
  bool MouseReaches();
  // True for a bar that a person can see and reach.
  bool Works(const PortableScrollBar& bar) const;
  PortableScrollBar* BarAt(int x, int y) const;
  bool InBox(int x, int y) const;
  void Press(int x, int y, Integer button, Integer shift, bool second);
  void PressBar(int x, int y);
  void LetGoOfBar();

  SurfaceLink& m_link;
  const PortableControlSurface& m_control;
  PortablePictureBox& m_box;
  PortableScrollBar& m_horizontal;
  PortableScrollBar& m_vertical;

  // While a button is down: what the first press landed on (neither: the bare surface).
  Integer m_held = 0;
  PortableScrollBar* m_pressedBar = nullptr;
  bool m_boxPressed = false;
  bool m_clickDue = false;

  bool m_dragging = false;
  int m_dragFrom = 0;
  Integer m_valueBeforeDrag = 0;

  PortableScrollBar* m_focus = nullptr;
};

}  // namespace quillet
