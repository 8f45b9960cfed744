#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include <emmintrin.h>

#include <cstring>

// Four pixels at a time, each in the low three bytes of a 32-bit element.
namespace quillet::sse2 {
namespace {

__m128i LoadFour(const Byte* from) {
  int bytes;
  std::memcpy(&bytes, from, sizeof bytes);
  return _mm_cvtsi32_si128(bytes);
}

// The top bytes of the elements are of no pixel. Reads 13 bytes, 1 more than the pixels have.
__m128i LoadSpread(const Byte* from) {
  return _mm_unpacklo_epi64(_mm_unpacklo_epi32(LoadFour(from), LoadFour(from + 3)),
                            _mm_unpacklo_epi32(LoadFour(from + 6), LoadFour(from + 9)));
}

// The 12 bytes of four pixels, given as elements of four equal bytes; the last 4 are 0.
__m128i PackGray(__m128i gray) {
  // The bytes 0 0 0 1, 1 1 2 2, 2 3 3 3: of each element and of the next one.
  const __m128i own = _mm_setr_epi32(0xFFFFFF, 0xFFFF, 0xFF, 0);
  const __m128i next = _mm_shuffle_epi32(gray, _MM_SHUFFLE(3, 3, 2, 1));
  const __m128i others = _mm_setr_epi32(~0xFFFFFF, ~0xFFFF, ~0xFF, 0);
  return _mm_or_si128(_mm_and_si128(own, gray), _mm_and_si128(others, next));
}

// Twice four pixels whose elements have four equal bytes.
void StoreGray(Byte* to, __m128i left, __m128i right) {
  const __m128i first = PackGray(left);
  const __m128i second = PackGray(right);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_or_si128(first, _mm_slli_si128(second, 12)));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 16), _mm_srli_si128(second, 4));
}

// 125 times HalfEvenThousandth of four pixels, and less than 125 more.
__m128i GrayTimes125(const Byte* from) {
  const __m128i blueRedWeights = _mm_set1_epi32(71 | 222 << 16);
  const __m128i greenWeights = _mm_set1_epi32(707);
  const __m128i pixels = LoadSpread(from);
  const __m128i blueRed = _mm_and_si128(pixels, _mm_set1_epi32(0xFF00FF));
  const __m128i green = _mm_srli_epi16(pixels, 8);
  const __m128i nearly = _mm_add_epi32(
      _mm_add_epi32(_mm_madd_epi16(blueRed, blueRedWeights), _mm_madd_epi16(green, greenWeights)),
      _mm_set1_epi32(499));
  const __m128i isOdd = _mm_and_si128(_mm_srli_epi32(nearly, 3), _mm_set1_epi32(1));
  return _mm_srli_epi32(_mm_add_epi32(nearly, isOdd), 3);
}

}  // namespace

void GrayScale(Byte* row, Long width) {
  // 33555 is 2^22 / 125, rounded up, and exact up to 59000.
  const __m128i factor = _mm_set1_epi16(static_cast<short>(33555));
  const __m128i inBothBytes = _mm_set1_epi16(0x0101);
  for (; width >= 9; width -= 8, row += 24) {
    const __m128i both = _mm_packs_epi32(GrayTimes125(row), GrayTimes125(row + 12));
    const __m128i gray =
        _mm_mullo_epi16(_mm_srli_epi16(_mm_mulhi_epu16(both, factor), 6), inBothBytes);
    StoreGray(row, _mm_unpacklo_epi16(gray, gray), _mm_unpackhi_epi16(gray, gray));
  }
  scalar::GrayScale(row, width);
}

void BlackWhite(Byte* row, Long width) {
  const __m128i from = _mm_set1_epi32(kWhiteFrom | kWhiteFrom << 8 | kWhiteFrom << 16);
  const auto isWhite = [&](const Byte* four) {
    const __m128i pixels = LoadSpread(four);
    const __m128i light = _mm_cmpeq_epi8(_mm_max_epu8(pixels, from), pixels);
    const __m128i lightChannels = _mm_and_si128(light, _mm_set1_epi32(0xFFFFFF));
    const __m128i isBlack = _mm_cmpeq_epi32(lightChannels, _mm_setzero_si128());
    return _mm_xor_si128(isBlack, _mm_set1_epi32(-1));
  };
  for (; width >= 9; width -= 8, row += 24) StoreGray(row, isWhite(row), isWhite(row + 12));
  scalar::BlackWhite(row, width);
}

}  // namespace quillet::sse2

#endif
