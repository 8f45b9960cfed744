#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/portable/byte_source.h"
#include "platform/portable/dib.h"

namespace quillet {

// What the five image formats share: bounds of hostile files, units of resolution, palettes.

// Refuses (CodecError) a size below one pixel or of more than 2^30 pixels.
void RequireImageSize(std::uint64_t width, std::uint64_t height);
// Refuses what cannot come from `encoded` bytes when a byte gives `ratio` at the most.
void RequireRatio(std::uint64_t decoded, std::uint64_t encoded, std::uint64_t ratio);

// Dots per inch from and to pixels per metre (an inch is 0.0254 m). 0 for what is unknown, negative
// or too large.
Long DotsPerMeter(double dotsPerInch);
double DotsPerInch(Long dotsPerMeter);
// The whole number of dots per inch that comes back as that many per metre, 0 when there is none.
Long WholeDotsPerInch(Long dotsPerMeter);

// Bits of the smallest index that tells so many colours apart.
inline int DepthFor(std::size_t colors) noexcept {
  return colors <= 2 ? 1 : colors <= 16 ? 4 : 8;
}
// Even steps from black to white, of up to 8 bits.
std::vector<PaletteColor> GrayPalette(int depth);
// The palette with every index of the depth, black where the picture's ends.
std::vector<PaletteColor> WholePalette(const Dib::Format& format);
bool IsGrayPalette(const Dib::Format& format);

// Whole values packed to `depth` (1, 4 or 8) bits each; the row's spare bits are 0.
void PackIndexes(const Byte* indexes, Long count, int depth, Byte* row) noexcept;
void UnpackIndexes(const Byte* row, Long count, int depth, Byte* indexes) noexcept;

// `value` of that opacity (255: opaque) over `below`.
inline Byte Over(int value, int alpha, int below) noexcept {
  return static_cast<Byte>((value * alpha + below * (255 - alpha) + 127) / 255);
}

// Bytes of a source one after another, read ahead in blocks.
class ByteReader {
 public:
  explicit ByteReader(ByteSource& source, std::uint64_t offset = 0)
      : m_source(source), m_offset(offset) {}

  // What follows; empty at the end. Valid until the next call.
  std::span<const Byte> NextBlock();
  // As much as there is.
  std::size_t Read(std::span<Byte> target);

 private:
  ByteSource& m_source;
  std::uint64_t m_offset;
  std::vector<Byte> m_block;
  std::span<const Byte> m_rest;
};

}  // namespace quillet
