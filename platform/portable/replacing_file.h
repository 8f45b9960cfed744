#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "base/types.h"

namespace quillet {

// A file's new content on its way: written under a name of its own beside the file, and put in the
// file's place by Commit. Until then the file is as it was; what is not committed goes.
//
// Links are followed. The new file has the permissions and, where the system allows it, the owner
// of the old one. Errors are run-time errors, of ThrowFileError: 70 for a file without write
// permission, whoever asks; 75 for a folder or a device.
class ReplacingFile {
 public:
  explicit ReplacingFile(const std::string& fileName);
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;
  ~ReplacingFile();

  // Open for reading and writing; stays this object's.
  int Descriptor() const noexcept { return m_file; }
  // Adds to the content.
  void Write(std::span<const Byte> bytes);
  // Once, at the end.
  void Commit();

 private:
  std::string m_target;
  std::string m_beside;  // empty once it has become the target
  int m_file = -1;
  bool m_losesContent = false;  // of the file that it replaces
};

}  // namespace quillet
