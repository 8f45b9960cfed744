#pragma once

#include <array>
#include <string>

#include "platform/win32/sdk.h"

namespace quillet {

// Where the running program lies, with what was built beside it. Ends in a separator.
inline std::wstring ProgramFolder() {
  std::array<wchar_t, 1024> name{};
  ::GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
  const std::wstring program = name.data();
  return program.substr(0, program.find_last_of(L"\\/") + 1);
}

}  // namespace quillet
