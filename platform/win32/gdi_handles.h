#pragma once

#include "platform/contracts/handles.h"
#include "platform/win32/sdk.h"

namespace quillet {

// The system's handles have 32 significant bits wherever they are wider, and come back from 32-bit
// fields sign-extended. So do ours, to compare equal by whichever way they came.
inline std::uintptr_t HandleValue(HANDLE handle) noexcept {
  const LONG significant = HandleToLong(handle);
  return static_cast<std::uintptr_t>(static_cast<LONG_PTR>(significant));
}
inline BitmapHandle ToBitmapHandle(HANDLE handle) noexcept {
  return BitmapHandle{HandleValue(handle)};
}
inline DCHandle ToDCHandle(HDC dc) noexcept {
  return DCHandle{HandleValue(dc)};
}

inline HBITMAP SystemHandle(BitmapHandle bitmap) noexcept {
  return reinterpret_cast<HBITMAP>(bitmap);
}
inline HDC SystemHandle(DCHandle dc) noexcept {
  return reinterpret_cast<HDC>(dc);
}

}  // namespace quillet
