#include "host/win32_ocx_window.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "base/runtime_error.h"
#include "embed/win32_display.h"
#include "host/win32_call_result.h"

namespace quillet {
namespace {

HWND MakeHostWindow(const WindowClass& itsClass, int width, int height) {
  const RECT outside = OutsideFor({0, 0}, width, height);
  const HWND window =
      ::CreateWindowExW(0, itsClass.Name(), L"Quillet", kHostStyle, 0, 0, outside.right,
                        outside.bottom, nullptr, nullptr, ThisModule(), nullptr);
  if (!window) throw RunTimeError(ErrorNumber::OutOfMemory);
  return window;
}

// The control's children are told by what they are: the bars are the system's, each of its
// direction, the picture box is the other one.
BOOL CALLBACK Sort(HWND child, LPARAM windows) {
  auto& found = *reinterpret_cast<ControlHandles*>(windows);
  wchar_t name[16] = L"";
  ::GetClassNameW(child, name, static_cast<int>(std::size(name)));
  const bool isBar = ::lstrcmpiW(name, L"ScrollBar") == 0;
  const bool isVertical = (::GetWindowLongPtrW(child, GWL_STYLE) & SBS_VERT) != 0;
  (isBar ? isVertical ? found.vertical : found.horizontal : found.box) = child;
  return TRUE;
}

ControlHandles WindowsOf(HWND control) {
  ControlHandles found{control, nullptr, nullptr, nullptr};
  ::EnumChildWindows(control, &Sort, reinterpret_cast<LPARAM>(&found));
  if (!found.box || !found.horizontal || !found.vertical)
    throw std::runtime_error("the control has other windows than a picture box and two bars");
  return found;
}

// By its style: a window that is smaller than its border has no room to measure it.
SIZE FrameOf(HWND control) {
  RECT frame{};
  ::AdjustWindowRectEx(&frame, static_cast<DWORD>(::GetWindowLongPtrW(control, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(::GetWindowLongPtrW(control, GWL_EXSTYLE)));
  return {frame.right - frame.left, frame.bottom - frame.top};
}

// Whatever the bar's Max, its Min is 0; a Max below that is the lower end.
struct BarNumbers {
  Integer max, value;
};

BarNumbers NumbersOf(HWND bar) {
  SCROLLINFO shown{};
  shown.cbSize = sizeof shown;
  shown.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  ::GetScrollInfo(bar, SB_CTL, &shown);
  const int distance = shown.nPos - shown.nMin;
  if (shown.nMin < 0) return {static_cast<Integer>(shown.nMin), static_cast<Integer>(-distance)};
  const int page = static_cast<int>(shown.nPage);
  return {static_cast<Integer>(shown.nMax - page + 1), static_cast<Integer>(distance)};
}

}  // namespace

OcxWindow::OcxWindow(int width, int height)
    : m_class(L"Quillet.Container", 0, nullptr),
      m_window(MakeHostWindow(m_class, width, height)),
      m_site(MakeCounted<OcxSite>(m_window)) {
  m_site->SetPlace({0, 0, width, height});
}

OcxWindow::~OcxWindow() {
  m_inPlace = {};
  ::DestroyWindow(m_window);
}

void OcxWindow::Show(IOleObject& control) {
  const RECT place = m_site->Place();
  RequireCall(control.DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, m_site.get(), 0, m_window, &place));
  RequireCall(control.QueryInterface(IID_IOleInPlaceObject, m_inPlace.ReceiveVoid()));
  HWND window = nullptr;
  RequireCall(m_inPlace->GetWindow(&window));
  m_windows = WindowsOf(window);
  m_hand = std::make_shared<Win32Hand>(m_windows);
  // Its border comes on top.
  Resize(place.right, place.bottom);
  ::ShowWindow(m_window, SW_SHOWNOACTIVATE);
}

void OcxWindow::Resize(int width, int height) {
  const RECT outside = OutsideFor(FrameOf(m_windows.control), width, height);
  const ComPtr<IOleInPlaceObject> control = m_inPlace;
  m_site->SetPlace(outside);
  ::SetWindowPos(m_window, nullptr, 0, 0, outside.right, outside.bottom,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  RequireCall(control->SetObjectRects(&outside, &outside));
}

// A handler may close this window; the hand is held by itself then, and finds no window.

void OcxWindow::Mouse(MouseAction action, int x, int y, Integer button, Integer shift) {
  const auto hand = m_hand;
  hand->Mouse(action, x, y, button, shift);
}

void OcxWindow::Key(KeyAction action, Integer code, Integer shift) {
  const auto hand = m_hand;
  hand->Key(action, code, shift);
}

void OcxWindow::DragThumb(Bar bar, Integer value) {
  m_hand->DragThumb(bar, value, 0, NumbersOf(WindowOf(bar)).max);
}

void OcxWindow::ClickArrow(Bar bar, bool forward) {
  m_hand->Scroll(bar, forward ? SB_LINERIGHT : SB_LINELEFT);
}

void OcxWindow::ClickPage(Bar bar, bool forward) {
  m_hand->Scroll(bar, forward ? SB_PAGERIGHT : SB_PAGELEFT);
}

void OcxWindow::WillChooseSource(const std::string&) {
  throw RunTimeError(ErrorNumber::ActionNotSupported, "a person chooses here");
}

void OcxWindow::WillPressScan(bool) {
  throw RunTimeError(ErrorNumber::ActionNotSupported, "a person answers here");
}

void OcxWindow::WillTypeFileName(const std::string& fileName, bool yes) {
  m_user->WillType(fileName, yes);
}

void OcxWindow::WillCancelFileDialog() {
  m_user->WillCancel();
}

void OcxWindow::Idle() {
  RunWaitingMessages(m_window);
}

Snapshot OcxWindow::Capture() {
  const HWND control = m_windows.control;
  Idle();
  return SnapshotOf(control);
}

AttendedWindow::Place OcxWindow::BoxPlace() const {
  return PlaceOf(m_windows.box, TwipScale(m_windows.control));
}

AttendedWindow::Place OcxWindow::BarPlace(Bar bar) const {
  Place place = PlaceOf(WindowOf(bar), TwipScale(m_windows.control));
  const BarNumbers numbers = NumbersOf(WindowOf(bar));
  place.max = numbers.max;
  place.value = numbers.value;
  return place;
}

}  // namespace quillet
