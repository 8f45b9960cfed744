#pragma once

#include <string>
#include <vector>

#include "platform/contracts/source_manager.h"

namespace quillet {

// The data source manager's library, bound at the first operation. It stays with the process:
// managers let go of themselves, and sources leave windows behind.
class Win32SourceManager : public SourceManager {
 public:
  // TWAIN_32.DLL, for 64-bit programs TWAINDSM.DLL or else the system's own 64-bit manager.
  Win32SourceManager();
  // The first of these libraries that is a manager.
  explicit Win32SourceManager(std::vector<std::wstring> libraries);

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override;
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override;

 private:
  void Bind();

  std::vector<std::wstring> m_libraries;
  void* m_entry = nullptr;
};

}  // namespace quillet
