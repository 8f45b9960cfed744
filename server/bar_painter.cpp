#include "server/bar_painter.h"

#include <algorithm>

namespace quillet {
namespace {

// Along the bar from one pixel to another, across all of it.
RECT Section(const RECT& whole, bool vertical, int from, int to) {
  return vertical ? RECT{0, from, whole.right, to} : RECT{from, 0, to, whole.bottom};
}

}  // namespace

void PaintBar(HDC dc, HWND bar) {
  RECT whole{};
  ::GetClientRect(bar, &whole);
  const bool vertical = (::GetWindowLongPtrW(bar, GWL_STYLE) & SBS_VERT) != 0;
  const int length = vertical ? whole.bottom : whole.right;
  const int arrow =
      std::min(::GetSystemMetrics(vertical ? SM_CYVSCROLL : SM_CXHSCROLL), length / 2);
  ::FillRect(dc, &whole, ::GetSysColorBrush(COLOR_SCROLLBAR));

  RECT first = Section(whole, vertical, 0, arrow);
  RECT last = Section(whole, vertical, length - arrow, length);
  const UINT forward = vertical ? DFCS_SCROLLDOWN : DFCS_SCROLLRIGHT;
  ::DrawFrameControl(dc, &first, DFC_SCROLL, vertical ? DFCS_SCROLLUP : DFCS_SCROLLLEFT);
  ::DrawFrameControl(dc, &last, DFC_SCROLL, forward);

  SCROLLINFO state{};
  state.cbSize = sizeof state;
  state.fMask = SIF_ALL;
  const int track = length - 2 * arrow;
  if (!::GetScrollInfo(bar, SB_CTL, &state) || track <= 0) return;
  const int positions = state.nMax - state.nMin + 1;
  const int page = static_cast<int>(state.nPage);
  if (positions <= page) return;
  const int smallest = std::min(track, arrow / 2 + 1);
  const int thumb = std::max(smallest, ::MulDiv(track, page, positions));
  const int start =
      arrow + ::MulDiv(track - thumb, state.nPos - state.nMin, positions - std::max(page, 1));
  RECT place = Section(whole, vertical, start, start + thumb);
  ::FillRect(dc, &place, ::GetSysColorBrush(COLOR_BTNFACE));
  ::DrawEdge(dc, &place, EDGE_RAISED, BF_RECT);
}

}  // namespace quillet
