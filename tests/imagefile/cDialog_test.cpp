#include "imagefile/cDialog.h"

#include <gtest/gtest.h>

#include <optional>

#include "embed/stage.h"
#include "tests/support/platform_with.h"

namespace quillet {
namespace {

// A dialog that shows what it was asked and leaves a text in the file buffer.
class ScriptedDialogs : public Dialogs {
 public:
  bool GetSaveFileNameA(OPENFILENAME_RECORD& record) override { return Show("save", record); }
  bool GetOpenFileNameA(OPENFILENAME_RECORD& record) override { return Show("open", record); }

  std::optional<std::string> buffer;  // none: cancelled
  std::string form;
  OPENFILENAME_RECORD asked;

 private:
  bool Show(const char* shown, OPENFILENAME_RECORD& record) {
    form = shown;
    asked = record;
    if (buffer) record.lpstrFile = *buffer;
    return buffer.has_value();
  }
};

class FileDialog : public testing::Test {
 protected:
  const std::unique_ptr<Stage> m_stage = MakeStage();
  ScriptedDialogs m_dialogs;
  Platform m_contracts = PlatformWith(m_dialogs, m_stage->Contracts());
  cDialog m_dialog{m_contracts};
  std::string m_filter;
};

TEST_F(FileDialog, HandsOnWhatItIsGivenAndAsksForItsOwnFlags) {
  m_filter = "Images|*.jpg;*.png";
  const std::string converted("Images\0*.jpg;*.png\0", 19);
  const WindowHandle owner{42};
  EXPECT_EQ(m_dialog.ShowSaveDialog(owner, m_filter, "Title", "/folder"), "");
  EXPECT_EQ(m_filter, converted);
  EXPECT_EQ(m_dialogs.form, "save");
  EXPECT_EQ(m_dialogs.asked.hwndOwner, owner);
  EXPECT_EQ(m_dialogs.asked.lpstrFilter, converted);
  EXPECT_EQ(m_dialogs.asked.lpstrFile, std::string(254, ' '));
  EXPECT_EQ(m_dialogs.asked.lpstrFileTitle, std::string(254, ' '));
  EXPECT_EQ(m_dialogs.asked.lpstrTitle, "Title");
  EXPECT_EQ(m_dialogs.asked.lpstrInitialDir, "/folder");
  EXPECT_EQ(m_dialogs.asked.Flags, 0x2006u);
  m_dialog.ShowOpenDialog(owner, m_filter, "", "");
  EXPECT_EQ(m_dialogs.form, "open");
  EXPECT_EQ(m_dialogs.asked.Flags, 0x1004u);
}

TEST_F(FileDialog, ConvertsEveryFilter) {
  const struct {
    std::string filter, converted;
  } cases[] = {
      {"", std::string("\0", 1)},       {"|", std::string("\0", 1)},
      {"a", std::string("a\0", 2)},     {"a|b|", std::string("a\0b\0", 4)},
      {"a||", std::string("a\0\0", 3)}, {std::string("a\0", 2), std::string("a\0\0", 3)},
  };
  for (const auto& [filter, converted] : cases) {
    m_filter = filter;
    m_dialog.ShowOpenDialog(WindowHandle::None, m_filter, "", "");
    EXPECT_EQ(m_filter, converted) << filter;
  }
}

TEST_F(FileDialog, ReadsThePathOutOfTheBuffer) {
  const std::string spaces(20, ' ');
  const struct {
    std::string buffer, path;
  } cases[] = {
      {std::string("/a b/c.png\0", 11) + spaces, "/a b/c.png"},
      {std::string(254, 'x'), std::string(254, 'x')},
      {"  /a" + spaces, "/a"},
      {spaces, ""},
      {"", ""},
  };
  for (const auto& [buffer, path] : cases) {
    m_dialogs.buffer = buffer;
    EXPECT_EQ(m_dialog.ShowSaveDialog(WindowHandle::None, m_filter, "", ""), path);
  }
}

}  // namespace
}  // namespace quillet
