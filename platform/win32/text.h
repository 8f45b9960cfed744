#pragma once

#include <string>
#include <string_view>

namespace quillet {

// The core's strings are UTF-8, the system's UTF-16; this is the edge between them. What is no text
// (a broken sequence, a lone surrogate) becomes U+FFFD.
std::wstring Utf16(std::string_view utf8);
std::string Utf8(std::wstring_view utf16);

}  // namespace quillet
