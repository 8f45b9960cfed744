#pragma once

#include <string>

#include "platform/win32/sdk.h"

namespace quillet {

// The module that this code is in: the program, or the library that was loaded into one.
HINSTANCE ThisModule() noexcept;
// Keeps it loaded until the process ends.
void KeepThisModule() noexcept;

// A registered window class. Its procedure is the system's default one, so that a window which is
// left behind never calls into a library that is gone. The name is made unlike that of every other
// class in the process. Run-time error 7 when the system refuses it.
class WindowClass {
 public:
  WindowClass(const wchar_t* name, UINT style, HBRUSH background);
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;
  ~WindowClass();

  const wchar_t* Name() const noexcept { return m_name.c_str(); }

 private:
  std::wstring m_name;
};

// The window classes of the surfaces, and the number of their windows that stand. Every surface
// holds it.
class WindowClasses {
 public:
  const wchar_t* Control() const noexcept { return m_control.Name(); }
  const wchar_t* Box() const noexcept { return m_box.Name(); }

  const wchar_t* Form() const noexcept { return m_form.Name(); }

  void Count(int change) noexcept { m_standing += change; }
  int Standing() const noexcept { return m_standing; }

 private:
  WindowClass m_control{L"Quillet.Control", CS_DBLCLKS,
                        reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1})};
  // Painted whole by itself, for a new size too, and with a device context of its own.
  WindowClass m_box{L"Quillet.PictureBox", CS_DBLCLKS | CS_OWNDC | CS_HREDRAW | CS_VREDRAW,
                    nullptr};
  WindowClass m_form{L"Quillet.Form", 0, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1})};
  int m_standing = 0;
};

}  // namespace quillet
