#include "platform/win32/native_window.h"

#include <utility>

#include "base/runtime_error.h"

namespace quillet {

NativeWindow::NativeWindow(std::shared_ptr<WindowClasses> classes, const wchar_t* className,
                           DWORD extendedStyle, DWORD style, HWND parent, const SIZE& size)
    : m_classes(std::move(classes)),
      m_window(::CreateWindowExW(extendedStyle, className, L"", style, 0, 0, size.cx, size.cy,
                                 parent, nullptr, ThisModule(), nullptr)) {
  if (!m_window) throw RunTimeError(ErrorNumber::OutOfMemory);
  m_classes->Count(1);
  ::SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  m_original = reinterpret_cast<WNDPROC>(
      ::SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
}

LRESULT NativeWindow::Default(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return m_stands ? ::CallWindowProcW(m_original, m_window, message, wParam, lParam) : 0;
}

void NativeWindow::Destroy() noexcept {
  m_listens = false;
  if (m_stands) ::DestroyWindow(m_window);
  // Refused to any thread but the one that made it: the window stays, and so must the code that it
  // may still call.
  if (m_stands && !Unbind()) KeepThisModule();
}

bool NativeWindow::Unbind() noexcept {
  m_stands = false;
  m_classes->Count(-1);
  ::SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
  if (::GetWindowLongPtrW(m_window, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(&Procedure))
    return false;
  ::SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_original));
  return true;
}

LRESULT CALLBACK NativeWindow::Procedure(HWND window, UINT message, WPARAM wParam,
                                         LPARAM lParam) noexcept {
  auto* self = reinterpret_cast<NativeWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self) return ::DefWindowProcW(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    const WNDPROC original = self->m_original;
    self->Unbind();
    return ::CallWindowProcW(original, window, message, wParam, lParam);
  }
  if (!self->m_listens) return self->Default(message, wParam, lParam);
  try {
    return self->OnMessage(message, wParam, lParam);
  } catch (...) {
    return 0;
  }
}

}  // namespace quillet
