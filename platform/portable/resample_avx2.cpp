#include "platform/portable/resample_kernels.h"

#ifdef QUILLET_X86

#include <immintrin.h>

// Everything here has internal linkage or is called through the kernel table only: code compiled
// for AVX2 must not be what the linker keeps of an inline function shared with other files.
namespace quillet::resample::avx2 {
namespace {

__m128i Load8(const void* from) {
  return _mm_loadl_epi64(static_cast<const __m128i*>(from));
}

__m128i Load16(const void* from) {
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

// 16 bytes, each in 16 bits.
__m256i LoadWidened(const Byte* from) {
  return _mm256_cvtepu8_epi16(Load16(from));
}

__m256i LoadLevels(const Level* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

void Store4(Byte* to, int value) {
  __builtin_memcpy(to, &value, sizeof value);
}

// The weights of a span of rows, in every element.
struct RowWeights {
  __m256i first, inner, last;
};

// Levels of eight channels in 32 bits.
__m256i AverageEight(const Byte* first, __m128i inner, const Byte* last, const RowWeights& weight) {
  constexpr int drop = kNarrowWeightBits - kLevelBits;
  const __m256i outer =
      _mm256_add_epi32(_mm256_mullo_epi32(_mm256_cvtepu8_epi32(Load8(first)), weight.first),
                       _mm256_mullo_epi32(_mm256_cvtepu8_epi32(Load8(last)), weight.last));
  const __m256i all =
      _mm256_add_epi32(outer, _mm256_mullo_epi32(_mm256_cvtepu16_epi32(inner), weight.inner));
  return _mm256_srli_epi32(_mm256_add_epi32(all, _mm256_set1_epi32(1 << (drop - 1))), drop);
}

void AverageSixteen(const Byte* first, __m256i inner, const Byte* last, const RowWeights& weight,
                    Level* target) {
  const __m256i low = AverageEight(first, _mm256_castsi256_si128(inner), last, weight);
  const __m256i high =
      AverageEight(first + 8, _mm256_extracti128_si256(inner, 1), last + 8, weight);
  const __m256i levels = _mm256_permute4x64_epi64(_mm256_packus_epi32(low, high), 0xD8);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(target), levels);
}

// One weight times the four channels of `levels`: blue and red in 64 bits each, and green.
struct Products {
  __m128i blueRed, green;
};

Products Times(__m128i levels, __m128i weight) {
  return {_mm_mul_epu32(levels, weight), _mm_mul_epu32(_mm_srli_epi64(levels, 32), weight)};
}

// One pixel's levels, each in 32 bits.
__m128i LoadPixel(const Level* from) {
  return _mm_cvtepu16_epi32(Load8(from));
}

__m128i Weight(std::uint64_t weight) {
  // Twice, so that the result stands in the upper half of each sum.
  static_assert(kNarrowWeightBits + kLevelBits == 31);
  return _mm_set1_epi32(static_cast<int>(2 * weight));
}

}  // namespace

void AverageRows(const Byte* rows, std::ptrdiff_t stride, const Span& span, const SpanScale& scale,
                 std::ptrdiff_t count, Level* target) {
  if (scale.bits != kNarrowWeightBits) {
    return scalar::AverageRows(rows, stride, span, scale, count, target);
  }
  const RowWeights weight = {_mm256_set1_epi32(static_cast<int>(span.weightFirst)),
                             _mm256_set1_epi32(static_cast<int>(scale.weightInner)),
                             _mm256_set1_epi32(static_cast<int>(span.weightLast))};
  const Byte* first = rows + span.first * stride;
  const Byte* last = rows + span.last * stride;
  std::ptrdiff_t i = 0;
  for (; i + 32 <= count; i += 32) {
    // At most 255 rows: the sums fit 16 bits.
    __m256i low = _mm256_setzero_si256();
    __m256i high = _mm256_setzero_si256();
    const Byte* row = first + i;
    for (Long y = span.first + 1; y < span.last; ++y) {
      row += stride;
      low = _mm256_add_epi16(low, LoadWidened(row));
      high = _mm256_add_epi16(high, LoadWidened(row + 16));
    }
    AverageSixteen(first + i, low, last + i, weight, target + i);
    AverageSixteen(first + i + 16, high, last + i + 16, weight, target + i + 16);
  }
  scalar::AverageRows(rows + i, stride, span, scale, count - i, target + i);
}

void AverageLevels(const Level* source, const Span* spans, const SpanScale& scale, Long newWidth,
                   Byte* target) {
  if (scale.bits != kNarrowWeightBits) {
    return scalar::AverageLevels(source, spans, scale, newWidth, target);
  }
  const __m128i half = _mm_set1_epi64x(std::int64_t{1} << 31);
  const __m128i weightInner = Weight(scale.weightInner);
  // Bytes of the upper halves' low ends.
  const __m128i takeBlueRed =
      _mm_setr_epi8(4, -1, 12, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i takeGreen =
      _mm_setr_epi8(-1, 4, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  // A store takes one byte more than the pixel, which the next pixel mends.
  for (Long x = 0; x + 1 < newWidth; ++x, target += 3) {
    const Level* at = source + 3 * std::ptrdiff_t{spans[x].first};
    const Level* end = source + 3 * std::ptrdiff_t{spans[x].last};
    const Products first = Times(LoadPixel(at), Weight(spans[x].weightFirst));
    const Products last = Times(LoadPixel(end), Weight(spans[x].weightLast));
    __m128i sum = _mm_setzero_si128();
    for (at += 3; at < end; at += 3) sum = _mm_add_epi32(sum, LoadPixel(at));
    const Products inner = Times(sum, weightInner);
    const __m128i blueRed = _mm_add_epi64(_mm_add_epi64(first.blueRed, last.blueRed),
                                          _mm_add_epi64(inner.blueRed, half));
    const __m128i green =
        _mm_add_epi64(_mm_add_epi64(first.green, last.green), _mm_add_epi64(inner.green, half));
    Store4(target, _mm_cvtsi128_si32(_mm_or_si128(_mm_shuffle_epi8(blueRed, takeBlueRed),
                                                  _mm_shuffle_epi8(green, takeGreen))));
  }
  scalar::AverageLevels(source, spans + newWidth - 1, scale, 1, target);
}

void BlendBytes(const Byte* source, const BlendPlan& plan, Level* target) {
  const __m256i toSecond = _mm256_set1_epi16(3);
  // Each taken byte times 128, in 16 bits.
  const auto levels = [](__m256i bytes, __m256i take) {
    const __m256i wide = _mm256_or_si256(take, _mm256_set1_epi16(std::int16_t(0x8000u)));
    return _mm256_slli_epi16(_mm256_shuffle_epi8(bytes, wide), kLevelBits);
  };
  Level* to = target;
  for (const BlendStep& step : plan.steps) {
    const __m256i bytes =
        _mm256_inserti128_si256(_mm256_castsi128_si256(Load16(source + step.offset[0])),
                                Load16(source + step.offset[1]), 1);
    const __m256i take = LoadWidened(step.take);
    const __m256i weight = LoadLevels(step.weight);
    const __m256i first = levels(bytes, take);
    const __m256i second = levels(bytes, _mm256_add_epi16(take, toSecond));
    const __m256i blend =
        _mm256_add_epi16(first, _mm256_mulhrs_epi16(_mm256_sub_epi16(second, first), weight));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), blend);
    to += 16;
  }
  scalar::BlendBytesFrom(static_cast<Long>(plan.steps.size()) / 3 * kBlendStepPixels, source, plan,
                         target);
}

void BlendRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count, Byte* target) {
  const __m256i weights = _mm256_set1_epi16(static_cast<std::int16_t>(weight));
  const __m256i half = _mm256_set1_epi16(1 << (kLevelBits - 1));
  const auto blend = [=](const Level* first, const Level* second) {
    const __m256i from = LoadLevels(first);
    const __m256i step = _mm256_mulhrs_epi16(_mm256_sub_epi16(LoadLevels(second), from), weights);
    return _mm256_srli_epi16(_mm256_add_epi16(_mm256_add_epi16(from, step), half), kLevelBits);
  };
  std::ptrdiff_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const __m256i bytes = _mm256_packus_epi16(blend(a + i, b + i), blend(a + i + 16, b + i + 16));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(target + i),
                        _mm256_permute4x64_epi64(bytes, 0xD8));
  }
  scalar::BlendRows(a + i, b + i, weight, count - i, target + i);
}

}  // namespace quillet::resample::avx2

#endif
