#pragma once

#include <cstddef>

#include "base/types.h"

namespace quillet {

// Copies pixels of three bytes with the first and the last exchanged. The target lies elsewhere.
void SwapRedAndBlue(const Byte* source, Byte* target, std::size_t count) noexcept;

namespace avx2 {
void SwapRedAndBlue(const Byte* source, Byte* target, std::size_t count) noexcept;
}

}  // namespace quillet
