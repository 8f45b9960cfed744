#pragma once

#include <span>
#include <string>

#include "platform/contracts/files.h"

namespace quillet {

// Files of a POSIX system. What WriteFile writes is not forced to the disk: it is read back and
// deleted.
class PortableFiles : public Files {
 public:
  // $TMPDIR, else /tmp.
  std::string GetTempPathA() override;
  std::string GetTempFileNameA(const std::string& folder, const std::string& prefix) override;
  void WriteFile(const std::string& fileName,
                 std::span<const std::span<const Byte>> pieces) override;
  void CopyFile(const std::string& source, const std::string& destination) override;
  void DeleteFile(const std::string& fileName) override;
};

}  // namespace quillet
