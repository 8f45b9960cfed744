#include "embed/portable_stage.h"
#include "platform/portable/portable_messages.h"
#include "tests/support/thread_queue.h"

namespace quillet {
namespace {

class PortableListener : public ThreadQueue::Listener {
 public:
  PortableListener(PortableMessages& queue, ThreadQueue::Heard heard)
      : m_queue(queue),
        m_owner(queue.CreateWindowExA("", "", 0, 0, 0, 0)),
        m_window(queue.CreateOwnedWindow(m_owner, [heard](const MSG& m) { heard(m.message); })) {}
  ~PortableListener() override { m_queue.DestroyWindow(m_owner); }
  WindowHandle Window() const override { return m_window; }

 private:
  PortableMessages& m_queue;
  WindowHandle m_owner;
  WindowHandle m_window;
};

class PortableQueue : public ThreadQueue {
 public:
  explicit PortableQueue(PortableMessages& queue) : m_queue(queue) {}

  void Post(WindowHandle window, std::uint32_t message) override {
    m_queue.PostMessageA(window, message, 0, 0);
  }
  void PostQuit(int exitCode) override { m_queue.PostQuitMessage(exitCode); }
  bool IsWindow(WindowHandle window) const override { return m_queue.IsWindow(window); }
  std::unique_ptr<Listener> Listen(Heard heard) override {
    return std::make_unique<PortableListener>(m_queue, std::move(heard));
  }
  int Drain() override {
    int count = 0;
    for (MSG message; m_queue.GetMessageA(message) >= 0;) ++count;
    return count;
  }

 private:
  PortableMessages& m_queue;
};

class Passing : public SourceManager {
 public:
  explicit Passing(SourceManager& manager) : m_manager(manager) {}

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override {
    return m_manager.DSM_Entry(pOrigin, pDest, group, argumentType, message, pData);
  }
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override {
    return m_manager.AnsiText(text, maxBytes);
  }

 private:
  SourceManager& m_manager;
};

}  // namespace

std::unique_ptr<ThreadQueue> QueueOf(Stage& stage) {
  return std::make_unique<PortableQueue>(static_cast<PortableStage&>(stage).Layer().Queue());
}

std::unique_ptr<SourceManager> AsPrograms(SourceManager& manager) {
  return std::make_unique<Passing>(manager);
}

}  // namespace quillet
