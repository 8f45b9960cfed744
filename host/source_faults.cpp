#include "host/source_faults.h"

#include <cstring>
#include <utility>

#include "host/usage_error.h"
#include "twain/protocol_names.h"

namespace quillet {
namespace {

TW_UINT16 Value(ProtocolConstant kind, std::string_view name) {
  if (const auto value = ProtocolValue(kind, name)) return *value;
  throw UsageError("\"" + std::string(name) + "\" is no name of the protocol there");
}

// The text up to the mark, which is taken away with it; all of it when there is no mark.
std::string_view TakeUpTo(char mark, std::string_view& text) {
  const std::size_t end = text.find(mark);
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return taken;
}

}  // namespace

SourceFault ParseSourceFault(std::string_view text) {
  const std::size_t equals = text.find('=');
  std::string_view operation = text.substr(0, equals);
  if (equals == std::string_view::npos || operation.find('/') == std::string_view::npos)
    throw UsageError("it is written --fault DAT/MSG[/CAP]=TWRC");
  SourceFault fault{};
  fault.argumentType = Value(ProtocolConstant::ArgumentType, TakeUpTo('/', operation));
  const bool hasCapability = operation.find('/') != std::string_view::npos;
  fault.message = Value(ProtocolConstant::Message, TakeUpTo('/', operation));
  if (hasCapability) {
    if (fault.argumentType != DAT_CAPABILITY)
      throw UsageError("only DAT_CAPABILITY takes a capability");
    fault.capability = Value(ProtocolConstant::Capability, operation);
  }
  fault.returnCode = Value(ProtocolConstant::ReturnCode, text.substr(equals + 1));
  return fault;
}

FaultySourceManager::FaultySourceManager(SourceManager& manager, std::vector<SourceFault> faults)
    : m_manager(manager), m_faults(std::move(faults)) {}

TW_UINT16 FaultySourceManager::DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                                         TW_UINT16 argumentType, TW_UINT16 message, void* pData) {
  for (const SourceFault& fault : m_faults) {
    if (fault.argumentType != argumentType || fault.message != message) continue;
    if (fault.capability) {
      TW_CAPABILITY capability{};
      if (pData) std::memcpy(&capability, pData, sizeof capability);
      if (capability.Cap != *fault.capability) continue;
    }
    return fault.returnCode;
  }
  return m_manager.DSM_Entry(pOrigin, pDest, group, argumentType, message, pData);
}

std::string FaultySourceManager::AnsiText(const std::string& text, std::size_t maxBytes) const {
  return m_manager.AnsiText(text, maxBytes);
}

}  // namespace quillet
