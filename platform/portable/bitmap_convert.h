#pragma once

#include <array>

#include "platform/portable/dib.h"

namespace quillet {

// Converts pixels of one format to and from 24 bits (blue, green, red). Made once for a bitmap,
// used for its rows.
//
// A palette index beyond the palette is black. A 5-bit channel v becomes (v << 3) | (v >> 2); other
// widths are scaled so that the largest value gives 255, rounded to nearest. A fourth byte is
// dropped, and written as 0.
class RowConverter {
 public:
  explicit RowConverter(const Dib::Format& format);

  // `count` pixels of the row, from pixel `first`.
  void To24(const Byte* row, Long first, Long count, Byte* target) const noexcept;
  // Writes `count` pixels of the row, from pixel `first`; in a palette format the nearest colour.
  void From24(const Byte* source, Long first, Long count, Byte* row) const noexcept;

 private:
  // Brings one channel of a 16- or 32-bit pixel to 8 bits and back.
  class Channel {
   public:
    explicit Channel(std::uint32_t mask = 0);
    Byte Expand(std::uint32_t pixel) const noexcept;
    std::uint32_t Reduce(Byte value) const noexcept;

   private:
    std::uint32_t m_mask;
    int m_shift = 0;
    std::uint32_t m_max = 0;
    std::array<Byte, 256> m_table{};  // for channels of up to 8 bits
  };

  template <int depth>
  void IndexesTo24(const Byte* row, Long first, Long count, Byte* target) const noexcept;
  void IndexesFrom24(const Byte* source, Long first, Long count, Byte* row) const noexcept;
  int NearestColor(const Byte* pixel) const noexcept;

  int m_depth;
  bool m_plain32;
  std::array<PaletteColor, 256> m_palette{};
  int m_colors = 0;
  Channel m_red, m_green, m_blue;
};

// Whether the mask is one run of bits, or none.
bool IsContiguous(std::uint32_t mask) noexcept;

}  // namespace quillet
