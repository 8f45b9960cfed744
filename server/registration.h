#pragma once

#include <span>
#include <string>

#include "platform/win32/sdk.h"

namespace quillet {

// Where classes may be registered: a key, and the path of Software\Classes below it.
struct RegistrationRoot {
  HKEY key;
  const wchar_t* path;
};

// Registers the control's class, its names and its type library for the file, under the first root
// that may be written; all of it or nothing. SELFREG_E_CLASS when none may.
HRESULT Register(std::span<const RegistrationRoot> roots, const std::wstring& file) noexcept;

// Takes out of every root what Register put there, and leaves what the control of the other width,
// 32 or 64 bits, still needs. A control that is not registered is no error.
HRESULT Unregister(std::span<const RegistrationRoot> roots) noexcept;

}  // namespace quillet
