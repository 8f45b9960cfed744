#include "picture/kernels/lighten_table.h"

#include "base/rounding.h"

namespace quillet {

LightenTable::LightenTable(Long percent) {
  const double factor = percent < -100 ? 0.0 : percent / 100.0 + 1;
  auto* fraction = m_fractions.data();
  auto* range = m_ranges.data();
  auto* rounded = m_rounded.data();
  for (Long largest = 0; largest < 256; ++largest) {
    *fraction++ = static_cast<Single>(largest * kChannelUnit);
    for (Long smallest = 0; smallest <= largest; ++smallest) {
      const HSL color = RGBToHSL(largest, smallest, smallest);
      const double scaled = factor * color.lightness;
      *range = RangeOf(color.saturation, scaled > 1 ? 1.0f : static_cast<Single>(scaled));
      *rounded++ = {NearestByte(range->smallest * 255.0), NearestByte(range->largest * 255.0)};
      ++range;
    }
  }
}

}  // namespace quillet
