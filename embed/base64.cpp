#include "embed/base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quillet {
namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string EncodeBase64(std::span<const Byte> bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (; !bytes.empty(); bytes = bytes.subspan(std::min<std::size_t>(3, bytes.size()))) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) group = group << 8 | (i < bytes.size() ? bytes[i] : 0u);
    for (std::size_t i = 0; i < 4; ++i)
      text += i <= bytes.size() ? kDigits[group >> (18 - 6 * i) & 63] : '=';
  }
  return text;
}

std::optional<std::vector<Byte>> DecodeBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::vector<Byte> bytes;
  bytes.reserve(text.size() / 4 * 3);
  for (; !text.empty(); text.remove_prefix(4)) {
    std::size_t digits = 4;
    if (text.size() == 4)
      while (digits > 2 && text[digits - 1] == '=') --digits;
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const std::size_t value = i < digits ? kDigits.find(text[i]) : 0;
      if (value == std::string_view::npos) return std::nullopt;
      group = group << 6 | static_cast<std::uint32_t>(value);
    }
    // The bits behind the last byte are zero.
    if (group & ((1u << 8 * (4 - digits)) - 1)) return std::nullopt;
    for (std::size_t i = 0; i + 1 < digits; ++i)
      bytes.push_back(static_cast<Byte>(group >> (16 - 8 * i)));
  }
  return bytes;
}

}  // namespace quillet
