#pragma once

#include "picture/kernels/kernels.h"
#include "platform/portable/dib.h"

namespace quillet {

// Rows of pixels somewhere in memory, in the order they are shown.
struct PixelRows {
  const Byte* top;
  std::ptrdiff_t strideDown;
  const Dib::Format* format;
};

struct PixelPoint {
  Long x = 0;
  Long y = 0;
};

// Copies the width x height pixels at `from` to `to`; both rectangles lie within their bitmaps, the
// target is writable. The two may overlap within one bitmap. Throws std::bad_alloc.
void TransferPixels(const PixelRows& source, PixelPoint from, Dib& target, PixelPoint to,
                    Long width, Long height);

// Reads the first `rows` scan lines into a block of 24-bit rows, padded, alignment bytes 0: the top
// rows, or, for a block whose rows go bottom-up, the lowest ones.
void ReadRows24(const Dib& source, Long rows, bool topDown, Byte* block);

// The bitmap's pixels resampled to another size: 24 bits, rows top-down, without resolution. Throws
// std::bad_alloc.
Dib Stretch(const Dib& source, Long width, Long height, InstructionSet instructions,
            std::shared_ptr<BlockReserve> reserve);

}  // namespace quillet
