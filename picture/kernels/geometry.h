#pragma once

#include <cstddef>

#include "base/types.h"
#include "picture/kernels/x86.h"

// The geometry kernels, one namespace to an instruction set; kernels.h says what they do. A set has
// only those that it makes faster.
namespace quillet::scalar {

void SwapRows(Byte* a, Byte* b, Long width);
void ReverseRow(Byte* row, Long width);
void RotateStrip(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long rows,
                 Byte* target, std::ptrdiff_t targetStride);

}  // namespace quillet::scalar

#ifdef QUILLET_X86
namespace quillet::sse2 {

void RotateStrip(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long rows,
                 Byte* target, std::ptrdiff_t targetStride);

}  // namespace quillet::sse2

namespace quillet::avx2 {

void SwapRows(Byte* a, Byte* b, Long width);
void ReverseRow(Byte* row, Long width);
void RotateStrip(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long rows,
                 Byte* target, std::ptrdiff_t targetStride);

}  // namespace quillet::avx2
#endif
