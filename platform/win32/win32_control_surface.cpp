#include "platform/win32/win32_control_surface.h"

#include <limits>
#include <utility>

#include "base/rounding.h"
#include "base/runtime_error.h"
#include "platform/win32/input_state.h"

namespace quillet {
namespace {

int CheckedSize(int pixels) {
  if (pixels < 0 || pixels > std::numeric_limits<Integer>::max())
    throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  return pixels;
}

}  // namespace

Win32ControlSurface::Win32ControlSurface(SurfaceLink& link, std::shared_ptr<WindowClasses> classes,
                                         int insideWidth, int insideHeight)
    : NativeWindow(classes, classes->Control(), WS_EX_CLIENTEDGE | WS_EX_CONTROLPARENT,
                   WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, HWND_MESSAGE,
                   {CheckedSize(insideWidth) + 2 * ::GetSystemMetrics(SM_CXEDGE),
                    CheckedSize(insideHeight) + 2 * ::GetSystemMetrics(SM_CYEDGE)}),
      m_link(link),
      m_scale(Window()) {
  TakeSize();
}

void Win32ControlSurface::PutBorderStyle(Integer style) {
  m_link.RequireOpen();
  if (style < 0 || style > 1) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  m_borderStyle = style;
  const LONG_PTR other = ::GetWindowLongPtrW(Window(), GWL_EXSTYLE) & ~LONG_PTR{WS_EX_CLIENTEDGE};
  ::SetWindowLongPtrW(Window(), GWL_EXSTYLE, style == 1 ? other | WS_EX_CLIENTEDGE : other);
  ::SetWindowPos(Window(), nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Win32ControlSurface::PutEnabled(bool enabled) {
  m_link.RequireOpen();
  m_enabled = enabled;
  ::EnableWindow(Window(), enabled);
}

SIZE Win32ControlSurface::Frame() const noexcept {
  if (m_borderStyle != 1) return {0, 0};
  return {2 * ::GetSystemMetrics(SM_CXEDGE), 2 * ::GetSystemMetrics(SM_CYEDGE)};
}

SIZE Win32ControlSurface::Inside() const noexcept {
  RECT inside{};
  ::GetClientRect(Window(), &inside);
  return {inside.right, inside.bottom};
}

void Win32ControlSurface::Site(HWND parent, const RECT& outside) {
  m_link.RequireOpen();
  if (::GetParent(Window()) != parent && !::SetParent(Window(), parent))
    throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  ::SetWindowPos(Window(), nullptr, outside.left, outside.top, outside.right - outside.left,
                 outside.bottom - outside.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void Win32ControlSurface::Unsite() {
  if (Stands()) ::SetParent(Window(), HWND_MESSAGE);
}

bool Win32ControlSurface::PreviewKey(UINT message, WPARAM& key) {
  if (!m_enabled) return true;
  Integer shift = ShiftState();
  if (message == WM_CHAR) {
    const Integer typed = AnsiCharacter(static_cast<wchar_t>(key));
    Integer character = typed;
    m_link.Raise(&SurfaceEvents::UserControl_KeyPress, character);
    if (character != typed) key = static_cast<WPARAM>(static_cast<std::uint16_t>(character));
  } else {
    Integer code = LowWord(static_cast<Long>(key));
    const bool down = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
    m_link.Raise(down ? &SurfaceEvents::UserControl_KeyDown : &SurfaceEvents::UserControl_KeyUp,
                 code, shift);
    key = static_cast<WPARAM>(static_cast<std::uint16_t>(code));
  }
  return key == 0;
}

LRESULT Win32ControlSurface::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto alive = m_link.KeepAlive();
  if (!alive) return Default(message, wParam, lParam);
  switch (message) {
    case WM_WINDOWPOSCHANGED:
      TakeSize();
      return Default(message, wParam, lParam);
    case WM_HSCROLL:
    case WM_VSCROLL:
      // Back to the bar that it comes from.
      return lParam ? ::SendMessageW(reinterpret_cast<HWND>(lParam), OCM__BASE + message, wParam, 0)
                    : 0;
    case WM_MOUSEACTIVATE:  // from the child that was pressed, too
      TellEntered();
      return Default(message, wParam, lParam);
    case WM_SETFOCUS:
      TellEntered();
      // A bar may have been hidden since; the box stands lowest.
      ::SetFocus(::IsWindowVisible(m_focus) ? m_focus : ::GetWindow(m_focus, GW_HWNDLAST));
      return 0;
    case WM_DESTROY:
      m_link.Close();
      return Default(message, wParam, lParam);
    default:
      return Default(message, wParam, lParam);
  }
}

void Win32ControlSurface::TellEntered() {
  const std::function<void()> heard = m_entered;
  if (heard) heard();
}

void Win32ControlSurface::TakeSize() {
  RECT outside{};
  ::GetWindowRect(Window(), &outside);
  const int width = outside.right - outside.left;
  const int height = outside.bottom - outside.top;
  if (width == m_width && height == m_height) return;
  m_width = width;
  m_height = height;
  m_link.Raise(&SurfaceEvents::UserControl_Resize);
}

}  // namespace quillet
