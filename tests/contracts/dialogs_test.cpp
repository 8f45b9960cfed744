#include "platform/contracts/dialogs.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/contracts/platform_traits.h"
#include "tests/support/file_dialogs.h"

namespace quillet {
namespace {

class DialogsContract : public FileDialogs {};

TEST_F(DialogsContract, WithoutAWordTheUserCancels) {
  EXPECT_EQ(Save(0), "");
  m_window->WillCancelFileDialog();
  m_window->WillTypeFileName("there", true);
  EXPECT_EQ(Open(0), "");
  EXPECT_EQ(Open(0), m_there);
}

TEST_F(DialogsContract, AsksAndRefusesAsTheFlagsSay) {
  const struct {
    bool saves;
    std::uint32_t flags;
    const char* typed;
    bool closesOnYes, closesOnNo;
  } cases[] = {
      {true, 0, "there", true, true},
      {true, kOverwritePrompt, "there", true, false},
      {true, kOverwritePrompt, "missing", true, true},
      {true, kCreatePrompt, "there", true, true},
      {true, kCreatePrompt, "missing", true, !TraitsOfPlatform().savesAskBeforeCreating},
      {true, kCreatePrompt, "none/missing", false, false},
      {false, 0, "missing", true, true},
      {false, kOverwritePrompt, "there", true, true},
      {false, kCreatePrompt, "missing", true, false},
      {false, kFileMustExist, "there", true, true},
      {false, kFileMustExist, "missing", false, false},
      {false, kFileMustExist, "none/missing", false, false},
  };
  for (const auto& asked : cases) {
    for (const bool yes : {true, false}) {
      m_window->WillTypeFileName(asked.typed, yes);
      const bool closes = yes ? asked.closesOnYes : asked.closesOnNo;
      EXPECT_EQ(Show(Record(asked.flags), asked.saves), closes ? m_folder.Path(asked.typed) : "")
          << (asked.saves ? "save " : "open ") << asked.flags << asked.typed << yes;
    }
  }
}

TEST_F(DialogsContract, ARefusedNameLeavesTheDialogOpenForTheNext) {
  m_window->WillTypeFileName("missing", true);
  m_window->WillTypeFileName("there", true);
  EXPECT_EQ(Open(kFileMustExist), m_there);
  m_window->WillTypeFileName("there", false);
  m_window->WillTypeFileName("missing", true);
  EXPECT_EQ(Save(kOverwritePrompt | kCreatePrompt), m_missing);
}

TEST_F(DialogsContract, AWholePathOrAFolderMayBeTyped) {
  std::filesystem::create_directory(m_folder.Path("inner"));
  m_window->WillTypeFileName("inner", true);
  m_window->WillTypeFileName("x", true);
  EXPECT_EQ(Save(0), m_folder.Path("inner") + TraitsOfPlatform().folderSeparator + "x");
  OPENFILENAME_RECORD record = Record(0);
  record.lpstrInitialDir = m_folder.Path("none");
  m_window->WillTypeFileName(m_missing, true);
  EXPECT_EQ(Show(record, true), m_missing);
}

TEST_F(DialogsContract, ThePathEndsInANulAndFitsTheBuffer) {
  OPENFILENAME_RECORD record = Record(0);
  m_window->WillTypeFileName("there", true);
  ASSERT_TRUE(m_dialogs.GetOpenFileNameA(record));
  EXPECT_TRUE(record.lpstrFile.starts_with(m_there + '\0'));
  EXPECT_LE(record.lpstrFile.size(), 254u);

  const std::string folder = m_folder.Path("");
  const std::string longest(254 - folder.size(), 'x');
  m_window->WillTypeFileName(longest, true);
  EXPECT_EQ(Save(0), folder + longest);
  m_window->WillTypeFileName(longest + "x", true);
  EXPECT_EQ(Save(0), "");
}

TEST_F(DialogsContract, AnOwnerIsNotNeeded) {
  OPENFILENAME_RECORD record = Record(0);
  record.hwndOwner = WindowHandle::None;
  m_window->WillTypeFileName("there", true);
  EXPECT_EQ(Show(record, false), m_there);
}

TEST_F(DialogsContract, FiltersAndTitlesAreOfAnyLength) {
  OPENFILENAME_RECORD record = Record(0);
  for (const std::string& filter :
       {std::string(), std::string("\0", 1), std::string("one item\0", 9),
        std::string("Images\0*.jpg;*.png\0All\0*\0", 25),
        std::string(3000, 'f') + '\0' + "*" + '\0'}) {
    record.lpstrFilter = filter;
    record.lpstrTitle = std::string(filter.size(), 't');
    m_window->WillTypeFileName("there", true);
    EXPECT_EQ(Show(record, false), m_there) << filter.size();
  }
}

}  // namespace
}  // namespace quillet
