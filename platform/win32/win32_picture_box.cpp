#include "platform/win32/win32_picture_box.h"

#include <iterator>
#include <utility>

#include "base/runtime_error.h"
#include "platform/win32/picture_painter.h"

namespace quillet {
namespace {

constexpr Integer kCustomPointer = 99;

// By MousePointer; 0 asks for none.
const LPCWSTR kPointers[] = {nullptr,      IDC_ARROW,       IDC_CROSS,    IDC_IBEAM,
                             IDC_ICON,     IDC_SIZEALL,     IDC_SIZENESW, IDC_SIZENS,
                             IDC_SIZENWSE, IDC_SIZEWE,      IDC_UPARROW,  IDC_WAIT,
                             IDC_NO,       IDC_APPSTARTING, IDC_HELP,     IDC_SIZEALL};

COLORREF ColorOf(OLE_COLOR color) {
  COLORREF plain = RGB(0, 0, 0);
  ::OleTranslateColor(color, nullptr, &plain);
  return plain;
}

}  // namespace

Win32PictureBox::Win32PictureBox(SurfaceLink& link, Win32ControlSurface& control,
                                 std::shared_ptr<WindowClasses> classes)
    : NativeWindow(classes, classes->Box(), 0, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                   control.Window(), control.Inside()),
      m_link(link),
      m_control(control),
      m_mouse(link),
      m_dc(::GetDC(Window())),
      m_size(control.Inside()) {
  control.RememberFocus(Window());
}

void Win32PictureBox::PutPicture(const PictureRef& picture) {
  m_link.RequireOpen();
  m_picture = picture;
  Invalidate();
}

void Win32PictureBox::Move(Single left, Single top, Single width, Single height) {
  m_link.RequireOpen();
  const TwipScale::Place place = m_control.Scale().Pixels(left, top, width, height);
  ::SetWindowPos(Window(), nullptr, place.left, place.top, place.width, place.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void Win32PictureBox::Refresh() {
  m_link.RequireOpen();
  Invalidate();
  if (m_painting)
    m_paintOwed = true;
  else
    ::UpdateWindow(Window());
}

void Win32PictureBox::PutBackColor(OLE_COLOR color) {
  m_link.RequireOpen();
  m_backColor = color;
  Invalidate();
}

void Win32PictureBox::PutMousePointer(Integer pointer) {
  m_link.RequireOpen();
  if ((pointer < 0 || pointer >= std::ssize(kPointers)) && pointer != kCustomPointer)
    throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  m_mousePointer = pointer;
  ShowPointer();
}

void Win32PictureBox::PutMouseIcon(const PictureRef& icon) {
  m_link.RequireOpen();
  // The earlier icon may be the pointer on the display: it goes last.
  const PictureRef earlier = std::exchange(m_mouseIcon, icon);
  ShowPointer();
}

void Win32PictureBox::PutToolTipText(const std::string& text) {
  m_link.RequireOpen();
  m_toolTipText = text;
  m_toolTip.Show(Window(), text);
}

LRESULT Win32PictureBox::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto alive = m_link.KeepAlive();
  if (!alive) return Default(message, wParam, lParam);
  if (m_mouse.Handle(Window(), m_control.Enabled(), message, wParam, lParam)) return 0;
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      TakeSize();
      return 0;
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_CHAR:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
      return m_control.PreviewKey(message, wParam) ? 0 : Default(message, wParam, lParam);
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_SETFOCUS:
      m_control.RememberFocus(Window());
      return 0;
    case WM_SETCURSOR:
      if (LOWORD(lParam) != HTCLIENT || !Pointer()) return Default(message, wParam, lParam);
      ::SetCursor(Pointer());
      return TRUE;
    case WM_DESTROY:
      m_toolTip.Remove();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

void Win32PictureBox::TakeSize() {
  RECT inside{};
  ::GetClientRect(Window(), &inside);
  if (inside.right == m_size.cx && inside.bottom == m_size.cy) return;
  m_size = {inside.right, inside.bottom};
  m_link.Raise(&SurfaceEvents::picTwain_Resize);
}

void Win32PictureBox::Paint() {
  PAINTSTRUCT paint{};
  const HDC dc = ::BeginPaint(Window(), &paint);
  if (dc) Draw(dc);
  if (m_painting) {
    m_paintOwed = true;
  } else {
    m_painting = true;
    m_link.Raise(&SurfaceEvents::picTwain_Paint);
    m_painting = false;
  }
  ::EndPaint(Window(), &paint);
  if (!m_painting && std::exchange(m_paintOwed, false) && Stands()) Invalidate();
}

void Win32PictureBox::Draw(HDC dc) const {
  PaintPicture(dc, m_picture.get(), ColorOf(m_backColor));
}

HCURSOR Win32PictureBox::Pointer() const noexcept {
  if (m_mousePointer != kCustomPointer)
    return m_mousePointer == 0 ? nullptr : ::LoadCursorW(nullptr, kPointers[m_mousePointer]);
  const bool icon = m_mouseIcon && m_mouseIcon->Kind() == PictureKind::Icon;
  return icon ? reinterpret_cast<HCURSOR>(m_mouseIcon->Handle()) : nullptr;
}

void Win32PictureBox::ShowPointer() {
  POINT at{};
  if (::GetCursorPos(&at) && ::WindowFromPoint(at) == Window())
    ::SendMessageW(Window(), WM_SETCURSOR, reinterpret_cast<WPARAM>(Window()),
                   MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
}

}  // namespace quillet
