#pragma once

#include <memory>
#include <vector>

#include "embed/control_window.h"
#include "platform/win32/sdk.h"

namespace quillet {

// The windows of a control on the display.
struct ControlHandles {
  HWND control, box, horizontal, vertical;
};

// A person's mouse and keyboard on a control's windows, played by the messages that they would
// make. Points are pixels of the control's inside.
//
// A system scroll bar runs a message loop of its own from the press to the release: a press on one,
// and the moves after it, take effect with the release.
class Win32Hand : public std::enable_shared_from_this<Win32Hand> {
 public:
  explicit Win32Hand(const ControlHandles& windows) : m_windows(windows) {}

  // Run-time errors: 5 for a press or release that is not of one button (1, 2 or 4) and for a move
  // with others than these, 6 for a point beyond 16 bits.
  void Mouse(MouseAction action, int x, int y, Integer button, Integer shift);

  void Key(KeyAction action, Integer code, Integer shift);

  // To the value's place between the bar's ends.
  void DragThumb(Bar bar, Integer value, Integer min, Integer max);
  void Scroll(Bar bar, int code);

 private:
  // One button; a move has those that are held, summed.
  void Press(POINT at, Integer button, Integer shift, bool second);
  void Move(POINT at, Integer buttons, Integer shift);
  void Release(POINT at, Integer button, Integer shift);

  HWND Control() const { return m_windows.control; }
  // What the mouse message goes to: the window that has captured the mouse, or the one at the
  // point.
  HWND Target(POINT at) const;
  void Send(HWND target, UINT message, Integer buttons, POINT at, Integer shift);
  void SendScroll(Bar bar, int code, int position);
  void PlayPressOnBar(POINT releasedAt);

  ControlHandles m_windows;
  Integer m_held = 0;
  HWND m_pressedBar = nullptr;
  std::vector<POINT> m_barPath;  // the press and the moves
};

}  // namespace quillet
