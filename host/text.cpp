#include "host/text.h"

#include <charconv>

namespace quillet {

std::string ToLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return lower;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return ToLower(a) == ToLower(b);
}

std::optional<int> ParseInt(std::string_view text) {
  int number = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number);
  if (error != std::errc{} || end != last) return std::nullopt;
  return number;
}

std::filesystem::path PathOf(std::string_view name) {
  return std::u8string(name.begin(), name.end());
}

std::vector<std::string> SplitFields(std::string_view text) {
  std::vector<std::string> fields(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == ',') {
      fields.back() += text[++i];
    } else if (text[i] == ',') {
      fields.emplace_back();
    } else {
      fields.back() += text[i];
    }
  }
  return fields;
}

}  // namespace quillet
