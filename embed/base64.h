#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/types.h"

namespace quillet {

// RFC 4648, section 4: groups of four characters, the last one padded with '='.
std::string EncodeBase64(std::span<const Byte> bytes);
// Nothing for a text that EncodeBase64 could not have made.
std::optional<std::vector<Byte>> DecodeBase64(std::string_view text);

}  // namespace quillet
