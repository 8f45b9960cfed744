#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include <emmintrin.h>

#include <cstring>

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

// Words 0, 3 and 6 of one vector, 1, 4 and 7 of the next and 2 and 5 of the third.
__m128i JoinWords(__m128i first, __m128i second, __m128i third) {
  const __m128i firstPlaces = _mm_setr_epi16(-1, 0, 0, -1, 0, 0, -1, 0);
  const __m128i secondPlaces = _mm_setr_epi16(0, -1, 0, 0, -1, 0, 0, -1);
  const __m128i thirdPlaces = _mm_setr_epi16(0, 0, -1, 0, 0, -1, 0, 0);
  return _mm_or_si128(
      _mm_or_si128(_mm_and_si128(first, firstPlaces), _mm_and_si128(second, secondPlaces)),
      _mm_and_si128(third, thirdPlaces));
}

// The weight of a channel, which the compiler does not see: it would put several shifts and
// additions in place of each multiplication.
__m128i Weight(short weight) {
  __m128i weights = _mm_set1_epi16(weight);
  asm("" : "+x"(weights));
  return weights;
}

struct Weights {
  __m128i blue, green, red;
};

Weights WeightsOf(short blue, short green, short red) {
  return {Weight(blue), Weight(green), Weight(red)};
}

// HalfEvenThousandth of GrayTimes1000, of eight pixels given as words.
__m128i GrayOf(__m128i blue, __m128i green, __m128i red, const Weights& ofEighths,
               const Weights& ofRest) {
  const auto sum = [&](const Weights& weights) {
    return _mm_add_epi16(
        _mm_add_epi16(_mm_mullo_epi16(blue, weights.blue), _mm_mullo_epi16(green, weights.green)),
        _mm_mullo_epi16(red, weights.red));
  };
  // The eighths are even, so that the bit which decides half-way is in the rest alone.
  const __m128i eighths = sum(ofEighths);
  const __m128i rest = sum(ofRest);
  const __m128i isOdd = _mm_and_si128(_mm_srli_epi16(rest, 3), _mm_set1_epi16(1));
  const __m128i nearly = _mm_add_epi16(_mm_add_epi16(rest, isOdd), _mm_set1_epi16(499));
  // 33555 is 2^22 / 125, rounded up, and exact up to 59000.
  const __m128i factor = _mm_set1_epi16(static_cast<short>(33555));
  const __m128i times125 = _mm_add_epi16(eighths, _mm_srli_epi16(nearly, 3));
  return _mm_srli_epi16(_mm_mulhi_epu16(times125, factor), 6);
}

}  // namespace

// 16 pixels at a time. Two pixels are three words: blue and green of the even one, its red and the
// odd one's blue, and the odd one's green and red. They are joined to vectors of one kind each, and
// the results put apart in the same way.
void GrayScale(Byte* row, Long width) {
  const auto load = [](const Byte* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  };
  const auto store = [](Byte* to, __m128i bytes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
  };
  const __m128i lowBytes = _mm_set1_epi16(0xFF);
  const __m128i inBothBytes = _mm_set1_epi16(0x0101);
  // 71 = 8 x 8 + 7, 707 = 8 x 88 + 3, 222 = 8 x 26 + 14.
  const Weights ofEighths = WeightsOf(8, 88, 26);
  const Weights ofRest = WeightsOf(7, 3, 14);
  // Reads two bytes of the next pixel.
  for (; width >= 17; width -= 16, row += 48) {
    const __m128i a = load(row), b = load(row + 16), c = load(row + 32);
    const __m128i evenBlueGreen = JoinWords(a, b, c);
    const __m128i redBlue = JoinWords(load(row + 2), load(row + 18), load(row + 34));
    // Rotated by two words, to the places of the others.
    const __m128i oddGreenRed = _mm_shuffle_epi32(JoinWords(b, c, a), _MM_SHUFFLE(0, 3, 2, 1));
    const __m128i even =
        GrayOf(_mm_and_si128(evenBlueGreen, lowBytes), _mm_srli_epi16(evenBlueGreen, 8),
               _mm_and_si128(redBlue, lowBytes), ofEighths, ofRest);
    const __m128i odd = GrayOf(_mm_srli_epi16(redBlue, 8), _mm_and_si128(oddGreenRed, lowBytes),
                               _mm_srli_epi16(oddGreenRed, 8), ofEighths, ofRest);
    const __m128i first = _mm_mullo_epi16(even, inBothBytes);
    const __m128i mixed = _mm_or_si128(even, _mm_slli_epi16(odd, 8));
    const __m128i second = _mm_or_si128(_mm_slli_si128(mixed, 2), _mm_srli_si128(mixed, 14));
    const __m128i third =
        _mm_shuffle_epi32(_mm_mullo_epi16(odd, inBothBytes), _MM_SHUFFLE(2, 1, 0, 3));
    store(row, JoinWords(first, second, third));
    store(row + 16, JoinWords(third, first, second));
    store(row + 32, JoinWords(second, third, first));
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
