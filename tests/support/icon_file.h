#pragma once

#include <vector>

#include "base/types.h"
#include "tests/support/bmp_file.h"

namespace quillet {

// One image of an icon file: its place in the directory and its data.
struct IconEntry {
  int width = 0;
  int height = 0;
  int depth = 0;
  std::vector<Byte> data;
};

// The data of an image: colours as in BMP files, then the mask, whose 1 means transparent.
IconEntry IconImageOf(int width, int height, int depth, const std::vector<BmpFile::Color>& palette,
                      const std::function<std::uint32_t(Long x, Long y)>& value,
                      const std::function<bool(Long x, Long y)>& isTransparent);
// A 24-bit image of one colour.
IconEntry OpaqueIcon(int width, int height, BmpFile::Color color);

std::vector<Byte> IconFile(const std::vector<IconEntry>& entries);

}  // namespace quillet
