#include "platform/win32/input_state.h"

#include "base/rounding.h"
#include "platform/win32/sdk.h"

namespace quillet {

Integer ShiftState() noexcept {
  const auto flag = [](int key, int value) { return ::GetKeyState(key) < 0 ? value : 0; };
  return LowWord(flag(VK_SHIFT, 1) | flag(VK_CONTROL, 2) | flag(VK_MENU, 4));
}

Integer AnsiCharacter(wchar_t unit) noexcept {
  unsigned char bytes[2] = {};
  const int count = ::WideCharToMultiByte(CP_ACP, 0, &unit, 1, reinterpret_cast<char*>(bytes),
                                          sizeof(bytes), nullptr, nullptr);
  if (count < 1) return '?';
  // A double-byte character has its lead byte in the high half.
  return LowWord(count == 1 ? bytes[0] : bytes[0] << 8 | bytes[1]);
}

}  // namespace quillet
