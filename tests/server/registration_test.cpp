#include "server/registration.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/server/container.h"
#include "tests/server/control_library.h"

namespace quillet {
namespace {

// Every key and value below a key: its path, with what it says.
using Content = std::map<std::wstring, std::wstring>;

void Collect(HKEY key, const std::wstring& path, Content& content) {
  content[path] = L"";
  wchar_t name[512];
  BYTE data[2048];
  for (DWORD i = 0;; ++i) {
    DWORD length = 512, size = sizeof data, type = 0;
    if (::RegEnumValueW(key, i, name, &length, nullptr, &type, data, &size) != ERROR_SUCCESS) break;
    content[path + L"@" + name] = std::wstring(reinterpret_cast<wchar_t*>(data), size / 2);
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = 512;
    if (::RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      break;
    HKEY child = nullptr;
    if (::RegOpenKeyExW(key, name, 0, KEY_READ, &child) != ERROR_SUCCESS) continue;
    Collect(child, path + L"\\" + name, content);
    ::RegCloseKey(child);
  }
}

Content Classes() {
  Content content;
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    HKEY classes = nullptr;
    if (::RegOpenKeyExW(root, L"Software\\Classes", 0, KEY_READ, &classes) != ERROR_SUCCESS)
      continue;
    Collect(classes, root == HKEY_LOCAL_MACHINE ? L"all" : L"user", content);
    ::RegCloseKey(classes);
  }
  return content;
}

class Registered : public testing::Test {
 protected:
  Registered() { library.Register(); }
  ~Registered() override { library.Unregister(); }

