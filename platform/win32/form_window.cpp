#include "platform/win32/form_window.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/runtime_error.h"
#include "platform/win32/text.h"

namespace quillet {
namespace {

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kExtendedStyle = WS_EX_DLGMODALFRAME;
constexpr Single kFontSize = 165;  // 8.25 points, in twips

// 0x00BBGGRR, or the system colour of an index.
COLORREF ColorOf(OLE_COLOR color) noexcept {
  COLORREF result = 0;
  ::OleTranslateColor(color, nullptr, &result);
  return result;
}

HCURSOR CursorOf(const FormPointer& pointer) {
  using Plane = std::array<Byte, 4 * 32>;
  const auto bytesOf = [](const std::array<std::uint32_t, 32>& rows) {
    Plane plane{};
    for (std::size_t i = 0; i < plane.size(); ++i)
      plane[i] = static_cast<Byte>(rows[i / 4] >> (24 - 8 * (i % 4)));
    return plane;
  };
  const Plane screen = bytesOf(pointer.screen);
  const Plane image = bytesOf(pointer.image);
  return ::CreateCursor(ThisModule(), pointer.hotSpotX, pointer.hotSpotY, 32, 32, screen.data(),
                        image.data());
}

// A mnemonic would eat an ampersand.
std::wstring Caption(const std::string& text) {
  std::wstring caption;
  for (const wchar_t c : Utf16(text)) caption.append(c == L'&' ? 2u : 1u, c);
  return caption;
}

}  // namespace

Win32Forms::FormWindow::FormWindow(std::shared_ptr<WindowClasses> classes, const Form& form,
                                   FormEvents& events)
    : NativeWindow(classes, classes->Form(), kExtendedStyle, kStyle, nullptr, SIZE{}),
      m_form(form),
      m_events(events),
      m_scale(Window()),
      m_font(::CreateFontW(-m_scale.Pixels(0, 0, 0, kFontSize).height, 0, 0, 0, FW_NORMAL, FALSE,
                           FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                           DEFAULT_QUALITY, DEFAULT_PITCH, L"MS Shell Dlg")) {
  ::SetWindowTextW(Window(), Utf16(form.caption).c_str());
  const TwipScale::Place client = m_scale.Pixels(0, 0, form.scaleWidth, form.scaleHeight);
  RECT outside{0, 0, client.width, client.height};
  ::AdjustWindowRectEx(&outside, kStyle, FALSE, kExtendedStyle);
  const int width = outside.right - outside.left;
  const int height = outside.bottom - outside.top;
  ::SetWindowPos(Window(), nullptr, (::GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                 (::GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  for (const FormControl& control : form.controls) {
    if (control.kind == FormControl::Kind::Button) AddButton(control);
    if (control.kind == FormControl::Kind::Label) AddLabel(control);
  }
}

Win32Forms::FormWindow::~FormWindow() {
  Destroy();
}

RECT Win32Forms::FormWindow::PlaceOf(const FormControl& control) const {
  const TwipScale::Place place =
      m_scale.Pixels(control.left, control.top, control.width, control.height);
  return {place.left, place.top, place.left + place.width, place.top + place.height};
}

void Win32Forms::FormWindow::AddButton(const FormControl& control) {
  const RECT place = PlaceOf(control);
  const HWND window = ::CreateWindowExW(
      0, L"BUTTON", Caption(control.caption).c_str(),
      WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, place.left, place.top,
      place.right - place.left, place.bottom - place.top, Window(), nullptr, ThisModule(), nullptr);
  if (!window) throw RunTimeError(ErrorNumber::OutOfMemory);
  ::SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(m_font.get()), FALSE);
  m_buttons.push_back({&control, window});
}

void Win32Forms::FormWindow::AddLabel(const FormControl& control) {
  m_labels.push_back({&control, PlaceOf(control),
                      UniquePointer(control.pointer ? CursorOf(*control.pointer) : nullptr)});
}

void Win32Forms::FormWindow::Show() noexcept {
  ::ShowWindow(Window(), SW_SHOW);
  ::UpdateWindow(Window());
  if (!m_buttons.empty()) ::SetFocus(m_buttons.front().window);
}

bool Win32Forms::FormWindow::Press(const std::string& control) {
  for (const Button& button : m_buttons) {
    if (button.control->name != control) continue;
    ::SendMessageW(button.window, BM_CLICK, 0, 0);
    return true;
  }
  for (const Label& label : m_labels) {
    if (label.control->name != control) continue;
    const LPARAM point = MAKELPARAM((label.place.left + label.place.right) / 2,
                                    (label.place.top + label.place.bottom) / 2);
    ::SendMessageW(Window(), WM_LBUTTONDOWN, MK_LBUTTON, point);
    ::SendMessageW(Window(), WM_LBUTTONUP, 0, point);
    return true;
  }
  return false;
}

const Win32Forms::FormWindow::Label* Win32Forms::FormWindow::LabelAt(::POINT point) const noexcept {
  const auto label = std::ranges::find_if(
      m_labels, [&](const Label& each) { return ::PtInRect(&each.place, point) != FALSE; });
  return label == m_labels.end() ? nullptr : &*label;
}

LRESULT Win32Forms::FormWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const ::POINT point{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
  switch (message) {
    case WM_COMMAND: {
      const HWND window = reinterpret_cast<HWND>(lParam);
      const auto button = std::ranges::find(m_buttons, window, &Button::window);
      if (button != m_buttons.end() && HIWORD(wParam) == BN_CLICKED)
        m_events.Click(*this, button->control->name);
      if (!window && LOWORD(wParam) == IDCANCEL) Unload();  // the Escape key
      return 0;
    }
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      m_pressed = LabelAt(point);
      return 0;
    case WM_LBUTTONUP:
      if (const Label* pressed = std::exchange(m_pressed, nullptr);
          pressed && pressed == LabelAt(point))
        m_events.Click(*this, pressed->control->name);
      return 0;
    case WM_CLOSE:
      Unload();
      return 0;
    case WM_SETCURSOR:
      if (LOWORD(lParam) == HTCLIENT && ShowPointer()) return TRUE;
      break;
    case WM_PAINT:
      Paint();
      return 0;
  }
  return Default(message, wParam, lParam);
}

// False where the pointer is the arrow.
bool Win32Forms::FormWindow::ShowPointer() const noexcept {
  ::POINT point{};
  if (!::GetCursorPos(&point) || !::ScreenToClient(Window(), &point)) return false;
  const Label* const label = LabelAt(point);
  if (!label || !label->pointer) return false;
  ::SetCursor(label->pointer.get());
  return true;
}

void Win32Forms::FormWindow::Paint() const {
  PAINTSTRUCT paint{};
  const HDC dc = ::BeginPaint(Window(), &paint);
  if (!dc) return;
  const HGDIOBJ font = ::SelectObject(dc, m_font.get());
  ::SetBkMode(dc, TRANSPARENT);
  for (const Label& label : m_labels) {
    RECT place = label.place;
    ::SetTextColor(dc, ColorOf(label.control->color));
    ::DrawTextW(dc, Utf16(label.control->caption).c_str(), -1, &place,
                DT_LEFT | DT_NOPREFIX | DT_WORDBREAK);
  }
  for (const FormControl& control : m_form.controls) {
    if (control.kind != FormControl::Kind::Line) continue;
    // One pixel wide; only upright and level ones occur.
    RECT area = PlaceOf(control);
    area.right = std::max(area.right, area.left + 1);
    area.bottom = std::max(area.bottom, area.top + 1);
    if (const HBRUSH brush = ::CreateSolidBrush(ColorOf(control.color))) {
      ::FillRect(dc, &area, brush);
      ::DeleteObject(brush);
    }
  }
  ::SelectObject(dc, font);
  ::EndPaint(Window(), &paint);
}

}  // namespace quillet
