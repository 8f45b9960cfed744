#pragma once

#include <string>
#include <utility>

#include "twain/cTwain.h"

namespace quillet {

// Marks the object busy for one conversation.
class cTwain::BusyGuard {
 public:
  explicit BusyGuard(bool& busy) noexcept : m_busy(busy) { m_busy = true; }
  BusyGuard(const BusyGuard&) = delete;
  BusyGuard& operator=(const BusyGuard&) = delete;
  ~BusyGuard() { m_busy = false; }

 private:
  bool& m_busy;
};

// Owns the hidden message window of one conversation.
class MessageWindow {
 public:
  explicit MessageWindow(Messages& messages)
      : m_messages(messages),
        m_window(messages.CreateWindowExA("#32770", "TWAIN_MSG_WINDOW", 10, 10, 150, 50)) {}
  MessageWindow(const MessageWindow&) = delete;
  MessageWindow& operator=(const MessageWindow&) = delete;
  ~MessageWindow() {
    if (m_window != WindowHandle::None) m_messages.DestroyWindow(m_window);
  }

  WindowHandle get() const noexcept { return m_window; }
  // False when the platform did not destroy it.
  bool Destroy() noexcept {
    return m_messages.DestroyWindow(std::exchange(m_window, WindowHandle::None));
  }

 private:
  Messages& m_messages;
  WindowHandle m_window;
};

template <typename Work>
Long cTwain::Converse(const std::string& Title, Work&& work) {
  MessageWindow window(m_platform.messages);
  m_hWndMsg = window.get();
  if (m_hWndMsg == WindowHandle::None) return 1;
  if (OpenSource(Title) != 0) return 1;
  if (work() != 0) {
    CloseSource();
    return 1;
  }
  if (CloseSource() != 0) return 1;
  return window.Destroy() ? 0 : 1;
}

}  // namespace quillet
