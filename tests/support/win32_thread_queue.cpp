#include <stdexcept>
#include <utility>

#include "platform/win32/win32_source_manager.h"
#include "platform/win32/window_classes.h"
#include "tests/support/thread_queue.h"
#include "tests/windows/program_folder.h"
#include "tests/windows/test_manager.h"

namespace quillet {
namespace {

HWND Native(WindowHandle window) {
  return reinterpret_cast<HWND>(window);
}

class Win32Listener : public ThreadQueue::Listener {
 public:
  explicit Win32Listener(ThreadQueue::Heard heard)
      : m_heard(std::move(heard)), m_class(L"Quillet.Listener", 0, nullptr) {
    m_window = ::CreateWindowExW(0, m_class.Name(), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                 ThisModule(), nullptr);
    ::SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    ::SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
  }
  ~Win32Listener() override { ::DestroyWindow(m_window); }
  WindowHandle Window() const override {
    return WindowHandle{reinterpret_cast<std::uintptr_t>(m_window)};
  }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message >= ThreadQueue::kFirstHeard)
      reinterpret_cast<Win32Listener*>(::GetWindowLongPtrW(window, GWLP_USERDATA))
          ->m_heard(message);
    return ::DefWindowProcW(window, message, wParam, lParam);
  }

  ThreadQueue::Heard m_heard;
  WindowClass m_class;
  HWND m_window;
};

class Win32Queue : public ThreadQueue {
 public:
  void Post(WindowHandle window, std::uint32_t message) override {
    ::PostMessageW(Native(window), message, 0, 0);
  }
  void PostQuit(int exitCode) override { ::PostQuitMessage(exitCode); }
  bool IsWindow(WindowHandle window) const override { return ::IsWindow(Native(window)) != FALSE; }
  std::unique_ptr<Listener> Listen(Heard heard) override {
    return std::make_unique<Win32Listener>(std::move(heard));
  }
  int Drain() override {
    int count = 0;
    for (::MSG message; ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) ++count;
    return count;
  }
};

// The library has one road back into the program, to the manager that was made last.
class LibraryManager : public SourceManager {
 public:
  explicit LibraryManager(SourceManager& manager) : m_previous(std::exchange(Behind(), &manager)) {
    AnswerBy(&Entry);
  }
  ~LibraryManager() override {
    Behind() = m_previous;
    if (!m_previous) AnswerBy(nullptr);
  }

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override {
    return m_manager.DSM_Entry(pOrigin, pDest, group, argumentType, message, pData);
  }
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override {
    return m_manager.AnsiText(text, maxBytes);
  }

 private:
  static std::wstring Library() { return ProgramFolder() + L"test_manager.dll"; }
  static SourceManager*& Behind() {
    static SourceManager* behind = nullptr;
    return behind;
  }
  static void AnswerBy(ManagerEntry entry) {
    const HMODULE module = ::LoadLibraryW(Library().c_str());
    if (!module) throw std::runtime_error("the test manager does not load");
    using Setter = void(WINAPI*)(ManagerEntry);
    reinterpret_cast<Setter>(reinterpret_cast<void*>(::GetProcAddress(module, "AnswerBy")))(entry);
  }
  static TW_UINT16 WINAPI Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                                TW_UINT16 argumentType, TW_UINT16 message, void* pData) {
    return Behind()->DSM_Entry(pOrigin, pDest, group, argumentType, message, pData);
  }

  SourceManager* m_previous;
  Win32SourceManager m_manager{{Library()}};
};

}  // namespace

std::unique_ptr<ThreadQueue> QueueOf(Stage&) {
  return std::make_unique<Win32Queue>();
}

std::unique_ptr<SourceManager> AsPrograms(SourceManager& manager) {
  return std::make_unique<LibraryManager>(manager);
}

}  // namespace quillet
