#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include "picture/kernels/vectors_avx2.h"

// 32 pixels at a time, the first 16 in the lower halves of the vectors and the others in the upper
// ones. What is known of pixel p comes to lie at place 3 p mod 16 of its half, where it costs least
// to bring it.
namespace quillet::avx2 {
namespace {

// The 48 bytes of 16 pixels, and those of the 16 after them.
struct Parts {
  __m256i a, b, c;
};

Parts LoadParts(const Byte* from) {
  const __m256i first = Load32(from);
  const __m256i second = Load32(from + 32);
  const __m256i third = Load32(from + 64);
  return {_mm256_blend_epi32(first, second, 0xF0), _mm256_permute2x128_si256(first, third, 0x21),
          _mm256_blend_epi32(second, third, 0xF0)};
}

// 32 pixels whose channels are equal.
void StoreGray(Byte* to, __m256i gray) {
  const __m128i first = _mm_setr_epi8(0, 0, 0, 3, 3, 3, 6, 6, 6, 9, 9, 9, 12, 12, 12, 15);
  const __m128i second = _mm_setr_epi8(15, 15, 2, 2, 2, 5, 5, 5, 8, 8, 8, 11, 11, 11, 14, 14);
  const __m128i third = _mm_setr_epi8(14, 1, 1, 1, 4, 4, 4, 7, 7, 7, 10, 10, 10, 13, 13, 13);
  const __m256i low = _mm256_permute2x128_si256(gray, gray, 0x00);
  const __m256i high = _mm256_permute2x128_si256(gray, gray, 0x11);
  Store32(to, _mm256_shuffle_epi8(low, _mm256_setr_m128i(first, second)));
  Store32(to + 32, _mm256_shuffle_epi8(gray, _mm256_setr_m128i(third, first)));
  Store32(to + 64, _mm256_shuffle_epi8(high, _mm256_setr_m128i(second, third)));
}

// A vector of bytes for each channel.
struct Planes {
  __m256i blue, green, red;
};

Planes LoadPlanes(const Byte* from) {
  const auto [a, b, c] = LoadParts(from);
  // Places whose number leaves 1, or 2, when divided by 3. A channel has its bytes at different
  // places of the three parts, so that they fit into one vector.
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

// Weights of bytes that alternate in a vector.
__m256i Weights(int even, int odd) {
  return _mm256_set1_epi16(static_cast<short>(odd << 8 | even));
}

// 64 times a number whose nearest integer, halves up, is HalfEvenThousandth of GrayTimes1000, which
// is 8 x eighths + rest. For all colours: proved by trying them.
__m256i GrayTimes64(__m256i eighths, __m256i rest) {
  // rest / 8, rounded half to even. That is half-way what the whole needs: the eighths are even.
  const __m256i isEven = _mm256_andnot_si256(_mm256_srli_epi16(rest, 3), _mm256_set1_epi16(1));
  const __m256i rounded =
      _mm256_mulhrs_epi16(_mm256_sub_epi16(rest, isEven), _mm256_set1_epi16(1 << 12));
  // 33554 is 2^22 / 125.
  const __m256i factor = _mm256_set1_epi16(static_cast<short>(33554));
  return _mm256_mulhi_epu16(_mm256_add_epi16(eighths, rounded), factor);
}

}  // namespace

// Two pixels are three words: blue and green of the even one, its red and the odd one's blue, and
// the odd one's green and red. They are joined to vectors of one kind each.
void GrayScale(Byte* row, Long width) {
  constexpr int kFirst = 0b01001001, kSecond = 0b10010010, kThird = 0b00100100;
  const auto sum = [](__m256i pair, __m256i pairWeights, __m256i other, __m256i otherWeights) {
    return _mm256_add_epi16(_mm256_maddubs_epi16(pair, pairWeights),
                            _mm256_maddubs_epi16(other, otherWeights));
  };
  const __m256i oneSixtyFourth = _mm256_set1_epi16(1 << 9);
  for (; width >= 32; width -= 32, row += 96) {
    const auto [a, b, c] = LoadParts(row);
    const __m256i evenBlueGreen = _mm256_blend_epi16(_mm256_blend_epi16(a, b, kSecond), c, kThird);
    const __m256i redBlue = _mm256_blend_epi16(_mm256_blend_epi16(a, b, kThird), c, kFirst);
    const __m256i oddGreenRed = _mm256_blend_epi16(_mm256_blend_epi16(a, b, kFirst), c, kSecond);
    const __m256i evenRed = _mm256_alignr_epi8(redBlue, redBlue, 2);
    const __m256i greenRed = _mm256_alignr_epi8(oddGreenRed, oddGreenRed, 2);
    // 71 = 8 x 8 + 7, 707 = 8 x 88 + 3, 222 = 8 x 26 + 14.
    const __m256i even = GrayTimes64(sum(evenBlueGreen, Weights(8, 88), evenRed, Weights(26, 0)),
                                     sum(evenBlueGreen, Weights(7, 3), evenRed, Weights(14, 0)));
    const __m256i odd = GrayTimes64(sum(greenRed, Weights(88, 26), redBlue, Weights(0, 8)),
                                    sum(greenRed, Weights(3, 14), redBlue, Weights(0, 7)));
    const __m256i evenGray = _mm256_mulhrs_epi16(even, oneSixtyFourth);
    const __m256i oddGray = _mm256_mulhrs_epi16(odd, oneSixtyFourth);
    StoreGray(row, _mm256_or_si256(evenGray, _mm256_slli_epi16(oddGray, 8)));
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
