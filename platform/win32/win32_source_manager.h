#pragma once

#include "platform/contracts/source_manager.h"

namespace quillet {

// The data source manager's library, bound at the first operation and kept until the end:
// TWAIN_32.DLL, for 64-bit programs TWAINDSM.DLL or the system's own 64-bit manager.
class Win32SourceManager : public SourceManager {
 public:
  Win32SourceManager() = default;
  Win32SourceManager(const Win32SourceManager&) = delete;
  Win32SourceManager& operator=(const Win32SourceManager&) = delete;
  ~Win32SourceManager() override;

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override;
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override;

 private:
  void Bind();

  void* m_library = nullptr;
  void* m_entry = nullptr;
};

}  // namespace quillet
