#pragma once

#include <cstddef>

#include "base/types.h"
#include "picture/kernels/kernels.h"

namespace quillet {

// Resamples 24-bit rows: area average along an axis that shrinks, bilinear (pixel centres aligned,
// edges clamped) along one that grows, exact at equal size. Integer arithmetic: the same pixels on
// every processor. Row 0 of both is the first in memory. Strides in bytes; alignment bytes of the
// target are left alone. Sizes are at least 1. Uses the instructions of that set, which the
// processor must have, or of the next simpler one that has a form of its own.
void Resample24(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long height,
                Byte* target, std::ptrdiff_t targetStride, Long newWidth, Long newHeight,
                InstructionSet set);

}  // namespace quillet
