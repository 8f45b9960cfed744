#pragma once

#include <cstddef>
#include <string>

#include "twain/protocol.h"

namespace quillet {

// The TWAIN data source manager and the data sources behind it.
class SourceManager {
 public:
  virtual ~SourceManager() = default;

  // One operation of the protocol: origin and destination, data group, data argument type, message
  // and the structure that the triplet names. The answer is a TWAIN return code. The manager's
  // library is bound at the first call; run-time error 53 when its file is not there, 48 when it
  // does not load.
  virtual TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                              TW_UINT16 argumentType, TW_UINT16 message, void* pData) = 0;

  // The text in the ANSI code page that the protocol's strings are in, cut at a whole character so
  // that it takes at most `maxBytes`.
  virtual std::string AnsiText(const std::string& text, std::size_t maxBytes) const = 0;
};

}  // namespace quillet
