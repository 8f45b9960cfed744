#include "platform/portable/resample_kernels.h"

#ifdef QUILLET_X86

#include <immintrin.h>

#include <algorithm>
#include <cstdint>

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

// Asks for the cache line at that distance, which may lie outside the picture.
void Prefetch(const Byte* base, std::ptrdiff_t distance) {
  const auto at = reinterpret_cast<std::uintptr_t>(base) + static_cast<std::uintptr_t>(distance);
  _mm_prefetch(reinterpret_cast<const char*>(at), _MM_HINT_T0);
}

// 16 bytes, each in 16 bits.
__m256i LoadWidened(const Byte* from) {
  return _mm256_cvtepu8_epi16(Load16(from));
}

__m256i LoadLevels(const Level* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
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
  // The rows of the next span, which the processor does not foresee.
  const std::ptrdiff_t nextSpan = last - first;
  std::ptrdiff_t i = 0;
  for (; i + 32 <= count; i += 32) {
    // At most 255 rows: the sums fit 16 bits.
    __m256i low = _mm256_setzero_si256();
    __m256i high = _mm256_setzero_si256();
    const Byte* row = first + i;
    Prefetch(last + i, nextSpan);
    for (Long y = span.first + 1; y < span.last; ++y) {
      row += stride;
      Prefetch(row, nextSpan);
      low = _mm256_add_epi16(low, LoadWidened(row));
      high = _mm256_add_epi16(high, LoadWidened(row + 16));
    }
    AverageSixteen(first + i, low, last + i, weight, target + i);
    AverageSixteen(first + i + 16, high, last + i + 16, weight, target + i + 16);
  }
  scalar::AverageRows(rows + i, stride, span, scale, count - i, target + i);
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

namespace {

template <bool kStreams>
void BlendRowsTo(const Level* a, const Level* b, Long weight, std::ptrdiff_t count, Byte* target) {
  const __m256i weights = _mm256_set1_epi16(static_cast<std::int16_t>(weight));
  const __m256i half = _mm256_set1_epi16(1 << (kLevelBits - 1));
  const auto blend = [=](const Level* first, const Level* second) {
    const __m256i from = LoadLevels(first);
    const __m256i step = _mm256_mulhrs_epi16(_mm256_sub_epi16(LoadLevels(second), from), weights);
    return _mm256_srli_epi16(_mm256_add_epi16(_mm256_add_epi16(from, step), half), kLevelBits);
  };
  std::ptrdiff_t i = 0;
  if constexpr (kStreams) {
    // Streaming stores go to multiples of 32.
    const auto beyond = static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(target) % 32);
    i = beyond == 0 ? 0 : std::min(32 - beyond, count);
    scalar::BlendRows(a, b, weight, i, target);
  }
  for (; i + 32 <= count; i += 32) {
    const __m256i packed = _mm256_packus_epi16(blend(a + i, b + i), blend(a + i + 16, b + i + 16));
    const __m256i bytes = _mm256_permute4x64_epi64(packed, 0xD8);
    auto* const to = reinterpret_cast<__m256i*>(target + i);
    if constexpr (kStreams)
      _mm256_stream_si256(to, bytes);
    else
      _mm256_storeu_si256(to, bytes);
  }
  scalar::BlendRows(a + i, b + i, weight, count - i, target + i);
}

}  // namespace

void BlendRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count, Byte* target) {
  BlendRowsTo<false>(a, b, weight, count, target);
}

void StreamBlendedRows(const Level* a, const Level* b, Long weight, std::ptrdiff_t count,
                       Byte* target) {
  BlendRowsTo<true>(a, b, weight, count, target);
  _mm_sfence();
}

}  // namespace quillet::resample::avx2

#endif
