#pragma once

#include <array>
#include <cstddef>

#include "picture/lightness.h"

namespace quillet {

// What scaling the lightness by 1 + percent / 100 makes of every colour: its new largest and
// smallest channel depend on nothing but its old ones. The channel between keeps its place between
// them, which the hue says. A percentage below -100 counts as -100.
class LightenTable {
 public:
  struct RoundedRange {
    Byte smallest, largest;
  };

  explicit LightenTable(Long percent);

  // The new range for channels from `smallest` to `largest`.
  const ChannelRange& At(int largest, int smallest) const {
    return m_ranges[IndexOf(largest, smallest)];
  }
  // The same, from 0 to 255.
  const RoundedRange& RoundedAt(int largest, int smallest) const {
    return m_rounded[IndexOf(largest, smallest)];
  }
  // All ranges, by the index largest x (largest + 1) / 2 + smallest.
  const ChannelRange* Data() const { return m_ranges.data(); }

  // A channel from 0 to 1, rounded to a float.
  double Fraction(int channel) const { return m_fractions[static_cast<std::size_t>(channel)]; }

 private:
  static std::size_t IndexOf(int largest, int smallest) {
    return static_cast<std::size_t>(largest * (largest + 1) / 2 + smallest);
  }

  std::array<double, 256> m_fractions;
  std::array<ChannelRange, 256 * 257 / 2> m_ranges;
  std::array<RoundedRange, 256 * 257 / 2> m_rounded;
};
// Vector code reads the two as a pair.
static_assert(sizeof(ChannelRange) == 2 * sizeof(Single));

}  // namespace quillet
