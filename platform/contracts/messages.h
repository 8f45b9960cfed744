#pragma once

#include <cstdint>

#include "base/types.h"
#include "platform/contracts/handles.h"

namespace quillet {

struct POINT {
  Long x = 0;
  Long y = 0;
};

// A message of the thread's queue, laid out like the platform's own: data sources are handed its
// address.
struct MSG {
  WindowHandle hwnd = WindowHandle::None;
  std::uint32_t message = 0;
  std::uintptr_t wParam = 0;
  std::intptr_t lParam = 0;
  std::uint32_t time = 0;
  POINT pt;
};

// Windows that serve as handles, and the calling thread's message queue.
class Messages {
 public:
  virtual ~Messages() = default;

  // A window that is never shown and belongs to the caller; None when it cannot be made.
  virtual WindowHandle CreateWindowExA(const char* className, const char* caption, Long x, Long y,
                                       Long width, Long height) = 0;
  // False for a handle that is no live window.
  virtual bool DestroyWindow(WindowHandle window) = 0;

  // Takes the thread's next message, of any window and number, and waits for one. Above 0 for a
  // message, 0 when it was the quit message, -1 on failure.
  virtual int GetMessageA(MSG& message) = 0;
  virtual void TranslateMessage(const MSG& message) = 0;
  // Hands the message to its window, whose procedure may run host code.
  virtual void DispatchMessageA(const MSG& message) = 0;
};

}  // namespace quillet
