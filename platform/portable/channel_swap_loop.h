#pragma once

#include <cstddef>

#include "base/types.h"

namespace quillet {
namespace {

// Compiled once for every instruction set: the compiler finds the shuffles itself.
inline void SwapLoop(const Byte* __restrict source, Byte* __restrict target,
                     std::size_t count) noexcept {
  for (std::size_t i = 0; i < count * 3; i += 3) {
    target[i] = source[i + 2];
    target[i + 1] = source[i + 1];
    target[i + 2] = source[i];
  }
}

}  // namespace
}  // namespace quillet
