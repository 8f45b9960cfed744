#include "twain/protocol_names.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <span>

namespace quillet {
namespace {

struct Name {
  TW_UINT16 value;
  const char* name;
};

#define QUILLET_NAME(constant) \
  { static_cast<TW_UINT16>(constant), #constant }

constexpr Name kDataGroups[] = {QUILLET_NAME(DG_CONTROL), QUILLET_NAME(DG_IMAGE)};

constexpr Name kArgumentTypes[] = {
    QUILLET_NAME(DAT_NULL),        QUILLET_NAME(DAT_CAPABILITY),
    QUILLET_NAME(DAT_EVENT),       QUILLET_NAME(DAT_IDENTITY),
    QUILLET_NAME(DAT_PARENT),      QUILLET_NAME(DAT_PENDINGXFERS),
    QUILLET_NAME(DAT_STATUS),      QUILLET_NAME(DAT_USERINTERFACE),
    QUILLET_NAME(DAT_IMAGELAYOUT), QUILLET_NAME(DAT_IMAGENATIVEXFER),
};

constexpr Name kMessages[] = {
    QUILLET_NAME(MSG_NULL),       QUILLET_NAME(MSG_GET),      QUILLET_NAME(MSG_GETCURRENT),
    QUILLET_NAME(MSG_GETDEFAULT), QUILLET_NAME(MSG_GETFIRST), QUILLET_NAME(MSG_GETNEXT),
    QUILLET_NAME(MSG_SET),        QUILLET_NAME(MSG_RESET),    QUILLET_NAME(MSG_XFERREADY),
    QUILLET_NAME(MSG_CLOSEDSREQ), QUILLET_NAME(MSG_OPENDSM),  QUILLET_NAME(MSG_CLOSEDSM),
    QUILLET_NAME(MSG_OPENDS),     QUILLET_NAME(MSG_CLOSEDS),  QUILLET_NAME(MSG_USERSELECT),
    QUILLET_NAME(MSG_DISABLEDS),  QUILLET_NAME(MSG_ENABLEDS), QUILLET_NAME(MSG_PROCESSEVENT),
    QUILLET_NAME(MSG_ENDXFER),
};

constexpr Name kReturnCodes[] = {
    QUILLET_NAME(TWRC_SUCCESS),  QUILLET_NAME(TWRC_FAILURE),   QUILLET_NAME(TWRC_CHECKSTATUS),
    QUILLET_NAME(TWRC_CANCEL),   QUILLET_NAME(TWRC_DSEVENT),   QUILLET_NAME(TWRC_NOTDSEVENT),
    QUILLET_NAME(TWRC_XFERDONE), QUILLET_NAME(TWRC_ENDOFLIST),
};

constexpr Name kConditionCodes[] = {
    QUILLET_NAME(TWCC_SUCCESS),        QUILLET_NAME(TWCC_BUMMER),
    QUILLET_NAME(TWCC_LOWMEMORY),      QUILLET_NAME(TWCC_NODS),
    QUILLET_NAME(TWCC_MAXCONNECTIONS), QUILLET_NAME(TWCC_OPERATIONERROR),
    QUILLET_NAME(TWCC_BADPROTOCOL),    QUILLET_NAME(TWCC_BADVALUE),
    QUILLET_NAME(TWCC_SEQERROR),       QUILLET_NAME(TWCC_BADDEST),
    QUILLET_NAME(TWCC_CAPUNSUPPORTED), QUILLET_NAME(TWCC_CAPBADOPERATION),
};

constexpr Name kCapabilities[] = {
    QUILLET_NAME(CAP_XFERCOUNT),       QUILLET_NAME(ICAP_PIXELTYPE),
    QUILLET_NAME(ICAP_UNITS),          QUILLET_NAME(ICAP_XFERMECH),
    QUILLET_NAME(CAP_SUPPORTEDCAPS),   QUILLET_NAME(CAP_INDICATORS),
    QUILLET_NAME(CAP_UICONTROLLABLE),  QUILLET_NAME(ICAP_PHYSICALWIDTH),
    QUILLET_NAME(ICAP_PHYSICALHEIGHT), QUILLET_NAME(ICAP_XRESOLUTION),
    QUILLET_NAME(ICAP_YRESOLUTION),    QUILLET_NAME(ICAP_BITDEPTH),
};

constexpr Name kItemTypes[] = {QUILLET_NAME(TWTY_INT16), QUILLET_NAME(TWTY_UINT16),
                               QUILLET_NAME(TWTY_BOOL), QUILLET_NAME(TWTY_FIX32)};

#undef QUILLET_NAME

std::span<const Name> NamesOf(ProtocolConstant kind) {
  switch (kind) {
    case ProtocolConstant::DataGroup:
      return kDataGroups;
    case ProtocolConstant::ArgumentType:
      return kArgumentTypes;
    case ProtocolConstant::Message:
      return kMessages;
    case ProtocolConstant::ReturnCode:
      return kReturnCodes;
    case ProtocolConstant::ConditionCode:
      return kConditionCodes;
    case ProtocolConstant::Capability:
      return kCapabilities;
    case ProtocolConstant::ItemType:
      return kItemTypes;
  }
  return {};
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(
      a, b, [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

}  // namespace

std::string NameOf(ProtocolConstant kind, TW_UINT32 value) {
  for (const Name& name : NamesOf(kind))
    if (name.value == value) return name.name;
  char text[16];
  std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(value));
  return text;
}

std::optional<TW_UINT16> ProtocolValue(ProtocolConstant kind, std::string_view name) {
  for (const Name& known : NamesOf(kind))
    if (EqualsIgnoringCase(known.name, name)) return known.value;
  return {};
}

}  // namespace quillet
