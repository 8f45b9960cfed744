#pragma once

#include <memory>

#include "platform/win32/gdi_handles.h"
#include "platform/win32/sdk.h"
#include "platform/win32/window_classes.h"

namespace quillet {

// A system window whose messages come to the derived class, as long as both stand: the window may
// go first, by its parent's end, and its procedure may still be at work when the object goes.
//
// A derived class calls Destroy in its destructor. Its OnMessage keeps the object alive while it
// needs it; what it throws ends there.
class NativeWindow {
 public:
  NativeWindow(const NativeWindow&) = delete;
  NativeWindow& operator=(const NativeWindow&) = delete;

  // Kept after the window is gone.
  HWND Window() const noexcept { return m_window; }
  WindowHandle Handle() const noexcept { return WindowHandle{HandleValue(m_window)}; }
  bool Stands() const noexcept { return m_stands; }

 protected:
  // Run-time error 7 when the system gives no window.
  NativeWindow(std::shared_ptr<WindowClasses> classes, const wchar_t* className,
               DWORD extendedStyle, DWORD style, HWND parent, const SIZE& size);
  ~NativeWindow() { Destroy(); }

  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
  // What the window does by itself.
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  // No message comes to OnMessage any more.
  void Destroy() noexcept;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept;
  // False when another's procedure stands before ours and goes on calling it.
  bool Unbind() noexcept;

  std::shared_ptr<WindowClasses> m_classes;
  HWND m_window;
  WNDPROC m_original = nullptr;
  bool m_stands = true;
  bool m_listens = true;
};

}  // namespace quillet
