#pragma once

#include <span>
#include <string>

#include "platform/contracts/files.h"

namespace quillet {

// Files of a POSIX system. Nothing is forced to the disk: what is written here is read back and
// deleted.
class PortableFiles : public Files {
 public:
  // $TMPDIR, else /tmp.
  std::string GetTempPathA() override;
  std::string GetTempFileNameA(const std::string& folder, const std::string& prefix) override;
  void WriteFile(const std::string& fileName,
                 std::span<const std::span<const Byte>> pieces) override;
  void DeleteFile(const std::string& fileName) override;
};

}  // namespace quillet
