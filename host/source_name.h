#pragma once

#include <string>

namespace quillet {

// UsageError for a name that none of the known data sources has; where none is known beforehand
// every name may be right.
void CheckSource(const std::string& name);

}  // namespace quillet
