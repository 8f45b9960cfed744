#include "platform/win32/win32_messages.h"

#include <cstddef>

#include "platform/win32/sdk.h"

namespace quillet {
namespace {

// Data sources are handed the address of our record and read it as the system's.
static_assert(sizeof(MSG) == sizeof(::MSG));
static_assert(offsetof(MSG, hwnd) == offsetof(::MSG, hwnd));
static_assert(offsetof(MSG, message) == offsetof(::MSG, message));
static_assert(offsetof(MSG, wParam) == offsetof(::MSG, wParam));
static_assert(offsetof(MSG, lParam) == offsetof(::MSG, lParam));
static_assert(offsetof(MSG, time) == offsetof(::MSG, time));
static_assert(offsetof(MSG, pt) == offsetof(::MSG, pt));

::MSG Native(const MSG& message) {
  return {.hwnd = reinterpret_cast<HWND>(message.hwnd),
          .message = message.message,
          .wParam = message.wParam,
          .lParam = message.lParam,
          .time = message.time,
          .pt = {message.pt.x, message.pt.y}};
}

}  // namespace

WindowHandle Win32Messages::CreateWindowExA(const char* className, const char* caption, Long x,
                                            Long y, Long width, Long height) {
  const HWND window = ::CreateWindowExA(0, className, caption, 0, x, y, width, height, nullptr,
                                        nullptr, nullptr, nullptr);
  const WindowHandle handle{reinterpret_cast<std::uintptr_t>(window)};
  if (window) m_live.insert(handle);
  return handle;
}

bool Win32Messages::DestroyWindow(WindowHandle window) {
  m_live.erase(window);
  return ::DestroyWindow(reinterpret_cast<HWND>(window)) != FALSE;
}

int Win32Messages::GetMessageA(MSG& message) {
  ::MSG native{};
  const BOOL answer = ::GetMessageA(&native, nullptr, 0, 0);
  message = {.hwnd = WindowHandle{reinterpret_cast<std::uintptr_t>(native.hwnd)},
             .message = native.message,
             .wParam = native.wParam,
             .lParam = native.lParam,
             .time = native.time,
             .pt = {static_cast<Long>(native.pt.x), static_cast<Long>(native.pt.y)}};
  return answer;
}

void Win32Messages::TranslateMessage(const MSG& message) {
  const ::MSG native = Native(message);
  ::TranslateMessage(&native);
}

void Win32Messages::DispatchMessageA(const MSG& message) {
  const ::MSG native = Native(message);
  ::DispatchMessageA(&native);
}

}  // namespace quillet
