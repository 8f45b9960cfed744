#include "platform/portable/portable_messages.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <utility>
#include <vector>

namespace quillet {
namespace {

constexpr std::uint32_t kQuitMessage = 0x0012;

// Milliseconds of a clock that wraps, as message times do.
std::uint32_t Now() {
  using std::chrono::duration_cast;
  using std::chrono::milliseconds;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(duration_cast<milliseconds>(now).count());
}

}  // namespace

PortableMessages::PortableMessages(std::shared_ptr<WindowTable> windows)
    : m_windows(std::move(windows)) {}

PortableMessages::~PortableMessages() {
  for (const auto& [handle, window] : m_own) m_windows->Destroy(handle);
}

WindowHandle PortableMessages::CreateWindowExA(const char*, const char*, Long, Long, Long, Long) {
  return AddWindow({});
}

WindowHandle PortableMessages::CreateOwnedWindow(WindowHandle owner, Procedure procedure) {
  if (!IsWindow(owner)) return WindowHandle::None;
  return AddWindow({owner, std::move(procedure)});
}

WindowHandle PortableMessages::AddWindow(Window window) try {
  const WindowHandle handle = m_windows->Create();
  m_own.emplace(handle, std::move(window));
  return handle;
} catch (const std::bad_alloc&) {
  return WindowHandle::None;
}

bool PortableMessages::DestroyWindow(WindowHandle window) {
  if (m_own.erase(window) == 0) return false;
  m_windows->Destroy(window);
  std::erase_if(m_queue, [&](const MSG& message) { return message.hwnd == window; });
  std::vector<WindowHandle> owned;
  for (const auto& [handle, other] : m_own)
    if (other.owner == window) owned.push_back(handle);
  for (const WindowHandle handle : owned) DestroyWindow(handle);
  return true;
}

int PortableMessages::GetMessageA(MSG& message) {
  while (IsEmpty())
    if (!RunIdleTasks()) return -1;
  if (!m_queue.empty()) {
    message = m_queue.front();
    m_queue.pop_front();
    return 1;
  }
  m_quits = false;
  message = {};
  message.message = kQuitMessage;
  message.wParam = static_cast<std::uintptr_t>(m_exitCode);
  message.time = Now();
  return 0;
}

// True as soon as there is a message.
bool PortableMessages::RunIdleTasks() {
  std::vector<int> ids;
  for (const Task& task : m_tasks) ids.push_back(task.id);
  for (const int id : ids) {
    const auto task = std::ranges::find(m_tasks, id, &Task::id);
    if (task == m_tasks.end()) continue;
    const IdleTask run = task->run;  // it may remove itself
    run();
    if (!IsEmpty()) return true;
  }
  return false;
}

void PortableMessages::TranslateMessage(const MSG&) {}

void PortableMessages::DispatchMessageA(const MSG& message) {
  const auto found = m_own.find(message.hwnd);
  if (found == m_own.end() || !found->second.procedure) return;
  const Procedure procedure = found->second.procedure;  // it may destroy its window
  procedure(message);
}

bool PortableMessages::PostMessageA(WindowHandle window, std::uint32_t message,
                                    std::uintptr_t wParam, std::intptr_t lParam) {
  if (window != WindowHandle::None && !IsWindow(window)) return false;
  m_queue.push_back({window, message, wParam, lParam, Now(), {}});
  return true;
}

void PortableMessages::PostQuitMessage(int exitCode) {
  m_quits = true;
  m_exitCode = exitCode;
}

int PortableMessages::AddIdleTask(IdleTask task) {
  m_tasks.push_back({m_nextTask, std::move(task)});
  return m_nextTask++;
}

void PortableMessages::RemoveIdleTask(int id) {
  m_tasks.remove_if([&](const Task& task) { return task.id == id; });
}

bool PortableMessages::RunWaiting() {
  MSG message;
  int taken;
  while ((taken = GetMessageA(message)) > 0) DispatchMessageA(message);
  if (taken == 0) PostQuitMessage(static_cast<int>(message.wParam));
  return taken < 0;
}

}  // namespace quillet
