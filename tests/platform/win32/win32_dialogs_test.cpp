#include <gtest/gtest.h>

#include <filesystem>

#include "host/text.h"
#include "platform/win32/sdk.h"
#include "tests/support/hosted_control.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

bool CodePageHas(wchar_t character) {
  char bytes[8];
  BOOL replaced = FALSE;
  const UINT page = ::GetACP();
  return ::WideCharToMultiByte(page, 0, &character, 1, bytes, sizeof bytes, nullptr,
                               page == CP_UTF8 ? nullptr : &replaced) > 0 &&
         !replaced;
}

// The dialogs talk in the system's code page.
TEST(Win32Dialogs, ANameInTheCodePageIsSavedAndOneBeyondItTouchesNoFile) {
  const struct {
    wchar_t character;
    std::string name;
  } cases[] = {{L'\u00F6', "sch\u00F6n.png"}, {L'\u540D', "\u540D.png"}};
  for (const auto& [character, name] : cases) {
    const TemporaryFolder folder;
    HostedControl host(100, 80);
    host.Assign(30, 20);
    host.window->WillTypeFileName(name, true);
    host.Call("ShowSave", Omitted{}, Omitted{}, folder.Path(""));
    const bool saved = std::filesystem::exists(PathOf(folder.Path(name)));
    EXPECT_EQ(saved, CodePageHas(character)) << name;
    EXPECT_EQ(std::filesystem::is_empty(PathOf(folder.Path(""))), !saved) << name;
    if (saved) {
      EXPECT_EQ(VariantToString(host.Get("filename")), folder.Path(name));
    }
  }
}

}  // namespace
}  // namespace quillet
