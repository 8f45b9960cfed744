#include "platform/portable/portable_dialogs.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "embed/portable_window.h"
#include "platform/portable/portable_messages.h"
#include "platform/portable/portable_platform.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

class PortableDialogsTest : public testing::Test {
 protected:
  OPENFILENAME_RECORD Record(std::uint32_t flags) const {
    OPENFILENAME_RECORD record;
    record.hwndOwner = m_window->ControlsSurface()->UserControl().hWnd();
    record.lpstrFile.assign(254, ' ');
    record.lpstrFileTitle.assign(254, ' ');
    record.lpstrInitialDir = m_folder.Path("");
    record.Flags = flags;
    return record;
  }
  // The path that the dialog closes with, empty when it is cancelled.
  std::string Show(OPENFILENAME_RECORD record, bool saves) const {
    const std::string before = record.lpstrFile;
    const bool chosen =
        saves ? m_dialogs.GetSaveFileNameA(record) : m_dialogs.GetOpenFileNameA(record);
    if (!chosen) {
      EXPECT_EQ(record.lpstrFile, before);
      return "";
    }
    return record.lpstrFile.substr(0, record.lpstrFile.find('\0'));
  }
  std::string Save(std::uint32_t flags) const { return Show(Record(flags), true); }
  std::string Open(std::uint32_t flags) const { return Show(Record(flags), false); }

  PortablePlatform m_platform;
  Dialogs& m_dialogs = m_platform.Contracts().dialogs;
  std::unique_ptr<ControlWindow> m_window = std::make_unique<PortableWindow>(m_platform, 100, 100);
  TemporaryFolder m_folder;
  const std::string m_there = m_folder.Write("there", {});
  const std::string m_missing = m_folder.Path("missing");
};

TEST_F(PortableDialogsTest, NamesCountFromTheInitialDirectoryOrFromAFolderTyped) {
  fs::create_directory(m_folder.Path("inner"));
  m_window->WillTypeFileName("inner", true);
  m_window->WillTypeFileName("../inner/./x", true);
  EXPECT_EQ(Save(0), m_folder.Path("inner/x"));

  OPENFILENAME_RECORD record = Record(0);
  record.lpstrInitialDir = m_folder.Path("none");
  m_window->WillTypeFileName("x", true);
  EXPECT_EQ(Show(record, true), (fs::current_path() / "x").string());
  m_window->WillTypeFileName(m_missing, true);
  EXPECT_EQ(Show(record, true), m_missing);
}

TEST_F(PortableDialogsTest, TheBufferKeepsWhatStoodBehindThePath) {
  OPENFILENAME_RECORD record = Record(0);
  m_window->WillTypeFileName("there", true);
  ASSERT_TRUE(m_dialogs.GetOpenFileNameA(record));
  std::string expected = m_there + '\0';
  expected.resize(254, ' ');
  EXPECT_EQ(record.lpstrFile, expected);
  EXPECT_EQ(record.lpstrFileTitle.substr(0, 7), std::string("there\0 ", 7));
}

TEST_F(PortableDialogsTest, TheOwnerIsALiveWindowOrNone) {
  OPENFILENAME_RECORD record = Record(0);
  m_window->WillTypeFileName("there", true);
  record.hwndOwner = WindowHandle{0xBAD};
  EXPECT_EQ(Show(record, false), "");
  record.hwndOwner = WindowHandle::None;
  EXPECT_EQ(Show(record, false), m_there);
  m_window->WillTypeFileName("there", true);
  record = Record(0);
  m_window.reset();
  EXPECT_EQ(Show(record, false), "");
}

TEST_F(PortableDialogsTest, MessagesRunMeanwhileAndAQuitIsLeftToTheLoopOutside) {
  PortableMessages& queue = m_platform.Queue();
  queue.PostMessageA(WindowHandle::None, 0x0400, 0, 0);
  m_window->WillTypeFileName("there", true);
  EXPECT_EQ(Open(0), m_there);
  MSG message;
  EXPECT_EQ(queue.GetMessageA(message), -1) << "nothing is left";
  queue.PostQuitMessage(5);
  m_window->WillTypeFileName("there", true);
  EXPECT_EQ(Open(0), "");
  EXPECT_EQ(queue.GetMessageA(message), 0);
  EXPECT_EQ(message.wParam, 5u);
}

}  // namespace
}  // namespace quillet
