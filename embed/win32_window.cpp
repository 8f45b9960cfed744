#include "embed/win32_window.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <utility>

#include "base/rounding.h"
#include "base/runtime_error.h"
#include "embed/win32_dialog_user.h"
#include "platform/win32/win32_platform.h"

namespace quillet {
namespace {

// The window without anything around the control.
constexpr DWORD kHostStyle = WS_POPUP | WS_CLIPCHILDREN;

RECT OutsideFor(const Win32ControlSurface& control, int width, int height) {
  const auto tooFar = [](int size) {
    return size < 0 || size > std::numeric_limits<Integer>::max();
  };
  if (tooFar(width) || tooFar(height)) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  const SIZE frame = control.Frame();
  return {0, 0, width + frame.cx, height + frame.cy};
}

bool IsUserInput(UINT message) {
  return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
         (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
         (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK);
}

void PumpMessages() {
  ::MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0,
                        PM_REMOVE | PM_QS_INPUT | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE))
    if (!IsUserInput(message.message)) ::DispatchMessageW(&message);
}

ControlWindow::Place PlaceOf(HWND window, const TwipScale& scale) {
  RECT place{};
  ::GetWindowRect(window, &place);
  ::MapWindowPoints(nullptr, ::GetParent(window), reinterpret_cast<::POINT*>(&place), 2);
  return {.left = scale.Wide(place.left),
          .top = scale.High(place.top),
          .width = scale.Wide(place.right - place.left),
          .height = scale.High(place.bottom - place.top),
          .visible = (::GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0};
}

// The rows of a top-down 24-bit section, as RGB without padding.
std::vector<Byte> RgbOf(const Byte* bits, int width, int height) {
  const std::size_t rowLength = 3 * static_cast<std::size_t>(width);
  const std::size_t stride = (rowLength + 3) / 4 * 4;
  std::vector<Byte> rgb(rowLength * static_cast<std::size_t>(height));
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y)
    for (std::size_t x = 0; x < rowLength; ++x)
      rgb[y * rowLength + x] = bits[y * stride + x / 3 * 3 + (2 - x % 3)];
  return rgb;
}

// What the display shows of the whole window, its frame included.
Snapshot SnapshotOf(HWND window) {
  RECT outside{};
  if (!::GetWindowRect(window, &outside)) return {};
  Snapshot snapshot{outside.right - outside.left, outside.bottom - outside.top, {}};
  ::BITMAPINFO header{};
  header.bmiHeader.biSize = sizeof(header.bmiHeader);
  header.bmiHeader.biWidth = snapshot.width;
  header.bmiHeader.biHeight = -snapshot.height;
  header.bmiHeader.biPlanes = 1;
  header.bmiHeader.biBitCount = 24;
  void* bits = nullptr;
  const HBITMAP section = ::CreateDIBSection(nullptr, &header, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!section) throw RunTimeError(ErrorNumber::OutOfMemory);
  const HDC source = ::GetDCEx(window, nullptr, DCX_WINDOW | DCX_CACHE);
  const HDC target = ::CreateCompatibleDC(nullptr);
  const HGDIOBJ previous = ::SelectObject(target, section);
  ::BitBlt(target, 0, 0, snapshot.width, snapshot.height, source, 0, 0, SRCCOPY);
  ::GdiFlush();
  ::SelectObject(target, previous);
  ::DeleteDC(target);
  ::ReleaseDC(window, source);
  snapshot.rgb = RgbOf(static_cast<const Byte*>(bits), snapshot.width, snapshot.height);
  ::DeleteObject(section);
  return snapshot;
}

}  // namespace

Win32Window::Win32Window(Win32Platform& platform, Win32DialogUser& user, int width, int height)
    : m_forms(platform.Forms()),
      m_user(user),
      m_class(L"Quillet.Host", 0, nullptr),
      m_surface(platform.CreateSurface(width, height)),
      m_hand(std::make_shared<Win32Hand>(
          ControlHandles{m_surface->UserControl().Window(), m_surface->picTwain().Window(),
                         m_surface->HScroll1().Window(), m_surface->VScroll1().Window()})) {
  const RECT outside = OutsideFor(m_surface->UserControl(), width, height);
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
  const RECT outside = OutsideFor(surface->UserControl(), width, height);
  ::SetWindowPos(m_window, nullptr, 0, 0, outside.right, outside.bottom,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  surface->Site(m_window, outside);
}

void Win32Window::Mouse(MouseAction action, int x, int y, Integer button, Integer shift) {
  const bool known = action == MouseAction::Move ? button >= 0 && button <= 7
                                                 : button == 1 || button == 2 || button == 4;
  if (!known) throw RunTimeError(ErrorNumber::InvalidProcedureCall, "not a mouse button");
  const ::POINT at{ToInteger(x), ToInteger(y)};
  if (m_forms.IsOpen()) return;
  // A handler may close this window; the surface hears the rest and drops it.
  const auto hand = m_hand;
  switch (action) {
    case MouseAction::Down:
      return hand->Press(at, button, shift, false);
    case MouseAction::Move:
      return hand->Move(at, button, shift);
    case MouseAction::Up:
      return hand->Release(at, button, shift);
    case MouseAction::Click:
      hand->Press(at, button, shift, false);
      return hand->Release(at, button, shift);
    case MouseAction::DblClick:
      hand->Press(at, button, shift, false);
      hand->Release(at, button, shift);
      hand->Press(at, button, shift, true);
      return hand->Release(at, button, shift);
  }
}

void Win32Window::Key(KeyAction action, Integer code, Integer shift) {
  if (!m_forms.IsOpen()) m_hand->Key(action, code, shift);
}

void Win32Window::DragThumb(Bar bar, Integer value) {
  if (m_forms.IsOpen()) return;
  const Win32ScrollBar& scrollBar = ScrollBarOf(bar);
  const auto [low, high] = std::minmax({scrollBar.Min(), scrollBar.Max()});
  m_hand->DragThumb(bar, std::abs(std::clamp(value, low, high) - scrollBar.Min()));
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
  const HWND window = m_window;
  PumpMessages();
  ::RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

Snapshot Win32Window::Capture() {
  const auto surface = m_surface;
  const HWND form = m_forms.Window();
  Idle();  // without a form, a handler may end this window and the platform
  if (!form) return SnapshotOf(surface->UserControl().Window());
  ::RedrawWindow(form, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  return SnapshotOf(form);
}

ControlWindow::Place Win32Window::BoxPlace() const {
  return PlaceOf(m_surface->picTwain().Window(), m_surface->UserControl().Scale());
}

ControlWindow::Place Win32Window::BarPlace(Bar bar) const {
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
