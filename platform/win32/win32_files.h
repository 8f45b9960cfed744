#pragma once

#include "platform/contracts/files.h"

namespace quillet {

// The system's file service.
class Win32Files : public Files {
 public:
  std::string GetTempPathA() override;
  std::string GetTempFileNameA(const std::string& folder, const std::string& prefix) override;
  void WriteFile(const std::string& fileName,
                 std::span<const std::span<const Byte>> pieces) override;
  void CopyFile(const std::string& source, const std::string& destination) override;
  void DeleteFile(const std::string& fileName) override;
};

}  // namespace quillet
