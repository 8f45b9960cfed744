#include "platform/portable/portable_dialogs.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "platform/portable/portable_messages.h"
#include "platform/portable/simulated_user.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

bool IsFolder(const fs::path& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

bool Exists(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

fs::path StartFolder(const std::string& initialDirectory) {
  std::error_code failed;
  const fs::path own = fs::current_path(failed);
  const fs::path wanted = own / initialDirectory;
  return !initialDirectory.empty() && IsFolder(wanted) ? wanted : own;
}

// Whether the dialog closes with this path; its questions are answered with `yes`.
bool Accepts(const fs::path& path, std::uint32_t flags, bool saves, bool yes) {
  if (Exists(path)) return !saves || !(flags & kOverwritePrompt) || yes;
  // Both flags ask for a folder that is there.
  if (flags & (kCreatePrompt | kFileMustExist) && !IsFolder(path.parent_path())) return false;
  if (flags & kCreatePrompt) return yes;
  return !(flags & kFileMustExist);
}

// Writes the text and a NUL over the buffer's beginning. The NUL of a text as long as the buffer is
// the buffer's own terminator. False when the text does not fit.
bool Put(std::string& buffer, const std::string& text) {
  if (text.size() > buffer.size()) return false;
  std::ranges::copy(text, buffer.begin());
  if (text.size() < buffer.size()) buffer[text.size()] = '\0';
  return true;
}

}  // namespace

bool PortableDialogs::GetSaveFileNameA(OPENFILENAME_RECORD& record) {
  return Show(record, Form::Save);
}

bool PortableDialogs::GetOpenFileNameA(OPENFILENAME_RECORD& record) {
  return Show(record, Form::Open);
}

bool PortableDialogs::Show(OPENFILENAME_RECORD& record, Form form) {
  if (!HasOwner(record)) return false;
  fs::path folder = StartFolder(record.lpstrInitialDir);
  while (m_messages.RunWaiting() && HasOwner(record)) {
    const std::optional<FileAnswer> answer = m_user.TypeFileName();
    if (!answer) return false;
    const fs::path path = (folder / answer->fileName).lexically_normal();
    if (answer->fileName.empty()) continue;
    if (IsFolder(path))
      folder = path;
    else if (Accepts(path, record.Flags, form == Form::Save, answer->yes))
      return Put(record.lpstrFile, path.string()) &&
             Put(record.lpstrFileTitle, path.filename().string());
  }
  return false;
}

bool PortableDialogs::HasOwner(const OPENFILENAME_RECORD& record) const {
  return record.hwndOwner == WindowHandle::None || m_messages.IsWindow(record.hwndOwner);
}

}  // namespace quillet
