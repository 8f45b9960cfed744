#include "platform/win32/win32_forms.h"

#include <cstddef>
#include <vector>

#include "platform/win32/form_window.h"

namespace quillet {
namespace {

// The windows of this thread that take input, kept from it.
class OtherWindowsDisabled {
 public:
  explicit OtherWindowsDisabled(HWND form) : m_form(form) {
    ::EnumThreadWindows(::GetCurrentThreadId(), &Disable, reinterpret_cast<LPARAM>(this));
  }
  OtherWindowsDisabled(const OtherWindowsDisabled&) = delete;
  OtherWindowsDisabled& operator=(const OtherWindowsDisabled&) = delete;
  ~OtherWindowsDisabled() {
    for (const HWND window : m_disabled) ::EnableWindow(window, TRUE);
  }

 private:
  static BOOL CALLBACK Disable(HWND window, LPARAM self) noexcept {
    auto& others = *reinterpret_cast<OtherWindowsDisabled*>(self);
    if (window == others.m_form || !::IsWindowVisible(window) || !::IsWindowEnabled(window))
      return TRUE;
    try {
      others.m_disabled.push_back(window);
      ::EnableWindow(window, FALSE);
    } catch (...) {
      return FALSE;  // the rest stays as it is
    }
    return TRUE;
  }

  HWND m_form;
  std::vector<HWND> m_disabled;
};

}  // namespace

bool Win32Forms::Click(const std::string& control) {
  return m_current && m_current->IsLoaded() && m_current->Press(control);
}

HWND Win32Forms::Window() const noexcept {
  return m_current ? m_current->Window() : nullptr;
}

void Win32Forms::Run(const Form& form, FormEvents& events) {
  FormWindow window(m_classes, form, events);
  const struct Current {
    FormWindow*& current;
    FormWindow* below;
    ~Current() { current = below; }
  } current{m_current, std::exchange(m_current, &window)};
  const HWND active = ::GetActiveWindow();
  // Whatever is held down will be let go of elsewhere.
  if (const HWND captured = ::GetCapture()) ::SendMessageW(captured, WM_CANCELMODE, 0, 0);
  {
    const OtherWindowsDisabled disabled(window.Window());
    window.Show();
    ::MSG message{};
    while (window.IsLoaded()) {
      if (!WaitForMessage(message)) {
        window.Unload();
      } else if (!::IsDialogMessageW(window.Window(), &message)) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
      }
    }
  }
  // Before the form goes, so that no other program's window is activated in its place.
  if (active) ::SetActiveWindow(active);
}

// False when the form is to be closed: the thread is to quit, which is left to the loop outside, or
// the person has gone.
bool Win32Forms::WaitForMessage(::MSG& message) {
  while (m_person && m_current->IsLoaded()) {
    if (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) break;
    const Person person = m_person;  // who may be sent away meanwhile
    if (!person()) return false;
    if (!m_person) return false;
  }
  if (!m_current->IsLoaded()) return false;
  if (!m_person && ::GetMessageW(&message, nullptr, 0, 0) < 0) return false;
  if (message.message != WM_QUIT) return true;
  ::PostQuitMessage(static_cast<int>(message.wParam));
  return false;
}

}  // namespace quillet
