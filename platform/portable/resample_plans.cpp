#include "platform/portable/resample_plans.h"

#include <algorithm>
#include <limits>

namespace quillet::resample {
namespace {

std::vector<Span> SpansOf(Long size, Long newSize, SpanScale& scale) {
  std::vector<Span> spans(static_cast<std::size_t>(newSize));
  if (newSize == size) {
    for (Long i = 0; i < size; ++i) {
      spans[static_cast<std::size_t>(i)] = {i, i, std::uint64_t{1} << scale.bits, 0};
    }
    return spans;
  }
  // In units of which a source pixel has newSize and a target pixel has size.
  const std::int64_t pixel = newSize;
  const std::int64_t length = size;
  if (length > pixel * kNarrowRatio) scale.bits = kWideWeightBits;
  const auto weight = [&](std::int64_t covered) {
    const auto scaled = static_cast<std::uint64_t>(covered) << scale.bits;
    return (scaled + static_cast<std::uint64_t>(length / 2)) / static_cast<std::uint64_t>(length);
  };
  scale.weightInner = weight(pixel);
  std::int64_t begin = 0;
  for (Span& span : spans) {
    const std::int64_t end = begin + length;
    const std::int64_t first = begin / pixel;
    const std::int64_t last = (end - 1) / pixel;
    span = {static_cast<Long>(first), static_cast<Long>(last), weight((first + 1) * pixel - begin),
            weight(end - last * pixel)};
    begin = end;
  }
  return spans;
}

// The weight of one source pixel in a span.
std::uint64_t WeightIn(const Span& span, const SpanScale& scale, Long pixel) {
  if (pixel > span.last) return 0;
  if (pixel == span.last) return span.weightLast;
  return pixel == span.first ? span.weightFirst : scale.weightInner;
}

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

AveragePlan::AveragePlan(Long from, Long to) : size(from), at(SpansOf(from, to, scale)) {
  constexpr std::uint64_t kLargest = std::numeric_limits<std::int16_t>::max();
  if (to >= from || scale.bits != kNarrowWeightBits ||
      scale.weightInner >> kLowWeightBits > kLargest)
    return;
  for (const Span& span : at) {
    pairsEach = std::max(pairsEach, static_cast<int>(span.last - span.first) / 2 + 1);
  }
  const auto each = static_cast<std::size_t>(pairsEach);
  pairs.resize(at.size() / 2 * each);
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    for (std::size_t element = 0; element < 16; ++element) {
      const Span& span = at[i / each * 2 + element / 8];
      const Long pixel = span.first + static_cast<Long>(2 * (i % each) + element % 2);
      const std::uint64_t weight = WeightIn(span, scale, pixel);
      pairs[i].high[element] = static_cast<std::int16_t>(weight >> kLowWeightBits);
      pairs[i].low[element] = static_cast<std::int16_t>(weight % (1u << kLowWeightBits));
    }
  }
}

BlendPlan::BlendPlan(Long from, Long to)
    : size(from), at(Positions(from, to)), steps(Steps(at, from)) {}

}  // namespace quillet::resample
