#pragma once

#include <optional>

#include "platform/portable/dib.h"

namespace quillet {

// The same picture with up to 8 bits and at most 256 colours, when it has no more; nothing when it
// has. Throws std::bad_alloc.
std::optional<Dib> ExactPalette(const Dib& dib);

// An 8-bit likeness of the picture with a palette of its own, of up to 256 colours, and error
// diffusion. Throws std::bad_alloc.
Dib AdaptivePalette(const Dib& dib);

}  // namespace quillet
