#include "platform/win32/box_mouse.h"

#include <windowsx.h>

#include "base/rounding.h"
#include "platform/win32/input_state.h"

namespace quillet {
namespace {

constexpr Integer kLeftButton = 1;
constexpr Integer kRightButton = 2;
constexpr Integer kMiddleButton = 4;

Integer ButtonsOf(WPARAM keys) {
  return LowWord((keys & MK_LBUTTON ? kLeftButton : 0) | (keys & MK_RBUTTON ? kRightButton : 0) |
                 (keys & MK_MBUTTON ? kMiddleButton : 0));
}

// Whether a person sees the box at that point of it.
bool Shows(HWND box, POINT at) {
  const HWND control = ::GetParent(box);
  ::MapWindowPoints(box, control, &at, 1);
  return ::ChildWindowFromPointEx(control, at, CWP_SKIPINVISIBLE) == box;
}

}  // namespace

bool BoxMouse::Handle(HWND box, bool enabled, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CAPTURECHANGED) {
    Forget();
    return true;
  }
  if (message < WM_MOUSEMOVE || message > WM_MBUTTONDBLCLK) return false;
  if (!enabled) {
    if (m_held != 0) ::ReleaseCapture();
    Forget();
    return true;
  }
  const POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  switch (message) {
    case WM_MOUSEMOVE:
      Move(ButtonsOf(wParam), at);
      break;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      Press(box, kLeftButton, message == WM_LBUTTONDBLCLK, at);
      break;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
      Press(box, kRightButton, false, at);
      break;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
      Press(box, kMiddleButton, false, at);
      break;
    case WM_LBUTTONUP:
      Release(box, kLeftButton, at);
      break;
    case WM_RBUTTONUP:
      Release(box, kRightButton, at);
      break;
    case WM_MBUTTONUP:
      Release(box, kMiddleButton, at);
      break;
    default:
      return false;
  }
  return true;
}

void BoxMouse::Press(HWND box, Integer button, bool second, POINT at) {
  if (m_held == 0) ::SetCapture(box);
  ::SetFocus(box);
  m_held = LowWord(m_held | button);
  if (button == kLeftButton) m_clickDue = !second;
  if (second) return m_link.Raise(&SurfaceEvents::picTwain_DblClick);
  Integer shift = ShiftState();
  auto x = static_cast<Single>(at.x);
  auto y = static_cast<Single>(at.y);
  m_link.Raise(&SurfaceEvents::picTwain_MouseDown, button, shift, x, y);
}

void BoxMouse::Move(Integer buttons, POINT at) {
  Integer held = LowWord(m_held | buttons);
  Integer shift = ShiftState();
  auto x = static_cast<Single>(at.x);
  auto y = static_cast<Single>(at.y);
  m_link.Raise(&SurfaceEvents::picTwain_MouseMove, held, shift, x, y);
}

void BoxMouse::Release(HWND box, Integer button, POINT at) {
  const bool click = button == kLeftButton && m_clickDue && Shows(box, at);
  if (button == kLeftButton) m_clickDue = false;
  const bool last = m_held != 0 && (m_held & ~button) == 0;
  m_held = LowWord(m_held & ~button);
  if (last) ::ReleaseCapture();
  Integer shift = ShiftState();
  auto x = static_cast<Single>(at.x);
  auto y = static_cast<Single>(at.y);
  m_link.Raise(&SurfaceEvents::picTwain_MouseUp, button, shift, x, y);
  // Its handler may have disabled the control.
  if (click && ::IsWindowEnabled(::GetParent(box))) m_link.Raise(&SurfaceEvents::picTwain_Click);
}

void BoxMouse::Forget() noexcept {
  m_held = 0;
  m_clickDue = false;
}

}  // namespace quillet
