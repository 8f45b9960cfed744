#pragma once

#include <cstdint>

#include "base/types.h"

namespace quillet {

// Fields of image files, at any alignment and on any processor.
inline std::uint16_t LoadWord(const Byte* p) noexcept {
  return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}
inline std::uint32_t LoadDword(const Byte* p) noexcept {
  return LoadWord(p) | static_cast<std::uint32_t>(LoadWord(p + 2)) << 16;
}
inline Long LoadLong(const Byte* p) noexcept {
  return static_cast<Long>(LoadDword(p));
}

}  // namespace quillet
