#pragma once

#include <functional>
#include <string>

#include "platform/contracts/global_memory.h"
#include "platform/contracts/source_manager.h"

namespace quillet {

// A source manager that tells of every operation on its way to another one, a line each: group,
// argument type and message in the protocol's names, what is sent, an arrow, the return code, what
// comes back:
//
//   DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_XRESOLUTION FIX32 75.0 -> TWRC_SUCCESS
//
// Names of applications and sources stand in quotes, with line feed, carriage return, quote and
// backslash in them as \n, \r, \" and \\.
class TracingSourceManager : public SourceManager {
 public:
  // Does not throw.
  using Sink = std::function<void(const std::string& line)>;

  // The manager and the memory outlive it. The memory is that in which containers and images come.
  TracingSourceManager(SourceManager& manager, GlobalMemory& memory, Sink sink);

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override;
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override;

 private:
  // Each begins with a space, or is empty.
  std::string Sent(const TW_IDENTITY& origin, TW_UINT16 argumentType, TW_UINT16 message,
                   const void* pData) const;
  std::string Received(TW_UINT16 argumentType, TW_UINT16 message, TW_UINT16 returnCode,
                       const void* pData) const;
  std::string Container(const TW_CAPABILITY& capability) const;
  std::string Image(GlobalHandle image) const;

  SourceManager& m_manager;
  GlobalMemory& m_memory;
  Sink m_sink;
};

}  // namespace quillet
