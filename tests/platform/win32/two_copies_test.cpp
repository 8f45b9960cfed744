#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/win32/win32_platform.h"
#include "tests/windows/program_folder.h"

namespace quillet {
namespace {

class LoadedCopy {
 public:
  LoadedCopy() : m_library(::LoadLibraryW((ProgramFolder() + L"second_copy.dll").c_str())) {}
  LoadedCopy(const LoadedCopy&) = delete;
  LoadedCopy& operator=(const LoadedCopy&) = delete;
  ~LoadedCopy() {
    if (m_library) ::FreeLibrary(m_library);
  }

  template <typename Function>
  Function* Export(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(m_library, name)));
  }

 private:
  HMODULE m_library;
};

// A host's window with a control of this copy and one of the other in it.
class HostOfTwo {
 public:
  explicit HostOfTwo(const char* toolTip) {
    ::ShowWindow(m_window, SW_SHOWNOACTIVATE);
    m_own->Site(m_window, {110, 0, 214, 84});
    const HWND others =
        m_copy->Export<HWND WINAPI(HWND, const char*)>("ShowControl")(m_window, toolTip);
    Add(others);
    ::EnumChildWindows(others, &AddChild, reinterpret_cast<LPARAM>(this));
  }
  HostOfTwo(const HostOfTwo&) = delete;
  HostOfTwo& operator=(const HostOfTwo&) = delete;
  ~HostOfTwo() { ::DestroyWindow(m_window); }

  void LetGoHere() {
    LetGo()(nullptr);
    Unload();
  }
  // The system does not destroy windows for another thread than theirs.
  void LetGoElsewhere() {
    const HANDLE thread = ::CreateThread(nullptr, 0, LetGo(), nullptr, 0, nullptr);
    ASSERT_EQ(::WaitForSingleObject(thread, 10'000), WAIT_OBJECT_0);
    ::CloseHandle(thread);
    Unload();
  }

  const std::vector<HWND>& OthersWindows() const { return m_othersWindows; }
  Win32Surface& Own() { return *m_own; }

 private:
  static BOOL CALLBACK AddChild(HWND child, LPARAM self) {
    reinterpret_cast<HostOfTwo*>(self)->Add(child);
    return TRUE;
  }
  void Add(HWND window) { m_othersWindows.push_back(window); }
  LPTHREAD_START_ROUTINE LetGo() const {
    return m_copy->Export<DWORD WINAPI(void*)>("LetGoOfSurface");
  }
  void Unload() {
    m_copy->Export<void WINAPI()>("LetGoOfPlatform")();
    m_copy.reset();
  }

  HWND m_window = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 300, 200, nullptr, nullptr,
                                    nullptr, nullptr);
  Win32Platform m_platform;
  std::shared_ptr<Win32Surface> m_own = m_platform.CreateSurface(100, 80);
  std::unique_ptr<LoadedCopy> m_copy = std::make_unique<LoadedCopy>();
  std::vector<HWND> m_othersWindows;
};

bool OtherIsLoaded() {
  return ::GetModuleHandleW(L"second_copy.dll") != nullptr;
}

void ExpectAliveWithoutObjects(const std::vector<HWND>& windows) {
  for (const HWND window : windows) {
    ASSERT_TRUE(::IsWindow(window));
    // Without the left button, with which a system bar goes into a loop of its own.
    for (const int message : {WM_SIZE, WM_PAINT, WM_RBUTTONDOWN, WM_KEYDOWN, WM_SETFOCUS,
                              WM_SETCURSOR, WM_HSCROLL, OCM_HSCROLL, WM_MOUSEMOVE})
      ::SendMessageW(window, static_cast<UINT>(message), 0, 0);
    EXPECT_TRUE(::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW));
  }
}

TEST(TwoCopies, OneGoesAndTheOtherStays) {
  HostOfTwo host("tip");
  ASSERT_EQ(host.OthersWindows().size(), 4u);
  host.LetGoHere();
  EXPECT_FALSE(OtherIsLoaded());
  for (const HWND window : host.OthersWindows()) EXPECT_FALSE(::IsWindow(window));
  host.Own().HScroll1().PutValue(7);
  EXPECT_EQ(host.Own().HScroll1().Value(), 7);
  EXPECT_TRUE(::IsWindowVisible(host.Own().picTwain().Window()));
}

TEST(TwoCopies, WindowsLeftBehindDoNotCallIntoTheLibraryThatIsGone) {
  // Loaded anew, the library may find its classes where it left them.
  for (int round = 0; round < 3; ++round) {
    HostOfTwo host("");
    host.LetGoElsewhere();
    EXPECT_FALSE(OtherIsLoaded());
    ExpectAliveWithoutObjects(host.OthersWindows());
  }
}

// The last one: a library that is to stay stays for all tests.
TEST(TwoCopies, TheLibraryStaysForWindowsLeftBehindThatOthersHaveSubclassed) {
  HostOfTwo host("a tip, whose system class puts a procedure of its own over the box's");
  host.LetGoElsewhere();
  EXPECT_TRUE(OtherIsLoaded());
  ExpectAliveWithoutObjects(host.OthersWindows());
}

}  // namespace
}  // namespace quillet
