#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include "picture/kernels/vectors_avx2.h"

// 32 pixels at a time, taken apart into their channels: a vector of blue bytes, one of green and
// one of red, the first 16 pixels in the lower half and the others in the upper one. Pixel p is at
// place 3 p mod 16 of its half, where it costs least to bring it.
namespace quillet::avx2 {
namespace {

struct Planes {
  __m256i blue, green, red;
};

Planes LoadPlanes(const Byte* from) {
  const __m256i a = LoadHalves(from, from + 48);
  const __m256i b = LoadHalves(from + 16, from + 64);
  const __m256i c = LoadHalves(from + 32, from + 80);
  // Places whose number leaves 1, or 2, when divided by 3. A channel has its bytes at different
  // places of the three vectors, so that they fit into one.
  const __m256i ones = Both(_mm_setr_epi8(0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0));
  const __m256i twos = Both(_mm_setr_epi8(0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0));
  const auto join = [&](__m256i atZero, __m256i atOne, __m256i atTwo) {
    return _mm256_blendv_epi8(_mm256_blendv_epi8(atZero, atOne, ones), atTwo, twos);
  };
  const __m256i blue = join(a, c, b);
  const __m256i green = join(b, a, c);
  const __m256i red = join(c, b, a);
  return {blue, _mm256_alignr_epi8(green, green, 1), _mm256_alignr_epi8(red, red, 2)};
}

// 32 pixels whose channels are equal.
void StoreGray(Byte* to, __m256i gray) {
  const __m256i first = Both(_mm_setr_epi8(0, 0, 0, 3, 3, 3, 6, 6, 6, 9, 9, 9, 12, 12, 12, 15));
  const __m256i second = Both(_mm_setr_epi8(15, 15, 2, 2, 2, 5, 5, 5, 8, 8, 8, 11, 11, 11, 14, 14));
  const __m256i third = Both(_mm_setr_epi8(14, 1, 1, 1, 4, 4, 4, 7, 7, 7, 10, 10, 10, 13, 13, 13));
  StoreHalves(to, to + 48, _mm256_shuffle_epi8(gray, first));
  StoreHalves(to + 16, to + 64, _mm256_shuffle_epi8(gray, second));
  StoreHalves(to + 32, to + 80, _mm256_shuffle_epi8(gray, third));
}

// Weights of bytes that alternate in a vector.
__m256i Weights(int even, int odd) {
  return _mm256_set1_epi16(static_cast<short>(odd << 8 | even));
}

// HalfEvenThousandth of 16 pixels, given as pairs (blue, green) and (red, 1). The sum with 499,
// which does not fit into 16 bits, is 8 x eighths + rest.
__m256i GrayOf(__m256i blueGreen, __m256i redOne) {
  // 71 = 8 x 8 + 7, 707 = 8 x 88 + 3, 222 = 8 x 27 + 6, 499 = 8 x 62 + 3.
  const __m256i eighths = _mm256_add_epi16(_mm256_maddubs_epi16(blueGreen, Weights(8, 88)),
                                           _mm256_maddubs_epi16(redOne, Weights(27, 62)));
  const __m256i rest = _mm256_add_epi16(_mm256_maddubs_epi16(blueGreen, Weights(7, 3)),
                                        _mm256_maddubs_epi16(redOne, Weights(6, 3)));
  const auto eighthOfAll = [&](__m256i remainder) {
    return _mm256_add_epi16(eighths, _mm256_srli_epi16(remainder, 3));
  };
  const __m256i isOdd = _mm256_and_si256(eighthOfAll(rest), _mm256_set1_epi16(1));
  const __m256i all = eighthOfAll(_mm256_add_epi16(rest, isOdd));
  // all / 125: 33555 is 2^22 / 125, rounded up, and exact up to 59000.
  const __m256i factor = _mm256_set1_epi16(static_cast<short>(33555));
  return _mm256_srli_epi16(_mm256_mulhi_epu16(all, factor), 6);
}

}  // namespace

void GrayScale(Byte* row, Long width) {
  const __m256i one = _mm256_set1_epi8(1);
  for (; width >= 32; width -= 32, row += 96) {
    const Planes pixels = LoadPlanes(row);
    const __m256i low = GrayOf(_mm256_unpacklo_epi8(pixels.blue, pixels.green),
                               _mm256_unpacklo_epi8(pixels.red, one));
    const __m256i high = GrayOf(_mm256_unpackhi_epi8(pixels.blue, pixels.green),
                                _mm256_unpackhi_epi8(pixels.red, one));
    StoreGray(row, _mm256_packus_epi16(low, high));
  }
  sse2::GrayScale(row, width);
}

void BlackWhite(Byte* row, Long width) {
  const __m256i from = _mm256_set1_epi8(static_cast<char>(kWhiteFrom));
  for (; width >= 32; width -= 32, row += 96) {
    const Planes pixels = LoadPlanes(row);
    const __m256i lightest =
        _mm256_max_epu8(_mm256_max_epu8(pixels.blue, pixels.green), pixels.red);
    StoreGray(row, _mm256_cmpeq_epi8(_mm256_max_epu8(lightest, from), lightest));
  }
  sse2::BlackWhite(row, width);
}

}  // namespace quillet::avx2

#endif
