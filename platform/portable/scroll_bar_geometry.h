#pragma once

#include "base/types.h"

namespace quillet {

// BareTrough: the whole trough of a bar without thumb.
enum class ScrollBarPart {
  BackArrow,
  BackTrough,
  Thumb,
  ForwardTrough,
  ForwardArrow,
  BareTrough,
};

// Where the parts of a scroll bar lie along it, in pixels from its left or top end: an arrow, the
// trough with the thumb in it, an arrow. The thumb is to the trough as LargeChange is to the
// content (the range and LargeChange); it shows Min at the near end of the trough and Max at the
// far one, whichever is greater.
class ScrollBarGeometry {
 public:
  struct State {
    Integer min = 0, max = 0, value = 0, largeChange = 1;
  };

  ScrollBarGeometry(int length, const State& state);

  int ArrowLength() const noexcept { return m_arrowLength; }
  int TroughLength() const noexcept { return m_troughLength; }
  // False when Min and Max are the same.
  bool Scrolls() const noexcept { return m_min != m_max; }
  // False when there is nothing to scroll or no room.
  bool HasThumb() const noexcept { return m_thumbLength > 0; }
  int ThumbStart() const noexcept { return m_thumbStart; }
  int ThumbLength() const noexcept { return m_thumbLength; }

  // The part at that distance, for 0 <= position < length.
  ScrollBarPart PartAt(int position) const noexcept;
  // The value that the thumb shows when it is moved from where `value` puts it.
  Integer ValueAfterMove(Integer value, int pixels) const;

 private:
  int m_min;
  int m_max;
  int m_arrowLength;
  int m_troughLength;
  int m_thumbLength = 0;
  int m_thumbStart = 0;
};

}  // namespace quillet
