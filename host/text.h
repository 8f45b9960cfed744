#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

// ASCII letters in lower case, everything else as it is.
std::string ToLower(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

// A whole decimal number with an optional minus sign and nothing around it.
std::optional<int> ParseInt(std::string_view text);

// The file of that UTF-8 name.
std::filesystem::path PathOf(std::string_view name);

// The fields between commas, at least one. `\,` is a comma of the field; any other backslash is
// just a backslash.
std::vector<std::string> SplitFields(std::string_view text);

}  // namespace quillet
