#include "platform/portable/portable_dialogs.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "embed/portable_stage.h"
#include "platform/portable/portable_messages.h"
#include "tests/support/file_dialogs.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

class PortableDialogsTest : public FileDialogs {
 protected:
  PortableMessages& m_queue = static_cast<PortableStage&>(*m_stage).Layer().Queue();
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
  m_queue.PostMessageA(WindowHandle::None, 0x0400, 0, 0);
  m_window->WillTypeFileName("there", true);
  EXPECT_EQ(Open(0), m_there);
  MSG message;
  EXPECT_EQ(m_queue.GetMessageA(message), -1) << "nothing is left";
  m_queue.PostQuitMessage(5);
  m_window->WillTypeFileName("there", true);
  EXPECT_EQ(Open(0), "");
  EXPECT_EQ(m_queue.GetMessageA(message), 0);
  EXPECT_EQ(message.wParam, 5u);
}

}  // namespace
}  // namespace quillet
