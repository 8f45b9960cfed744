#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "picture/kernels/kernels.h"

namespace quillet {

inline constexpr Byte kCanary = 0xA5;
inline constexpr std::ptrdiff_t kMargin = 64;

// Rows of 24-bit pixels, every pixel different from its neighbours, in a larger block of canaries.
struct Rows {
  Rows(Long pixels, Long count)
      : width(pixels),
        height(count),
        stride((3 * pixels + 3) / 4 * 4),
        block(static_cast<std::size_t>(2 * kMargin + stride * count), kCanary) {}

  Byte* Row(Long y) { return block.data() + kMargin + y * stride; }

  Rows& Fill() {
    unsigned next = 1;
    for (Long y = 0; y < height; ++y) {
      for (Long i = 0; i < 3 * width; ++i) Row(y)[i] = static_cast<Byte>((next *= 69069u) >> 24);
    }
    return *this;
  }

  std::vector<Byte> Pixel(Long x, Long y) { return {Row(y) + 3 * x, Row(y) + 3 * x + 3}; }

  Long width, height;
  std::ptrdiff_t stride;
  std::vector<Byte> block;
};

// Runs the action for every set of kernels that this processor has.
template <typename Action>
void ForEachSet(Action&& action) {
  for (const auto set : {InstructionSet::Scalar, InstructionSet::Sse2, InstructionSet::Avx2}) {
    SCOPED_TRACE(static_cast<int>(set));
    if (const Kernels* kernels = KernelsFor(set)) action(*kernels);
  }
}

}  // namespace quillet
