#pragma once

#include <gtest/gtest.h>

#include <string>

#include "embed/stage.h"
#include "tests/support/temporary_folder.h"

namespace quillet {

// The platform's file dialogs, shown by a window whose user answers them, in a folder with one
// file.
class FileDialogs : public testing::Test {
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

  const std::unique_ptr<Stage> m_stage = MakeStage();
  Dialogs& m_dialogs = m_stage->Contracts().dialogs;
  std::unique_ptr<ControlWindow> m_window = m_stage->OpenWindow(100, 100);
  TemporaryFolder m_folder;
  const std::string m_there = m_folder.Write("there", {});
  const std::string m_missing = m_folder.Path("missing");
};

}  // namespace quillet
