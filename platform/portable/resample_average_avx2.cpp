#include "platform/portable/resample_kernels.h"

#ifdef QUILLET_X86

#include <immintrin.h>

// Averages within one row, two target pixels at a time, a half of each vector for either. The sum
// of weight times value runs in two parts, of the weights' high and low bits, each within 32 bits:
// 257 pixels of 32640 with low weights up to 511 stay below 2^32, high weights add up to 2^15.
namespace quillet::resample::avx2 {
namespace {

// Two neighbouring pixels at either place, as pairs of 16 bits for each channel.
__m256i LoadPairs(const Level* one, const Level* other) {
  const __m256i pair = _mm256_setr_epi8(0, 1, 6, 7, 2, 3, 8, 9, 4, 5, 10, 11, -1, -1, -1, -1,  //
                                        0, 1, 6, 7, 2, 3, 8, 9, 4, 5, 10, 11, -1, -1, -1, -1);
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(one));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(other));
  return _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1), pair);
}

__m256i LoadPairs(const Byte* one, const Byte* other) {
  const __m256i pair = _mm256_setr_epi8(0, -1, 3, -1, 1, -1, 4, -1, 2, -1, 5, -1, -1, -1, -1, -1, 0,
                                        -1, 3, -1, 1, -1, 4, -1, 2, -1, 5, -1, -1, -1, -1, -1);
  const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(one));
  const __m128i high = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(other));
  return _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1), pair);
}

// The sums rounded, halves up, to values whose last bit counts 2^drop.
__m256i Rounded(__m256i high, __m256i low, int drop) {
  const int shift = drop - kLowWeightBits;
  const __m256i sum = _mm256_add_epi32(high, _mm256_srli_epi32(low, kLowWeightBits));
  return _mm256_srli_epi32(_mm256_add_epi32(sum, _mm256_set1_epi32(1 << (shift - 1))), shift);
}

// One value more than the pixel's is written, which the next pixel mends.
void StorePixels(__m256i values, Byte* target) {
  const __m256i bytes = _mm256_packus_epi16(_mm256_packus_epi32(values, values), values);
  const int one = _mm256_extract_epi32(bytes, 0);
  const int other = _mm256_extract_epi32(bytes, 4);
  __builtin_memcpy(target, &one, sizeof one);
  __builtin_memcpy(target + 3, &other, sizeof other);
}

void StorePixels(__m256i values, Level* target) {
  const __m256i levels = _mm256_packus_epi32(values, values);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(target), _mm256_castsi256_si128(levels));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(target + 3), _mm256_extracti128_si256(levels, 1));
}

// As many target pixels as can be had without reading `readable` values of the row or more, or
// writing beyond its last pixel; returns how many.
template <typename Source, typename Target>
Long AveragePairs(const Source* source, const AveragePlan& plan, std::ptrdiff_t readable, int drop,
                  Target* target) {
  const Long newWidth = static_cast<Long>(plan.at.size());
  const std::ptrdiff_t reach = 6 * std::ptrdiff_t{plan.pairsEach} + 2;
  const PairWeights* weights = plan.pairs.data();
  Long x = 0;
  if (plan.pairsEach == 0) return x;
  for (; x + 2 < newWidth; x += 2) {
    const Source* one = source + 3 * std::ptrdiff_t{plan.at[static_cast<std::size_t>(x)].first};
    const std::ptrdiff_t begin = 3 * std::ptrdiff_t{plan.at[static_cast<std::size_t>(x) + 1].first};
    if (begin + reach > readable) break;
    const Source* other = source + begin;
    __m256i high = _mm256_setzero_si256();
    __m256i low = _mm256_setzero_si256();
    for (int i = 0; i < plan.pairsEach; ++i, ++weights, one += 6, other += 6) {
      const __m256i pairs = LoadPairs(one, other);
      const auto* weight = reinterpret_cast<const __m256i*>(weights);
      high = _mm256_add_epi32(high, _mm256_madd_epi16(pairs, _mm256_loadu_si256(weight)));
      low = _mm256_add_epi32(low, _mm256_madd_epi16(pairs, _mm256_loadu_si256(weight + 1)));
    }
    StorePixels(Rounded(high, low, drop), target + 3 * std::ptrdiff_t{x});
  }
  return x;
}

}  // namespace

void AverageLevels(const Level* source, const AveragePlan& plan, Byte* target) {
  const std::ptrdiff_t readable = 3 * std::ptrdiff_t{plan.size} + kLevelPadding;
  const Long done = AveragePairs(source, plan, readable, kNarrowWeightBits + kLevelBits, target);
  scalar::AverageLevelsFrom(done, source, plan, target);
}

void AverageBytes(const Byte* source, const AveragePlan& plan, Level* target) {
  const std::ptrdiff_t readable = 3 * std::ptrdiff_t{plan.size};
  const Long done = AveragePairs(source, plan, readable, kNarrowWeightBits - kLevelBits, target);
  scalar::AverageBytesFrom(done, source, plan, target);
}

}  // namespace quillet::resample::avx2

#endif
