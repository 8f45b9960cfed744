#pragma once

#include <cstddef>

#include "base/types.h"
#include "picture/kernels/x86.h"
#include "platform/portable/resample_plans.h"

// The arithmetic of resampling.
//
// Between its two passes a channel is a Level: its value times 128, rounded. A row of levels has
// kLevelPadding readable levels behind its last.
//
// Average (an axis that shrinks, by old / new = r > 1): target pixel t covers the source interval
// [t r, (t + 1) r), which takes part of a first and of a last source pixel and all of those
// between. The weights are the shares of the interval, each rounded to a multiple of 2^-bits; the
// sum of weight times value is exact, and rounded once, halves up. What is rounded to a pixel lies
// within 1/256 of a grey level of the exact average, all but nothing of it from the rounding to
// levels; only where both axes shrink near kNarrowRatio times may the weights add as much again.
// One colour stays that colour.
//
// Blend (an axis that grows or keeps its size): a + ((b - a) w + 2^14 >> 15) of two neighbouring
// levels, w the distance from the first in multiples of 2^-15, below 1.
namespace quillet::resample {

// Widths in pixels, counts in channels.
struct Kernels {
  // Averages whole rows; `rows` is the picture's first.
  void (*AverageRows)(const Byte* rows, std::ptrdiff_t stride, const Span& span,
                      const SpanScale& scale, std::ptrdiff_t count, Level* target);

  // Averages within one row.
  void (*AverageLevels)(const Level* source, const AveragePlan& plan, Byte* target);
  void (*AverageBytes)(const Byte* source, const AveragePlan& plan, Level* target);

  // Blends within one row.
  void (*BlendLevels)(const Level* source, const BlendPlan& plan, Byte* target);
  void (*BlendBytes)(const Byte* source, const BlendPlan& plan, Level* target);

  // Blends two rows.
  void (*BlendRows)(const Level* a, const Level* b, Long weight, std::ptrdiff_t count,
                    Byte* target);
  // The same past the cache: for a target larger than it.
  void (*StreamBlendedRows)(const Level* a, const Level* b, Long weight, std::ptrdiff_t count,
                            Byte* target);

  // Both passes at once for a picture that shrinks to exactly half either way: (sum of four + 2)
  // / 4.
  void (*HalveRows)(const Byte* upper, const Byte* lower, Long newWidth, Byte* target);
};

namespace scalar {

void AverageRows(const Byte* rows, std::ptrdiff_t stride, const Span& span, const SpanScale& scale,
                 std::ptrdiff_t count, Level* target);
void AverageLevels(const Level* source, const AveragePlan& plan, Byte* target);
void AverageBytes(const Byte* source, const AveragePlan& plan, Level* target);
void BlendLevels(const Level* source, const BlendPlan& plan, Byte* target);
void BlendBytes(const Byte* source, const BlendPlan& plan, Level* target);
// The same from a given target pixel on.
void AverageLevelsFrom(Long x, const Level* source, const AveragePlan& plan, Byte* target);
void AverageBytesFrom(Long x, const Byte* source, const AveragePlan& plan, Level* target);
void BlendBytesFrom(Long x, const Byte* source, const BlendPlan& plan, Level* target);
void BlendRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count, Byte* target);
void HalveRows(const Byte* upper, const Byte* lower, Long newWidth, Byte* target);

}  // namespace scalar

#ifdef QUILLET_X86
namespace avx2 {

void AverageRows(const Byte* rows, std::ptrdiff_t stride, const Span& span, const SpanScale& scale,
                 std::ptrdiff_t count, Level* target);
void AverageLevels(const Level* source, const AveragePlan& plan, Byte* target);
void AverageBytes(const Byte* source, const AveragePlan& plan, Level* target);
void BlendBytes(const Byte* source, const BlendPlan& plan, Level* target);
void BlendRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count, Byte* target);
void StreamBlendedRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count,
                       Byte* target);
void HalveRows(const Byte* upper, const Byte* lower, Long newWidth, Byte* target);

}  // namespace avx2
#endif

}  // namespace quillet::resample
