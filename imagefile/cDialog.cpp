#include "imagefile/cDialog.h"

#include <algorithm>

namespace quillet {
namespace {

constexpr std::size_t kBufferCharacters = 254;

void ConvertFilter(std::string& filter) {
  if (filter.empty() || filter.back() != '|') filter += '|';
  std::replace(filter.begin(), filter.end(), '|', '\0');
}

OPENFILENAME_RECORD Record(WindowHandle owner, std::string& filter, const std::string& title,
                           const std::string& initialDirectory, std::uint32_t flags) {
  ConvertFilter(filter);
  OPENFILENAME_RECORD record;
  record.hwndOwner = owner;
  record.lpstrFilter = filter;
  record.lpstrFile.assign(kBufferCharacters, ' ');
  record.lpstrFileTitle.assign(kBufferCharacters, ' ');
  record.lpstrInitialDir = initialDirectory;
  record.lpstrTitle = title;
  record.Flags = flags;
  return record;
}

// The path in a file buffer: its terminator and the spaces around it removed.
std::string PathIn(std::string buffer) {
  const std::size_t first = buffer.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  buffer = buffer.substr(first, buffer.find_last_not_of(' ') - first + 1);
  std::erase(buffer, '\0');
  return buffer;
}

}  // namespace

std::string cDialog::ShowSaveDialog(WindowHandle owner, std::string& filter,
                                    const std::string& title, const std::string& initialDirectory) {
  OPENFILENAME_RECORD record = Record(owner, filter, title, initialDirectory,
                                      kOverwritePrompt | kHideReadOnly | kCreatePrompt);
  return m_platform.dialogs.GetSaveFileNameA(record) ? PathIn(record.lpstrFile) : std::string();
}

std::string cDialog::ShowOpenDialog(WindowHandle owner, std::string& filter,
                                    const std::string& title, const std::string& initialDirectory) {
  OPENFILENAME_RECORD record =
      Record(owner, filter, title, initialDirectory, kHideReadOnly | kFileMustExist);
  return m_platform.dialogs.GetOpenFileNameA(record) ? PathIn(record.lpstrFile) : std::string();
}

}  // namespace quillet