  const ControlLibrary library;
};

TEST(Registration, InAndOutLeavesTheRegistryAsItWas) {
  const ControlLibrary library;
  const Content before = Classes();
  ASSERT_EQ(library.Register(), S_OK);
  EXPECT_GT(Classes().size(), before.size() + 25);
  ASSERT_EQ(library.Register(), S_OK);
  ASSERT_EQ(library.Unregister(), S_OK);
  EXPECT_EQ(Classes(), before);
  EXPECT_EQ(library.Unregister(), S_OK);
}

TEST_F(Registered, HostsMakeTheControlByItsNames) {
  for (const wchar_t* name : {L"Quillet.Twain", L"Quillet.Twain.2"}) {
    ::CLSID id{};
    ASSERT_EQ(::CLSIDFromProgID(name, &id), S_OK);
    EXPECT_EQ(id, kControlClass);
    ComPtr<::_Twain> control;
    EXPECT_EQ(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, kTwainInterface,
                                 control.ReceiveVoid()),
              S_OK);
  }
  LPOLESTR name = nullptr;
  ASSERT_EQ(::ProgIDFromCLSID(kControlClass, &name), S_OK);
  EXPECT_STREQ(name, L"Quillet.Twain.2");
  ::CoTaskMemFree(name);
}

TEST_F(Registered, TheTypeLibraryAndTheControlsMarksAreFound) {
  ComPtr<ITypeLib> typeLibrary;
  EXPECT_EQ(::LoadRegTypeLib(kLibraryId, 2, 0, 0x409, typeLibrary.Receive()), S_OK);
  DWORD status = 0;
  EXPECT_EQ(::OleRegGetMiscStatus(kControlClass, DVASPECT_CONTENT, &status), S_OK);
  EXPECT_EQ(status, kMiscStatus);
  const Content classes = Classes();
  const std::wstring key = L"all\\CLSID\\{0D034ABE-7E78-4411-B28B-D9B46A7CE9BF}";
  EXPECT_TRUE(classes.contains(key + L"\\Control"));
  EXPECT_TRUE(
      classes.contains(key + L"\\Implemented Categories\\{40FC6ED4-2438-11CF-A3DB-080036F12502}"));
}

TEST_F(Registered, FormDesignersFindItsBitmap) {
  const Content classes = Classes();
  const auto entry =
      classes.find(L"all\\CLSID\\{0D034ABE-7E78-4411-B28B-D9B46A7CE9BF}\\ToolboxBitmap32@");
  ASSERT_NE(entry, classes.end());
  std::wstring named = entry->second;
  named.resize(named.find(L'\0'));
  const std::size_t comma = named.rfind(L',');
  const HMODULE file =
      ::LoadLibraryExW(named.substr(0, comma).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  const HANDLE bitmap = ::LoadImageW(file, MAKEINTRESOURCEW(std::stoi(named.substr(comma + 1))),
                                     IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
  ::BITMAP shown{};
  EXPECT_EQ(::GetObjectW(bitmap, sizeof shown, &shown), static_cast<int>(sizeof shown));
  EXPECT_EQ(shown.bmWidth, 16);
  EXPECT_EQ(shown.bmHeight, 16);
  ::DeleteObject(bitmap);
  ::FreeLibrary(file);
}

TEST_F(Registered, TheSystemsOwnContainerShowsIt) {
  using Initialise = BOOL(WINAPI*)();
  using GetControl = HRESULT(WINAPI*)(HWND, ::IUnknown**);
  const struct {
    const wchar_t* file;
    const wchar_t* windowClass;
  } kContainers[] = {{L"atl.dll", L"AtlAxWin"}, {L"atl100.dll", L"AtlAxWin100"}};
  for (const auto& container : kContainers) {
    const HMODULE module = ::LoadLibraryW(container.file);
    ASSERT_NE(module, nullptr) << container.file;
    const auto entry = [&](const char* name) {
      return reinterpret_cast<void*>(::GetProcAddress(module, name));
    };
    ASSERT_TRUE(reinterpret_cast<Initialise>(entry("AtlAxWinInit"))());
    const HWND window =
        ::CreateWindowExW(0, container.windowClass, L"Quillet.Twain", WS_POPUP | WS_VISIBLE, 0, 0,
                          392, 300, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    {
      ComPtr<::IUnknown> object;
      ASSERT_EQ(reinterpret_cast<GetControl>(entry("AtlAxGetControl"))(window, object.Receive()),
                S_OK);
      const auto control = As<::_Twain>(object);
      EXPECT_EQ(control->putref_Picture(BlackPicture(500, 400).get()), S_OK);
      LONG box = 0;
      control->get_hwnd(&box);
      RECT inside{};
      ::GetClientRect(static_cast<HWND>(LongToHandle(box)), &inside);
      // The whole place but the border and the two bars.
      EXPECT_EQ(inside.right, 392 - 4 - ::GetSystemMetrics(SM_CXVSCROLL));
      EXPECT_EQ(inside.bottom, 300 - 4 - ::GetSystemMetrics(SM_CYHSCROLL));
      EXPECT_TRUE(::IsWindowVisible(static_cast<HWND>(LongToHandle(box))));
    }
    ::DestroyWindow(window);
    EXPECT_EQ(library.CanUnload(), S_OK) << container.file;
    ::FreeLibrary(module);
  }
}

// A root of the test's own.
class ScratchKey {
 public:
  explicit ScratchKey(REGSAM rights) {
    ::RegCreateKeyExW(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_all,
                      nullptr);
    ::RegOpenKeyExW(HKEY_CURRENT_USER, kPath, 0, rights, &m_key);
  }
  ScratchKey(const ScratchKey&) = delete;
  ScratchKey& operator=(const ScratchKey&) = delete;
  ~ScratchKey() {
    ::RegCloseKey(m_key);
    ::RegDeleteTreeW(m_all, nullptr);
    ::RegCloseKey(m_all);
    ::RegDeleteKeyW(HKEY_CURRENT_USER, kPath);
  }

  HKEY get() const { return m_key; }
  Content Keys() const {
    Content content;
    Collect(m_all, L"", content);
    return content;
  }

 private:
  static constexpr const wchar_t* kPath = L"Software\\QuilletRegistrationTest";
  HKEY m_all = nullptr;
  HKEY m_key = nullptr;
};

TEST(Registration, WhereAllUsersMayNotItIsForThisOne) {
  const ScratchKey scratch(KEY_ALL_ACCESS);
  // What does not exist cannot be written below.
  const RegistrationRoot roots[] = {{nullptr, L"all"}, {scratch.get(), L"user"}};
  EXPECT_EQ(Register(roots, L"C:\\folder\\quillet.ocx"), S_OK);
  const Content keys = scratch.Keys();
  const auto file =
      keys.find(L"\\user\\CLSID\\{0D034ABE-7E78-4411-B28B-D9B46A7CE9BF}\\InprocServer32@");
  ASSERT_NE(file, keys.end());
  EXPECT_STREQ(file->second.c_str(), L"C:\\folder\\quillet.ocx");
  const RegistrationRoot none[] = {{nullptr, L"all"}};
  EXPECT_EQ(Register(none, L"C:\\folder\\quillet.ocx"), SELFREG_E_CLASS);
}

TEST(Registration, TheOtherWidthsControlKeepsWhatItNeeds) {
  const ScratchKey scratch(KEY_ALL_ACCESS);
  const RegistrationRoot roots[] = {{scratch.get(), L"user"}};
  ASSERT_EQ(Register(roots, L"C:\\folder\\quillet.ocx"), S_OK);
  const std::wstring library = L"user\\TypeLib\\{C027A250-509B-48BB-A98E-2C3B27905E82}\\2.0\\409\\";
  HKEY other = nullptr;
  const std::wstring width = library + (sizeof(void*) == 8 ? L"win32" : L"win64");
  ::RegCreateKeyExW(scratch.get(), width.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &other,
                    nullptr);
  ::RegCloseKey(other);
  EXPECT_EQ(Unregister(roots), S_OK);
  const Content keys = scratch.Keys();
  EXPECT_TRUE(keys.contains(L"\\" + width));
  EXPECT_TRUE(keys.contains(L"\\user\\Quillet.Twain\\CLSID"));
  EXPECT_FALSE(keys.contains(L"\\user\\CLSID\\{0D034ABE-7E78-4411-B28B-D9B46A7CE9BF}"));
}

}  // namespace
}  // namespace quillet
