#pragma once

#include <cstddef>

#include "base/types.h"

namespace quillet {

// Which instructions a kernel may use. Every build carries the scalar form, which is the readable
// definition of the arithmetic; the vector forms equal it bit for bit.
enum class InstructionSet { Scalar, Sse2, Avx2 };

// Row functions on 24-bit pixels (3 bytes each: blue, green, red). Widths in pixels, at least 1;
// strides, the distances between rows, in bytes. They touch pixel bytes only, never the alignment
// bytes of a row, allocate nothing and call nobody.
struct Kernels {
  InstructionSet set;

  // Exchanges two rows, which do not overlap.
  void (*SwapRows)(Byte* a, Byte* b, Long width);

  // Mirrors one row in place.
  void (*ReverseRow)(Byte* row, Long width);

  // Turns a strip of `rows` source rows by +90 degrees. Source pixel (x, y) of the strip, y counted
  // from its top, goes to target column rows - 1 - y, row x, counted from `target`. Source and
  // target do not overlap. kRotateStripRows rows at a time are fastest.
  void (*RotateStrip)(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long rows,
                      Byte* target, std::ptrdiff_t targetStride);
};

// Few enough that one cache line of each source row stays in the first-level cache until all its
// pixels are used, enough that each target row gets whole cache lines.
inline constexpr Long kRotateStripRows = 256;

// The kernels for that instruction set; null when this processor or build has not got it.
const Kernels* KernelsFor(InstructionSet set) noexcept;

// The fastest there are on this processor.
const Kernels& BestKernels() noexcept;

}  // namespace quillet
