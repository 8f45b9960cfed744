#include "platform/portable/resample_kernels.h"

#ifdef QUILLET_X86

#include <immintrin.h>

#include <cstdint>

namespace quillet::resample::avx2 {
namespace {

// Asks for the cache line at that distance, which may lie outside the picture.
void Prefetch(const Byte* base, std::ptrdiff_t distance) {
  const auto at = reinterpret_cast<std::uintptr_t>(base) + static_cast<std::uintptr_t>(distance);
  _mm_prefetch(reinterpret_cast<const char*>(at), _MM_HINT_T0);
}

// Twice four pixels, at `left` and at `right`, a half of the result each: the sums of the first two
// and of the last two, in 16 bits a channel.
__m256i SumPairs(const Byte* left, const Byte* right) {
  const __m256i pairs = _mm256_setr_epi8(0, 3, 1, 4, 2, 5, 6, 9, 7, 10, 8, 11, -1, -1, -1, -1,  //
                                         0, 3, 1, 4, 2, 5, 6, 9, 7, 10, 8, 11, -1, -1, -1, -1);
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(left));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(right));
  const __m256i pixels = _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
  return _mm256_maddubs_epi16(_mm256_shuffle_epi8(pixels, pairs), _mm256_set1_epi8(1));
}

__m256i Quarter(__m256i upper, __m256i lower) {
  const __m256i sum = _mm256_add_epi16(_mm256_add_epi16(upper, lower), _mm256_set1_epi16(2));
  return _mm256_srli_epi16(sum, 2);
}

}  // namespace

void HalveRows(const Byte* upper, const Byte* lower, Long newWidth, Byte* target) {
  const __m256i together = _mm256_setr_epi8(0, 1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, -1, -1, -1, -1,
                                            0, 1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, -1, -1, -1, -1);
  // Every other row ends where the processor's own prefetching does not foresee the next one.
  const std::ptrdiff_t twoRows = 12 * std::ptrdiff_t{newWidth};
  // Eight target pixels at a time. The loads and stores take in 4 bytes beyond: what comes after
  // mends those, so one round less than would fit.
  for (; newWidth >= 10; newWidth -= 8, upper += 48, lower += 48, target += 24) {
    Prefetch(upper, twoRows);
    Prefetch(lower, twoRows);
    const __m256i even = Quarter(SumPairs(upper, upper + 24), SumPairs(lower, lower + 24));
    const __m256i odd = Quarter(SumPairs(upper + 12, upper + 36), SumPairs(lower + 12, lower + 36));
    const __m256i bytes = _mm256_shuffle_epi8(_mm256_packus_epi16(even, odd), together);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm256_castsi256_si128(bytes));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + 12), _mm256_extracti128_si256(bytes, 1));
  }
  scalar::HalveRows(upper, lower, newWidth, target);
}

}  // namespace quillet::resample::avx2

#endif
