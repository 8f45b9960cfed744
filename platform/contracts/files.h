#pragma once

#include <span>
#include <string>

#include "base/types.h"

namespace quillet {

// The file system. Names are UTF-8. Run-time errors: 53 no such file, 61 disk full, 70 permission
// denied, 75 path or file access error, 76 no such folder.
class Files {
 public:
  virtual ~Files() = default;

  // The folder for temporary files, ending in a separator.
  virtual std::string GetTempPathA() = 0;
  // Creates an empty file of a new name that starts with the prefix, readable by its owner alone,
  // and returns its full name.
  virtual std::string GetTempFileNameA(const std::string& folder, const std::string& prefix) = 0;

  // Writes the pieces one after another as the whole content of the file, which is created when
  // missing.
  virtual void WriteFile(const std::string& fileName,
                         std::span<const std::span<const Byte>> pieces) = 0;
  // Copies a file's content over another, which is replaced when the copy is complete and stays as
  // it was when that fails.
  virtual void CopyFile(const std::string& source, const std::string& destination) = 0;
  // Refused (70) for a file that may not be written.
  virtual void DeleteFile(const std::string& fileName) = 0;
};

}  // namespace quillet
