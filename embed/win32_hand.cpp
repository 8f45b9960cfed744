#include "embed/win32_hand.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/rounding.h"
#include "base/runtime_error.h"

namespace quillet {
namespace {

// The modifier keys held down for the messages sent meanwhile.
class HeldModifiers {
 public:
  explicit HeldModifiers(Integer shift) {
    ::GetKeyboardState(m_before);
    BYTE held[256];
    std::copy(std::begin(m_before), std::end(m_before), held);
    constexpr BYTE kDown = 0x80, kUp = 0;
    held[VK_SHIFT] = shift & 1 ? kDown : kUp;
    held[VK_CONTROL] = shift & 2 ? kDown : kUp;
    held[VK_MENU] = shift & 4 ? kDown : kUp;
    ::SetKeyboardState(held);
  }
  HeldModifiers(const HeldModifiers&) = delete;
  HeldModifiers& operator=(const HeldModifiers&) = delete;
  ~HeldModifiers() { ::SetKeyboardState(m_before); }

 private:
  BYTE m_before[256] = {};
};

WPARAM KeysOf(Integer buttons, Integer shift) {
  return (buttons & 1 ? MK_LBUTTON : 0u) | (buttons & 2 ? MK_RBUTTON : 0u) |
         (buttons & 4 ? MK_MBUTTON : 0u) | (shift & 1 ? MK_SHIFT : 0u) |
         (shift & 2 ? MK_CONTROL : 0u);
}

LPARAM PointFor(HWND target, HWND control, POINT at) {
  ::MapWindowPoints(control, target, &at, 1);
  return MAKELPARAM(at.x, at.y);
}

// The left button's message; those of the others follow at the same distances.
UINT MessageOf(UINT leftMessage, Integer button) {
  const UINT distance = button == 1 ? 0 : button == 2 ? 3 : 6;
  return leftMessage + distance;
}

}  // namespace

void Win32Hand::Mouse(MouseAction action, int x, int y, Integer button, Integer shift) {
  const bool known = action == MouseAction::Move ? button >= 0 && button <= 7
                                                 : button == 1 || button == 2 || button == 4;
  if (!known) throw RunTimeError(ErrorNumber::InvalidProcedureCall, "not a mouse button");
  const POINT at{ToInteger(x), ToInteger(y)};
  switch (action) {
    case MouseAction::Down:
      return Press(at, button, shift, false);
    case MouseAction::Move:
      return Move(at, button, shift);
    case MouseAction::Up:
      return Release(at, button, shift);
    case MouseAction::Click:
      Press(at, button, shift, false);
      return Release(at, button, shift);
    case MouseAction::DblClick:
      Press(at, button, shift, false);
      Release(at, button, shift);
      Press(at, button, shift, true);
      return Release(at, button, shift);
  }
}

void Win32Hand::Press(POINT at, Integer button, Integer shift, bool second) {
  const HWND target = Target(at);
  m_held = LowWord(m_held | button);
  const bool onBar = target && (target == m_windows.horizontal || target == m_windows.vertical);
  if (onBar && button == 1) {
    m_pressedBar = target;
    m_barPath = {at};
    return;
  }
  Send(target, MessageOf(second ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, button), m_held, at, shift);
}

void Win32Hand::Move(POINT at, Integer buttons, Integer shift) {
  if (m_pressedBar) return m_barPath.push_back(at);
  Send(Target(at), WM_MOUSEMOVE, LowWord(m_held | buttons), at, shift);
}

void Win32Hand::Release(POINT at, Integer button, Integer shift) {
  m_held = LowWord(m_held & ~button);
  if (m_pressedBar && button == 1) return PlayPressOnBar(at);
  Send(Target(at), MessageOf(WM_LBUTTONUP, button), m_held, at, shift);
}

void Win32Hand::Key(KeyAction action, Integer code, Integer shift) {
  const HWND focus = ::GetFocus();
  const HWND target = ::IsChild(Control(), focus) ? focus : m_windows.box;
  const UINT message = action == KeyAction::Down ? WM_KEYDOWN
                       : action == KeyAction::Up ? WM_KEYUP
                                                 : WM_CHAR;
  const HeldModifiers held(shift);
  ::SendMessageW(target, message, static_cast<std::uint16_t>(code), 1);
}

void Win32Hand::DragThumb(Bar bar, Integer value, Integer min, Integer max) {
  const auto alive = shared_from_this();
  // The thumb is nearest to the beginning at Min, be that the lower end or the upper.
  const auto [low, high] = std::minmax(min, max);
  const int position = low + std::abs(std::clamp(value, low, high) - min);
  SendScroll(bar, SB_THUMBTRACK, position);
  SendScroll(bar, SB_THUMBPOSITION, position);
  SendScroll(bar, SB_ENDSCROLL, 0);
}

void Win32Hand::Scroll(Bar bar, int code) {
  const auto alive = shared_from_this();
  SendScroll(bar, code, 0);
  SendScroll(bar, SB_ENDSCROLL, 0);
}

HWND Win32Hand::Target(POINT at) const {
  const HWND captured = ::GetCapture();
  if (captured && ::IsChild(Control(), captured)) return captured;
  return ::ChildWindowFromPointEx(Control(), at, CWP_SKIPINVISIBLE);
}

void Win32Hand::Send(HWND target, UINT message, Integer buttons, POINT at, Integer shift) {
  const HeldModifiers held(shift);
  if (target)
    ::SendMessageW(target, message, KeysOf(buttons, shift), PointFor(target, Control(), at));
}

void Win32Hand::SendScroll(Bar bar, int code, int position) {
  const HWND window = bar == Bar::Horizontal ? m_windows.horizontal : m_windows.vertical;
  if (::IsWindowVisible(window) && ::IsWindowEnabled(Control())) ::SetFocus(window);
  ::SendMessageW(Control(), bar == Bar::Horizontal ? WM_HSCROLL : WM_VSCROLL,
                 MAKEWPARAM(code, position), reinterpret_cast<LPARAM>(window));
}

void Win32Hand::PlayPressOnBar(POINT releasedAt) {
  const HWND bar = std::exchange(m_pressedBar, nullptr);
  const std::vector<POINT> path = std::exchange(m_barPath, {});
  const HWND control = Control();
  for (const POINT& at : path)
    if (&at != &path.front())
      ::PostMessageW(bar, WM_MOUSEMOVE, MK_LBUTTON, PointFor(bar, control, at));
  ::PostMessageW(bar, WM_LBUTTONUP, 0, PointFor(bar, control, releasedAt));
  ::SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, PointFor(bar, control, path.front()));
  // What a bar that does not work has left.
  MSG left;
  while (::IsWindow(bar) &&
         ::PeekMessageW(&left, bar, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE | PM_NOYIELD)) {
  }
}

}  // namespace quillet
