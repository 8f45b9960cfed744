#pragma once

#include <cstdint>
#include <string>

#include "platform/contracts/handles.h"

namespace quillet {

inline constexpr std::uint32_t kOverwritePrompt = 0x2;
inline constexpr std::uint32_t kHideReadOnly = 0x4;
inline constexpr std::uint32_t kFileMustExist = 0x1000;
inline constexpr std::uint32_t kCreatePrompt = 0x2000;

// What a file dialog is asked, as far as it varies. Text is UTF-8.
struct OPENFILENAME_RECORD {
  WindowHandle hwndOwner = WindowHandle::None;
  // Pairs of description and pattern, every item ended by a NUL.
  std::string lpstrFilter;
  // The file buffer: on success the chosen full path and a NUL, behind which anything may stand.
  std::string lpstrFile;
  std::string lpstrFileTitle;
  std::string lpstrInitialDir;
  std::string lpstrTitle;
  std::uint32_t Flags = 0;
};

// The standard file dialogs. Each is modal and runs the thread's messages.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  // False when the user cancelled, or the path does not fit the file buffer.
  virtual bool GetSaveFileNameA(OPENFILENAME_RECORD& record) = 0;
  virtual bool GetOpenFileNameA(OPENFILENAME_RECORD& record) = 0;
};

}  // namespace quillet
