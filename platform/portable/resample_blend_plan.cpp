#include <algorithm>

#include "platform/portable/resample_kernels.h"

namespace quillet::resample {
namespace {

// Target pixel t has its centre at (t + 1/2) size / newSize - 1/2.
std::vector<Position> Positions(Long size, Long newSize) {
  std::vector<Position> positions(static_cast<std::size_t>(newSize));
  const std::int64_t unit = 2 * std::int64_t{newSize};
  std::int64_t centre = std::int64_t{size} - newSize;
  for (Position& position : positions) {
    if (centre > 0) {
      std::int64_t first = centre / unit;
      std::int64_t weight = (((centre % unit) << 15) + newSize) / unit;
      if (weight == 1 << 15) {
        ++first;
        weight = 0;
      }
      if (first >= size - 1) {
        first = size - 1;
        weight = 0;
      }
      position = {static_cast<std::int32_t>(first), static_cast<std::int32_t>(weight)};
    }
    centre += 2 * std::int64_t{size};
  }
  return positions;
}

// Eight channels lie within four target pixels, these within five source pixels: 15 bytes. Where
// the second pixel does not count it may lie beyond the 16 bytes; whatever is taken then has weight
// 0.
std::vector<BlendStep> Steps(const std::vector<Position>& at, Long size) {
  constexpr std::int32_t kRead = 16;
  const std::int64_t rowBytes = 3 * std::int64_t{size};
  if (rowBytes < kRead || rowBytes > std::int64_t{1} << 31) return {};
  std::vector<BlendStep> steps(at.size() / kBlendStepPixels * 3);
  std::size_t channel = 0;
  for (BlendStep& step : steps) {
    for (int half = 0; half < 2; ++half) {
      const std::int32_t last = static_cast<std::int32_t>(rowBytes - kRead);
      step.offset[half] = std::min(3 * at[channel / 3].first, last);
      for (int i = 8 * half; i < 8 * half + 8; ++i, ++channel) {
        const Position& position = at[channel / 3];
        const std::int32_t byte = 3 * position.first + static_cast<std::int32_t>(channel % 3);
        step.take[i] = static_cast<Byte>(byte - step.offset[half]);
        step.weight[i] = static_cast<std::int16_t>(position.weight);
      }
    }
  }
  return steps;
}

}  // namespace

BlendPlan::BlendPlan(Long from, Long to)
    : size(from), at(Positions(from, to)), steps(Steps(at, from)) {}

}  // namespace quillet::resample
