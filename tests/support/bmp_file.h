#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/types.h"

namespace quillet {

// A BMP file to be built, well-formed or not: what the header says and what follows it are set
// apart.
struct BmpFile {
  struct Color {
    Byte blue = 0, green = 0, red = 0;
  };

  std::uint32_t headerSize = 40;
  Long width = 0;
  Long height = 0;  // negative for rows top-down
  std::uint16_t planes = 1;
  int depth = 24;
  std::uint32_t compression = 0;
  Long xPelsPerMeter = 0;
  Long yPelsPerMeter = 0;
  std::optional<std::uint32_t> colorsUsed{};  // the size of the palette when left out
  std::vector<std::uint32_t> masks{};         // red, green, blue, and perhaps opacity
  std::vector<Color> palette{};
  std::vector<Byte> pixels{};
  std::optional<std::uint32_t> pixelsStart{};  // where they start when left out

  // Makes uncompressed pixels, in the file's depth and row order, of the values at (x, y), y
  // counted from the top.
  void PackPixels(const std::function<std::uint32_t(Long x, Long y)>& value);

  std::vector<Byte> Bytes() const;
};

// Adds the low bytes of a value, lowest first.
void AppendLittleEndian(std::vector<Byte>& bytes, std::uint32_t value, int count);

// Uncompressed rows of values, padded to a multiple of 4 bytes, in the order in which `row` gives
// them.
std::vector<Byte> PackRows(Long width, Long rows, int depth,
                           const std::function<std::uint32_t(Long x, Long row)>& value);

}  // namespace quillet
