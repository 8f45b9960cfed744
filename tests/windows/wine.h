#pragma once

#include "platform/win32/sdk.h"

namespace quillet {

// Whether the system is Wine, which leaves out some of what Windows does.
inline bool IsWine() {
  return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace quillet
