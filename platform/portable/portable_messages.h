#pragma once

#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <unordered_map>

#include "platform/contracts/messages.h"
#include "platform/portable/window_table.h"

namespace quillet {

// The message queue of the one thread that uses the platform, and windows to send messages to.
//
// Everything that can post runs on that thread. So when the queue is empty the idle tasks get their
// turn, and when none of them posts, nobody ever will: GetMessageA then answers -1 and does not
// wait. The quit message comes once the queue is empty, as on other platforms.
class PortableMessages : public Messages {
 public:
  // What a window does with a message. Does not throw.
  using Procedure = std::function<void(const MSG& message)>;
  using IdleTask = std::function<void()>;

  explicit PortableMessages(std::shared_ptr<WindowTable> windows);
  PortableMessages(const PortableMessages&) = delete;
  PortableMessages& operator=(const PortableMessages&) = delete;
  ~PortableMessages() override;

  WindowHandle CreateWindowExA(const char* className, const char* caption, Long x, Long y,
                               Long width, Long height) override;
  // Its messages and the windows it owns go with it.
  bool DestroyWindow(WindowHandle window) override;
  int GetMessageA(MSG& message) override;
  // Nothing: keys do not come by this queue.
  void TranslateMessage(const MSG& message) override;
  void DispatchMessageA(const MSG& message) override;

  // A window that is destroyed together with its owner, at the latest. None when the owner is no
  // live window.
  WindowHandle CreateOwnedWindow(WindowHandle owner, Procedure procedure);
  bool IsWindow(WindowHandle window) const { return m_windows->IsWindow(window); }

  // None addresses the thread itself. False for a window that is not live.
  bool PostMessageA(WindowHandle window, std::uint32_t message, std::uintptr_t wParam,
                    std::intptr_t lParam);
  void PostQuitMessage(int exitCode);
  // For a modal thing: lets everything that waits have its turn. False when the thread is to quit,
  // which is left to the loop outside.
  bool RunWaiting();

  // What runs, in this order, whenever the queue is empty and a message is wanted; it may post,
  // and add and remove tasks. Does not throw.
  int AddIdleTask(IdleTask task);
  void RemoveIdleTask(int id);

 private:
  struct Window {
    WindowHandle owner = WindowHandle::None;
    Procedure procedure;
  };
  struct Task {
    int id;
    IdleTask run;
  };

  WindowHandle AddWindow(Window window);
  bool RunIdleTasks();
  bool IsEmpty() const { return m_queue.empty() && !m_quits; }

  std::shared_ptr<WindowTable> m_windows;
  std::unordered_map<WindowHandle, Window> m_own;
  std::deque<MSG> m_queue;
  bool m_quits = false;
  int m_exitCode = 0;
  std::list<Task> m_tasks;
  int m_nextTask = 1;
};

}  // namespace quillet
