#pragma once

#include <span>

#include "platform/portable/dib.h"

namespace quillet {

// Whether a run-length encoded stream of 4- or 8-bit pixels is whole: it says where it ends, or
// fills the bitmap. Asks for no memory.
bool IsWholeRle(std::span<const Byte> stream, const Dib::Format& format);

// Decodes the stream into a bitmap of that format whose pixels are all 0: pixels the stream skips
// stay so, pixels beyond the bitmap are dropped. Rows in the stream go from the lowest up.
void DecodeRle(std::span<const Byte> stream, Dib& target);

}  // namespace quillet
