#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/contracts/source_manager.h"

namespace quillet {

// A TWAIN operation that is to answer with that return code.
struct SourceFault {
  TW_UINT16 argumentType;
  TW_UINT16 message;
  std::optional<TW_UINT16> capability;  // none: of any
  TW_UINT16 returnCode;
};

// `DAT_CAPABILITY/MSG_SET/ICAP_XRESOLUTION=TWRC_FAILURE`, names in any case. UsageError for
// anything else.
SourceFault ParseSourceFault(std::string_view text);

// A source manager in which some operations answer as they are told and do nothing; the others go
// to the manager behind it, which outlives it.
class FaultySourceManager : public SourceManager {
 public:
  FaultySourceManager(SourceManager& manager, std::vector<SourceFault> faults);

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override;
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override;

 private:
  SourceManager& m_manager;
  std::vector<SourceFault> m_faults;
};

}  // namespace quillet
