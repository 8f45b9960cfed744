#include <algorithm>

#include "platform/portable/resample_kernels.h"

namespace quillet::resample::scalar {
namespace {

// Fraction bits of the kinds a value can have.
template <typename Value>
constexpr int kFractionBits = sizeof(Value) == sizeof(Level) ? kLevelBits : 0;

// The nearest value of the target kind, halves up.
template <typename Target>
Target Rounded(std::uint64_t sum, int fractionBits) {
  const int drop = fractionBits - kFractionBits<Target>;
  return static_cast<Target>((sum + (std::uint64_t{1} << (drop - 1))) >> drop);
}

template <typename Source, typename Target>
void AverageColumns(Long x, const Source* source, const AveragePlan& plan, Target* target) {
  const SpanScale& scale = plan.scale;
  target += 3 * std::ptrdiff_t{x};
  for (auto at = plan.at.begin() + x; at != plan.at.end(); ++at) {
    const Span& span = *at;
    const Source* first = source + 3 * std::ptrdiff_t{span.first};
    const Source* last = source + 3 * std::ptrdiff_t{span.last};
    for (int channel = 0; channel < 3; ++channel) {
      std::uint64_t inner = 0;
      for (const Source* p = first + 3; p < last; p += 3) {
        inner += static_cast<std::uint64_t>(p[channel]);
      }
      const std::uint64_t sum = static_cast<std::uint64_t>(first[channel]) * span.weightFirst +
                                inner * scale.weightInner +
                                static_cast<std::uint64_t>(last[channel]) * span.weightLast;
      *target++ = Rounded<Target>(sum, scale.bits + kFractionBits<Source>);
    }
  }
}

// The level between a and b. Neither the product nor the difference leaves 32 bits.
int Blend(int a, int b, int weight) {
  return a + (((b - a) * weight + (1 << 14)) >> 15);
}

template <typename Source, typename Target>
void BlendColumns(Long x, const Source* source, const BlendPlan& plan, Target* target) {
  constexpr int widen = kLevelBits - kFractionBits<Source>;
  target += 3 * std::ptrdiff_t{x};
  for (auto at = plan.at.begin() + x; at != plan.at.end(); ++at) {
    const auto [index, weight] = *at;
    const Source* first = source + 3 * std::ptrdiff_t{index};
    const Source* second = weight == 0 ? first : first + 3;
    for (int channel = 0; channel < 3; ++channel) {
      const int level = Blend(first[channel] << widen, second[channel] << widen, weight);
      if constexpr (kFractionBits<Target> == kLevelBits) {
        *target++ = static_cast<Target>(level);
      } else {
        *target++ = Rounded<Target>(static_cast<std::uint64_t>(level), kLevelBits);
      }
    }
  }
}

}  // namespace

void AverageRows(const Byte* rows, std::ptrdiff_t stride, const Span& span, const SpanScale& scale,
                 std::ptrdiff_t count, Level* target) {
  // In pieces, so that a tall span is walked by cache lines.
  constexpr std::ptrdiff_t kPiece = 64;
  for (std::ptrdiff_t begin = 0; begin < count; begin += kPiece) {
    const std::ptrdiff_t size = std::min(kPiece, count - begin);
    const Byte* first = rows + span.first * stride + begin;
    const Byte* last = rows + span.last * stride + begin;
    std::uint64_t inner[kPiece] = {};
    for (const Byte* row = first + stride; span.first < span.last && row != last; row += stride) {
      for (std::ptrdiff_t i = 0; i < size; ++i) inner[i] += row[i];
    }
    for (std::ptrdiff_t i = 0; i < size; ++i) {
      const std::uint64_t sum =
          first[i] * span.weightFirst + inner[i] * scale.weightInner + last[i] * span.weightLast;
      target[begin + i] = Rounded<Level>(sum, scale.bits);
    }
  }
}

void AverageLevels(const Level* source, const AveragePlan& plan, Byte* target) {
  AverageColumns(0, source, plan, target);
}

void AverageLevelsFrom(Long x, const Level* source, const AveragePlan& plan, Byte* target) {
  AverageColumns(x, source, plan, target);
}

void AverageBytes(const Byte* source, const AveragePlan& plan, Level* target) {
  AverageColumns(0, source, plan, target);
}

void AverageBytesFrom(Long x, const Byte* source, const AveragePlan& plan, Level* target) {
  AverageColumns(x, source, plan, target);
}

void BlendLevels(const Level* source, const BlendPlan& plan, Byte* target) {
  BlendColumns(0, source, plan, target);
}

void BlendBytes(const Byte* source, const BlendPlan& plan, Level* target) {
  BlendColumns(0, source, plan, target);
}

void BlendBytesFrom(Long x, const Byte* source, const BlendPlan& plan, Level* target) {
  BlendColumns(x, source, plan, target);
}

void BlendRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count, Byte* target) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    target[i] = Rounded<Byte>(static_cast<std::uint64_t>(Blend(a[i], b[i], weight)), kLevelBits);
  }
}

void HalveRows(const Byte* upper, const Byte* lower, Long newWidth, Byte* target) {
  for (Long x = 0; x < newWidth; ++x, upper += 6, lower += 6, target += 3) {
    for (int channel = 0; channel < 3; ++channel) {
      const int sum = upper[channel] + upper[channel + 3] + lower[channel] + lower[channel + 3];
      target[channel] = static_cast<Byte>((sum + 2) >> 2);
    }
  }
}

}  // namespace quillet::resample::scalar
