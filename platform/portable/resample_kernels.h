#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/types.h"
#include "picture/kernels/x86.h"

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

using Level = std::int16_t;
inline constexpr int kLevelBits = 7;
inline constexpr std::ptrdiff_t kLevelPadding = 8;

// The source pixels under one target pixel, and the weights of the outer two. A single pixel has
// first = last, weightFirst 1 and weightLast 0.
struct Span {
  Long first = 0;
  Long last = 0;
  std::uint64_t weightFirst = 0;
  std::uint64_t weightLast = 0;
};

// Up to kNarrowRatio the sum over rows fits 32 bits; beyond, finer weights take 64.
inline constexpr int kNarrowWeightBits = 24;
inline constexpr int kWideWeightBits = 40;
inline constexpr Long kNarrowRatio = 256;

// What all spans of an axis have in common: the weight of the pixels between, and the unit.
struct SpanScale {
  std::uint64_t weightInner = 0;
  int bits = kNarrowWeightBits;
};

// Where one target pixel lies: between source pixels `first` and first + 1. The second counts only
// where the weight is not 0.
struct Position {
  std::int32_t first = 0;
  std::int32_t weight = 0;
};

// How to blend 16 channels, from two places of a source row, eight each.
struct BlendStep {
  std::int32_t offset[2];   // in bytes; 16 can be read at either
  Byte take[16];            // which of those is the first pixel's; the second's lies 3 further on
  std::int16_t weight[16];  // as in Position
};
inline constexpr Long kBlendStepPixels = 16;  // three steps

// An axis that grows or keeps its size.
struct BlendPlan {
  BlendPlan(Long size, Long newSize);

  Long size;
  std::vector<Position> at;
  // For as many whole kBlendStepPixels of a row as there are; none for rows that are too short.
  std::vector<BlendStep> steps;
};

// Widths in pixels, counts in channels.
struct Kernels {
  // Averages whole rows; `rows` is the picture's first.
  void (*AverageRows)(const Byte* rows, std::ptrdiff_t stride, const Span& span,
                      const SpanScale& scale, std::ptrdiff_t count, Level* target);

  // Averages within one row.
  void (*AverageLevels)(const Level* source, const Span* spans, const SpanScale& scale,
                        Long newWidth, Byte* target);
  void (*AverageBytes)(const Byte* source, const Span* spans, const SpanScale& scale, Long newWidth,
                       Level* target);

  // Blends within one row.
  void (*BlendLevels)(const Level* source, const BlendPlan& plan, Byte* target);
  void (*BlendBytes)(const Byte* source, const BlendPlan& plan, Level* target);

  // Blends two rows.
  void (*BlendRows)(const Level* a, const Level* b, Long weight, std::ptrdiff_t count,
                    Byte* target);

  // Both passes at once for a picture that shrinks to exactly half either way: (sum of four + 2)
  // / 4.
  void (*HalveRows)(const Byte* upper, const Byte* lower, Long newWidth, Byte* target);
};

namespace scalar {

void AverageRows(const Byte* rows, std::ptrdiff_t stride, const Span& span, const SpanScale& scale,
                 std::ptrdiff_t count, Level* target);
void AverageLevels(const Level* source, const Span* spans, const SpanScale& scale, Long newWidth,
                   Byte* target);
void AverageBytes(const Byte* source, const Span* spans, const SpanScale& scale, Long newWidth,
                  Level* target);
void BlendLevels(const Level* source, const BlendPlan& plan, Byte* target);
void BlendBytes(const Byte* source, const BlendPlan& plan, Level* target);
// The same from a given target pixel on.
void BlendBytesFrom(Long x, const Byte* source, const BlendPlan& plan, Level* target);
void BlendRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count, Byte* target);
void HalveRows(const Byte* upper, const Byte* lower, Long newWidth, Byte* target);

}  // namespace scalar

#ifdef QUILLET_X86
namespace avx2 {

void AverageRows(const Byte* rows, std::ptrdiff_t stride, const Span& span, const SpanScale& scale,
                 std::ptrdiff_t count, Level* target);
void AverageLevels(const Level* source, const Span* spans, const SpanScale& scale, Long newWidth,
                   Byte* target);
void BlendBytes(const Byte* source, const BlendPlan& plan, Level* target);
void BlendRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count, Byte* target);
void HalveRows(const Byte* upper, const Byte* lower, Long newWidth, Byte* target);

}  // namespace avx2
#endif

}  // namespace quillet::resample
