#pragma once

#include <memory>
#include <vector>

#include "embed/control_window.h"
#include "platform/win32/win32_surface.h"

namespace quillet {

// A person's mouse and keyboard on a surface, played by the messages that they would make. Points
// are pixels of the control's inside.
//
// A system scroll bar runs a message loop of its own from the press to the release: a press on one,
// and the moves after it, take effect with the release.
class Win32Hand : public std::enable_shared_from_this<Win32Hand> {
 public:
  explicit Win32Hand(std::shared_ptr<Win32Surface> surface) : m_surface(std::move(surface)) {}

  // One button (1, 2 or 4); a move has those that are held, summed.
  void Press(POINT at, Integer button, Integer shift, bool second);
  void Move(POINT at, Integer buttons, Integer shift);
  void Release(POINT at, Integer button, Integer shift);

  void Key(KeyAction action, Integer code, Integer shift);

  void DragThumb(Bar bar, Integer value);
  void Scroll(Bar bar, int code);

  Win32ScrollBar& ScrollBarOf(Bar bar) const {
    return bar == Bar::Horizontal ? m_surface->HScroll1() : m_surface->VScroll1();
  }

 private:
  HWND Control() const { return m_surface->UserControl().Window(); }
  // What the mouse message goes to: the window that has captured the mouse, or the one at the
  // point.
  HWND Target(POINT at) const;
  void Send(HWND target, UINT message, Integer buttons, POINT at, Integer shift);
  void SendScroll(Bar bar, int code, int position);
  void PlayPressOnBar(POINT releasedAt);

  std::shared_ptr<Win32Surface> m_surface;
  Integer m_held = 0;
  HWND m_pressedBar = nullptr;
  std::vector<POINT> m_barPath;  // the press and the moves
};

}  // namespace quillet
