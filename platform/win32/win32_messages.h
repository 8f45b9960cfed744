#pragma once

#include <set>

#include "platform/contracts/messages.h"

namespace quillet {

// The system's windows and the thread's own message queue.
class Win32Messages : public Messages {
 public:
  WindowHandle CreateWindowExA(const char* className, const char* caption, Long x, Long y,
                               Long width, Long height) override;
  bool DestroyWindow(WindowHandle window) override;
  int GetMessageA(MSG& message) override;
  void TranslateMessage(const MSG& message) override;
  void DispatchMessageA(const MSG& message) override;

  // Live windows that were made here.
  int Count() const { return static_cast<int>(m_live.size()); }

 private:
  std::set<WindowHandle> m_live;
};

}  // namespace quillet
