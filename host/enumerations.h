#pragma once

#include <optional>
#include <string_view>

#include "control/events.h"

namespace quillet {

// The value that an enumeration gives a name, in any case; none for another kind of value or
// another name.
std::optional<Long> EnumerationValue(ValueKind kind, std::string_view name);

// A kind as the type library writes it.
const char* NameOfKind(ValueKind kind);

}  // namespace quillet
