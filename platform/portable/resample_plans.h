#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/types.h"

// What resampling works out once for an axis; resample_kernels.h says what it means.
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

// The weights of two neighbouring source pixels for each of two target pixels, a half each, both
// weights once for every channel; split so that a product of 16 bits takes them.
struct PairWeights {
  std::int16_t high[16];  // multiples of 2^kLowWeightBits
  std::int16_t low[16];   // the rest
};
inline constexpr int kLowWeightBits = 9;

// An axis that shrinks or keeps its size.
struct AveragePlan {
  AveragePlan(Long size, Long newSize);

  Long size;
  SpanScale scale;
  std::vector<Span> at;
  // `pairsEach` pairs of source pixels, from a span's first on, take in any span; so many weights
  // follow each other for every two target pixels. None beyond kNarrowRatio.
  int pairsEach = 0;
  std::vector<PairWeights> pairs;
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

}  // namespace quillet::resample
