#pragma once

#include <span>
#include <string>

#include "base/types.h"

namespace quillet {

// A folder of one's own that goes, with all that is in it, at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  // The path of a file or folder of that name inside.
  std::string Path(const std::string& name) const;
  // Writes a file and returns its path.
  std::string Write(const std::string& name, std::span<const Byte> content) const;

 private:
  std::string m_path;
};

}  // namespace quillet
