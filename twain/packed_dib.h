#pragma once

#include <cstddef>
#include <optional>

#include "base/types.h"

namespace quillet {

// Where the parts of a packed device-independent bitmap lie: header, bit-field masks, colour table,
// rows.
struct PackedDib {
  std::size_t size = 0;        // of the whole, in bytes
  std::size_t rowsOffset = 0;  // of the first row

  // Reads the header of the bitmap in a memory block. Nothing when the block is too short for what
  // the header says, or the header describes no uncompressed bitmap.
  static std::optional<PackedDib> Measure(const Byte* block, std::size_t blockSize);
};

}  // namespace quillet
