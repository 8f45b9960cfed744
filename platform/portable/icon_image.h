#pragma once

#include <vector>

#include "base/types.h"

namespace quillet {

// An icon or mouse pointer: rows top-down without padding, 4 bytes a pixel: blue, green, red and
// opacity (0 shows what lies behind, 255 hides it).
struct IconImage {
  int width = 0;
  int height = 0;
  int hotSpotX = 0;
  int hotSpotY = 0;
  std::vector<Byte> bgra;
};

}  // namespace quillet
