#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "twain/protocol.h"

namespace quillet {

// A kind of protocol constant: the numbers of one kind have one name each.
enum class ProtocolConstant {
  DataGroup,
  ArgumentType,
  Message,
  ReturnCode,
  ConditionCode,
  Capability,
  ItemType,
};

// As the standard writes it, TWRC_SUCCESS; for a number without a name here, the number in
// hexadecimal.
std::string NameOf(ProtocolConstant kind, TW_UINT32 value);

// The number of that name, in any case.
std::optional<TW_UINT16> ProtocolValue(ProtocolConstant kind, std::string_view name);

}  // namespace quillet
