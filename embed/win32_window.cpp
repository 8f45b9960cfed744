#include "embed/win32_window.h"

#include <utility>

#include "base/runtime_error.h"
#include "embed/win32_dialog_user.h"
#include "embed/win32_display.h"
#include "platform/win32/win32_platform.h"

namespace quillet {

Win32Window::Win32Window(Win32Platform& platform, Win32DialogUser& user, int width, int height)
    : m_forms(platform.Forms()),
      m_user(user),
      m_class(L"Quillet.Host", 0, nullptr),
      m_surface(platform.CreateSurface(width, height)),
      m_hand(std::make_shared<Win32Hand>(
          ControlHandles{m_surface->UserControl().Window(), m_surface->picTwain().Window(),
                         m_surface->HScroll1().Window(), m_surface->VScroll1().Window()})) {
  const RECT outside = OutsideFor(m_surface->UserControl().Frame(), width, height);
  m_window = ::CreateWindowExW(0, m_class.Name(), L"Quillet", kHostStyle, 0, 0, outside.right,
                               outside.bottom, nullptr, nullptr, ThisModule(), nullptr);
  if (!m_window) throw RunTimeError(ErrorNumber::OutOfMemory);
  m_surface->Site(m_window, outside);
  ::ShowWindow(m_window, SW_SHOWNOACTIVATE);
}

Win32Window::~Win32Window() {
  m_forms.Attend({});
  ::DestroyWindow(m_window);
}

void Win32Window::Resize(int width, int height) {
  const auto surface = m_surface;
  const RECT outside = OutsideFor(surface->UserControl().Frame(), width, height);
  ::SetWindowPos(m_window, nullptr, 0, 0, outside.right, outside.bottom,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  surface->Site(m_window, outside);
}

void Win32Window::Mouse(MouseAction action, int x, int y, Integer button, Integer shift) {
  // A handler may close this window; the surface hears the rest and drops it.
  const auto hand = m_hand;
  if (!m_forms.IsOpen()) hand->Mouse(action, x, y, button, shift);
}

void Win32Window::Key(KeyAction action, Integer code, Integer shift) {
  if (!m_forms.IsOpen()) m_hand->Key(action, code, shift);
}

void Win32Window::DragThumb(Bar bar, Integer value) {
  if (m_forms.IsOpen()) return;
  const Win32ScrollBar& scrollBar = ScrollBarOf(bar);
  m_hand->DragThumb(bar, value, scrollBar.Min(), scrollBar.Max());
}

void Win32Window::ClickArrow(Bar bar, bool forward) {
  if (!m_forms.IsOpen()) m_hand->Scroll(bar, forward ? SB_LINERIGHT : SB_LINELEFT);
}

void Win32Window::ClickPage(Bar bar, bool forward) {
  if (!m_forms.IsOpen()) m_hand->Scroll(bar, forward ? SB_PAGERIGHT : SB_PAGELEFT);
}

void Win32Window::WhileAFormIsOpen(std::function<bool()> act) {
  m_forms.Attend(std::move(act));
}

bool Win32Window::ClickOnForm(const std::string& control) {
  return m_forms.Click(control);
}

void Win32Window::Idle() {
  RunWaitingMessages(m_window);
}

Snapshot Win32Window::Capture() {
  const auto surface = m_surface;
  const HWND form = m_forms.Window();
  Idle();  // without a form, a handler may end this window and the platform
  if (!form) return SnapshotOf(surface->UserControl().Window());
  ::RedrawWindow(form, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  return SnapshotOf(form);
}

AttendedWindow::Place Win32Window::BoxPlace() const {
  return PlaceOf(m_surface->picTwain().Window(), m_surface->UserControl().Scale());
}

AttendedWindow::Place Win32Window::BarPlace(Bar bar) const {
  const Win32ScrollBar& scrollBar = ScrollBarOf(bar);
  Place place = PlaceOf(scrollBar.Window(), m_surface->UserControl().Scale());
  place.min = scrollBar.Min();
  place.max = scrollBar.Max();
  place.value = scrollBar.Value();
  return place;
}

// Scanners are real here, and so are the dialogs of their sources: a person answers them.

void Win32Window::WillChooseSource(const std::string&) {
  throw RunTimeError(ErrorNumber::ActionNotSupported, "a person chooses here");
}

void Win32Window::WillPressScan(bool) {
  throw RunTimeError(ErrorNumber::ActionNotSupported, "a person answers here");
}

void Win32Window::WillTypeFileName(const std::string& fileName, bool yes) {
  m_user.WillType(fileName, yes);
}

void Win32Window::WillCancelFileDialog() {
  m_user.WillCancel();
}

}  // namespace quillet
