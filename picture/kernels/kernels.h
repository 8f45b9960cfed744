#pragma once

#include <cstddef>

#include "base/types.h"

namespace quillet {

// Which instructions a kernel may use. Every build carries the scalar form, which is the readable
// definition of the arithmetic; the vector forms equal it bit for bit.
enum class InstructionSet { Scalar, Sse2, Avx2 };

class LightenTable;

// The same pixel over and over, as many times as fill whole vectors of any size.
struct PixelPattern {
  PixelPattern(Byte blue, Byte green, Byte red) {
    for (std::size_t i = 0; i < sizeof bytes; i += 3) {
      bytes[i] = blue;
      bytes[i + 1] = green;
      bytes[i + 2] = red;
    }
  }
  Byte bytes[96];
};

// Row functions on 24-bit pixels (3 bytes each: blue, green, red). Widths in pixels, at least 1;
// counts in bytes, at least 0; strides, the distances between rows, in bytes. They touch pixel
// bytes only, never the alignment bytes of a row, allocate nothing and call nobody. Roundings go to
// the nearest integer, halves to the even neighbour, and results are clamped to 0 .. 255.
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

  // Each channel is combined with its byte in `changes` by exclusive or: 255 inverts, 0 keeps. The
  // count is of whole pixels.
  void (*Invert)(Byte* row, std::ptrdiff_t count, const PixelPattern& changes);

  // Each byte c becomes (c - 128) x factor + 128, the factor from -128 to 128.
  void (*Contrast)(Byte* row, std::ptrdiff_t count, Integer factor);

  // Each byte c becomes c x level / 255.
  void (*Fade)(Byte* row, std::ptrdiff_t count, Byte level);

  // Each byte c becomes c + (c - d) x 0.5, or 0.8, d being the byte of the same number from
  // `diagonal`. The two may be one row if `diagonal` is further right.
  void (*SharpenByHalf)(Byte* row, const Byte* diagonal, std::ptrdiff_t count);
  void (*SharpenByFourFifths)(Byte* row, const Byte* diagonal, std::ptrdiff_t count);

  // Each byte becomes the fifth of a sum: its own, the one of its right neighbour (3 bytes on, as
  // it was before), those of the same two numbers in `below`, and the one in `upperLeft`.
  void (*Blur)(const Byte* upperLeft, Byte* row, const Byte* below, std::ptrdiff_t count);

  // All three channels become 0.707 green + 0.222 red + 0.071 blue.
  void (*GrayScale)(Byte* row, Long width);

  // All three channels become 255 where one of them is kWhiteFrom or more, else 0.
  void (*BlackWhite)(Byte* row, Long width);

  // Each pixel gets the lightness that the table has for its colour; hue and saturation stay.
  void (*Lighten)(Byte* row, Long width, const LightenTable& table);
};

inline constexpr Byte kWhiteFrom = 192;

// Few enough that one cache line of each source row stays in the first-level cache until all its
// pixels are used, enough that each target row gets whole cache lines.
inline constexpr Long kRotateStripRows = 256;

// The kernels for that instruction set; null when this processor or build has not got it.
const Kernels* KernelsFor(InstructionSet set) noexcept;

// The fastest there are on this processor.
const Kernels& BestKernels() noexcept;

}  // namespace quillet
