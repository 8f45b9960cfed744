#include "platform/win32/win32_scroll_bar.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace quillet {
namespace {

constexpr Single kThickness = 255;  // twips

DWORD StyleOf(Orientation orientation) {
  const DWORD direction = orientation == Orientation::Horizontal ? SBS_HORZ : SBS_VERT;
  return WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP | direction;
}

SIZE FirstSize(const TwipScale& scale, Orientation orientation) {
  const TwipScale::Place thick = scale.Pixels(0, 0, kThickness, kThickness);
  return orientation == Orientation::Horizontal ? SIZE{0, thick.height} : SIZE{thick.width, 0};
}

}  // namespace

Win32ScrollBar::Win32ScrollBar(SurfaceLink& link, Win32ControlSurface& control,
                               std::shared_ptr<WindowClasses> classes, Orientation orientation)
    : RangedScrollBar(link, orientation),
      NativeWindow(std::move(classes), L"SCROLLBAR", 0, StyleOf(orientation), control.Window(),
                   FirstSize(control.Scale(), orientation)),
      m_control(control),
      m_height(orientation == Orientation::Horizontal ? kThickness : 0) {
  ShowRange();
}

void Win32ScrollBar::Move(Single left, Single top, Single width) {
  Move(left, top, width, m_height);
}

void Win32ScrollBar::Move(Single left, Single top, Single width, Single height) {
  Link().RequireOpen();
  const TwipScale::Place place = m_control.Scale().Pixels(left, top, width, height);
  m_height = height;
  ::SetWindowPos(Window(), nullptr, place.left, place.top, place.width, place.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void Win32ScrollBar::ShowOrHide() {
  ::ShowWindow(Window(), Visible() ? SW_SHOWNA : SW_HIDE);
}

void Win32ScrollBar::ShowRange() {
  SCROLLINFO shown{};
  shown.cbSize = sizeof(shown);
  // A bar with nothing to scroll stays, greyed.
  shown.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
  // The system lets the thumb's near end go no further than to a page before nMax.
  shown.nPage = static_cast<UINT>(LargeChange());
  shown.nMin = std::min(Min(), Max());
  shown.nMax = shown.nMin + std::abs(Max() - Min()) + LargeChange() - 1;
  shown.nPos = shown.nMin + std::abs(Value() - Min());
  if (Stands()) ::SetScrollInfo(Window(), SB_CTL, &shown, TRUE);
}

LRESULT Win32ScrollBar::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto alive = Link().KeepAlive();
  if (!alive) return Default(message, wParam, lParam);
  switch (message) {
    case OCM_HSCROLL:
    case OCM_VSCROLL:
      Scroll(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_CHAR:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
      return m_control.PreviewKey(message, wParam) ? 0 : Default(message, wParam, lParam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      return m_control.Enabled() ? Default(message, wParam, lParam) : 0;
    case WM_SETFOCUS:
      m_control.RememberFocus(Window());
      return Default(message, wParam, lParam);
    case WM_KILLFOCUS:
      // The system takes its caret from where the thumb was when the focus came.
      Default(message, wParam, lParam);
      ::InvalidateRect(Window(), nullptr, FALSE);
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

void Win32ScrollBar::Scroll(int code, int position) {
  // A handler may have hidden the bar or disabled the control in the middle of a drag.
  if (!Visible() || !m_control.Enabled()) return LetGo();
  switch (code) {
    case SB_LINELEFT:
    case SB_LINERIGHT:
      return Step(code == SB_LINERIGHT);
    case SB_PAGELEFT:
    case SB_PAGERIGHT:
      return Page(code == SB_PAGERIGHT);
    case SB_LEFT:
    case SB_RIGHT:
      return GoToEnd(code == SB_RIGHT);
    case SB_THUMBTRACK: {
      // The message has the position's low word.
      const int distance = static_cast<std::uint16_t>(position - std::min(Min(), Max()));
      return DragTo(Max() < Min() ? Min() - distance : Min() + distance);
    }
    // The last SB_THUMBTRACK had the position already.
    case SB_THUMBPOSITION:
    case SB_ENDSCROLL:
      return LetGo();
    default:
      return;
  }
}

}  // namespace quillet
