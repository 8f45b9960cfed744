#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include <emmintrin.h>

#include <cstring>

// Four pixels at a time, each in the low three bytes of a 32-bit element.
namespace quillet::sse2 {
namespace {

// The top bytes of the elements are of no pixel. Reads 16 bytes, 4 more than the pixels have.
__m128i LoadSpread(const Byte* from) {
  const __m128i packed = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  const __m128i first = _mm_unpacklo_epi32(packed, _mm_srli_si128(packed, 3));
  const __m128i last = _mm_unpacklo_epi32(_mm_srli_si128(packed, 6), _mm_srli_si128(packed, 9));
  return _mm_unpacklo_epi64(first, last);
}

// Elements whose low three bytes are equal.
void StorePackedGray(Byte* to, __m128i wide) {
  // Pairs of pixels side by side, then the upper pair beside the lower one.
  const __m128i pairs =
      _mm_or_si128(_mm_and_si128(wide, _mm_set1_epi64x(0xFFFFFF)),
                   _mm_and_si128(_mm_srli_epi64(wide, 8), _mm_set1_epi64x(0xFFFFFF000000)));
  const __m128i packed =
      _mm_or_si128(_mm_move_epi64(pairs), _mm_slli_si128(_mm_srli_si128(pairs, 8), 6));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to), packed);
  const int last = _mm_cvtsi128_si32(_mm_srli_si128(packed, 8));
  std::memcpy(to + 8, &last, sizeof last);
}

// sum / 1000, exact for sums up to 262143.
__m128i Thousandth(__m128i sum) {
  return _mm_srli_epi32(_mm_mulhi_epu16(_mm_srli_epi32(sum, 3), _mm_set1_epi32(33555)), 6);
}

}  // namespace

void GrayScale(Byte* row, Long width) {
  const __m128i blueRedWeights = _mm_set1_epi32(71 | 222 << 16);
  const __m128i greenWeights = _mm_set1_epi32(707);
  const __m128i nearlyHalf = _mm_set1_epi32(499);
  for (; width >= 6; width -= 4, row += 12) {
    const __m128i pixels = LoadSpread(row);
    const __m128i blueRed = _mm_and_si128(pixels, _mm_set1_epi32(0xFF00FF));
    const __m128i green = _mm_srli_epi16(pixels, 8);
    const __m128i sum = _mm_add_epi32(
        _mm_add_epi32(_mm_madd_epi16(blueRed, blueRedWeights), _mm_madd_epi16(green, greenWeights)),
        nearlyHalf);
    const __m128i halvesDown = Thousandth(sum);
    const __m128i isOdd = _mm_and_si128(halvesDown, _mm_set1_epi32(1));
    const __m128i gray = Thousandth(_mm_add_epi32(sum, isOdd));
    const __m128i twice = _mm_or_si128(gray, _mm_slli_epi32(gray, 8));
    StorePackedGray(row, _mm_or_si128(twice, _mm_slli_epi32(gray, 16)));
  }
  scalar::GrayScale(row, width);
}

void BlackWhite(Byte* row, Long width) {
  const __m128i from = _mm_set1_epi32(kWhiteFrom | kWhiteFrom << 8 | kWhiteFrom << 16);
  for (; width >= 6; width -= 4, row += 12) {
    const __m128i pixels = LoadSpread(row);
    const __m128i light = _mm_cmpeq_epi8(_mm_max_epu8(pixels, from), pixels);
    const __m128i lightChannels = _mm_and_si128(light, _mm_set1_epi32(0xFFFFFF));
    const __m128i isBlack = _mm_cmpeq_epi32(lightChannels, _mm_setzero_si128());
    StorePackedGray(row, _mm_xor_si128(isBlack, _mm_set1_epi32(-1)));
  }
  scalar::BlackWhite(row, width);
}

}  // namespace quillet::sse2

#endif
