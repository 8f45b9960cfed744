#pragma once

#include <string>

namespace quillet {

// New content for a file, written beside it under a name of its own that nobody else has. The old
// file stays as it was until Commit puts the finished one in its place, with the old one's
// attributes; without that, nothing is left. A link is followed to the file it names.
//
// Errors are the system's numbers.
class ReplacingFile {
 public:
  // An existing file that is read-only, or a folder, is refused (ERROR_ACCESS_DENIED).
  explicit ReplacingFile(std::wstring target);
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;
  ~ReplacingFile();

  // Why there is nothing to write to; 0 when there is.
  unsigned long Error() const noexcept { return m_error; }
  // The empty file to write to.
  const std::wstring& Name() const noexcept { return m_name; }

  // 0, or why the old file is still there.
  unsigned long Commit();

 private:
  std::wstring m_target;
  std::wstring m_name;  // empty when there is none (any more)
  unsigned long m_error = 0;
};

// Creates an empty file whose name begins with that text and ends in ".tmp". Its name; empty when
// that fails, for the reason that GetLastError tells.
std::wstring CreateUniqueFile(const std::wstring& beginning);

}  // namespace quillet
