#include "platform/portable/scroll_bar_geometry.h"

#include <algorithm>
#include <cstdlib>

#include "base/rounding.h"

namespace quillet {
namespace {

constexpr int kArrowLength = 17;
constexpr int kShortestThumb = 8;

}  // namespace

ScrollBarGeometry::ScrollBarGeometry(int length, const State& state)
    : m_min(state.min),
      m_max(state.max),
      m_arrowLength(std::min(kArrowLength, length / 2)),
      m_troughLength(length - 2 * m_arrowLength) {
  const int range = std::abs(m_max - m_min);
  if (range == 0 || m_troughLength < kShortestThumb) return;
  const double share = static_cast<double>(state.largeChange) / (range + state.largeChange);
  m_thumbLength = std::max(kShortestThumb, ToLong(share * m_troughLength));
  const double done = static_cast<double>(state.value - m_min) / (m_max - m_min);
  m_thumbStart = m_arrowLength + ToLong(done * (m_troughLength - m_thumbLength));
}

ScrollBarPart ScrollBarGeometry::PartAt(int position) const noexcept {
  if (position < m_arrowLength) return ScrollBarPart::BackArrow;
  if (position >= m_arrowLength + m_troughLength) return ScrollBarPart::ForwardArrow;
  if (!HasThumb()) return ScrollBarPart::BareTrough;
  if (position < m_thumbStart) return ScrollBarPart::BackTrough;
  if (position < m_thumbStart + m_thumbLength) return ScrollBarPart::Thumb;
  return ScrollBarPart::ForwardTrough;
}

Integer ScrollBarGeometry::ValueAfterMove(Integer value, int pixels) const {
  const int travel = m_troughLength - m_thumbLength;
  if (!HasThumb() || travel == 0) return value;
  const double moved = value + static_cast<double>(pixels) * (m_max - m_min) / travel;
  const auto [low, high] = std::minmax(m_min, m_max);
  return ToInteger(std::clamp(moved, static_cast<double>(low), static_cast<double>(high)));
}

}  // namespace quillet
