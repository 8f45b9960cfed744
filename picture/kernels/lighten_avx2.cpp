#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include <immintrin.h>

#include "picture/kernels/lighten_table.h"

// Eight pixels at a time, each channel in 32-bit elements; their fractions four at a time.
namespace quillet::avx2 {
namespace {

// Four pixels in each half of 32 bytes that start 12 bytes apart, in the low three bytes of each
// 32-bit element. Reads 28 bytes, 4 more than the pixels have.
__m256i LoadSpread(const Byte* from) {
  const __m128i spread = _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  const __m256i both = _mm256_inserti128_si256(
      _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))),
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 12)), 1);
  return _mm256_shuffle_epi8(both, _mm256_broadcastsi128_si256(spread));
}

void StorePacked(Byte* to, __m256i wide) {
  const __m128i pack = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  const __m256i together = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7);
  const __m256i packed = _mm256_permutevar8x32_epi32(
      _mm256_shuffle_epi8(wide, _mm256_broadcastsi128_si256(pack)), together);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm256_castsi256_si128(packed));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 16), _mm256_extracti128_si256(packed, 1));
}

// The value as it is when stored in a 32-bit float.
__m256d AsSingle(__m256d value) {
  return _mm256_cvtps_pd(_mm256_cvtpd_ps(value));
}

__m256d Fraction(__m128i channel) {
  return AsSingle(_mm256_mul_pd(_mm256_cvtepi32_pd(channel), _mm256_set1_pd(kChannelUnit)));
}

// Half to even whatever the thread's rounding mode is.
__m128i ToChannel(__m256d fraction) {
  const __m256d value = _mm256_mul_pd(fraction, _mm256_set1_pd(255));
  return _mm256_cvttpd_epi32(_mm256_round_pd(value, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC));
}

// A pixel's channels by size: eight pixels, or four.
struct SortedEight {
  __m256i largest, smallest, middle;
};
struct SortedFour {
  __m128i largest, smallest, middle;
};

// `center` is the place of the largest channel on the circle of hues (red 0, green 2, blue 4),
// below zero where the middle channel lies before it: the hue then counts backwards, which rounds
// alike.
SortedFour LightenFour(const SortedFour& channels, __m128i center, __m128i index,
                       const LightenTable& table) {
  const __m256d lowest = Fraction(channels.smallest);
  // Grey pixels have no middle; what comes out for them is not used, but must not be 0 / 0.
  const __m256d spread = _mm256_max_pd(_mm256_sub_pd(Fraction(channels.largest), lowest),
                                       _mm256_set1_pd(kChannelUnit / 2));
  const __m256d place = _mm256_div_pd(_mm256_sub_pd(Fraction(channels.middle), lowest), spread);
  const __m256d from = _mm256_cvtepi32_pd(center);
  const __m256d rounded = _mm256_sub_pd(AsSingle(_mm256_add_pd(from, place)), from);

  // Pairs (smallest, largest) of four pixels, sorted into four of each.
  const __m256i pairs = _mm256_i32gather_epi64(reinterpret_cast<const long long*>(table.Data()),
                                               index, sizeof(ChannelRange));
  const __m256 ranges = _mm256_castsi256_ps(
      _mm256_permutevar8x32_epi32(pairs, _mm256_setr_epi32(0, 2, 4, 6, 1, 3, 5, 7)));
  const __m256d smallest = _mm256_cvtps_pd(_mm256_castps256_ps128(ranges));
  const __m256d largest = _mm256_cvtps_pd(_mm256_extractf128_ps(ranges, 1));
  const __m256d middle =
      _mm256_add_pd(smallest, _mm256_mul_pd(_mm256_sub_pd(largest, smallest), rounded));
  return {ToChannel(largest), ToChannel(smallest), ToChannel(middle)};
}

SortedFour Half(const SortedEight& all, int half) {
  const auto part = [half](__m256i vector) {
    return half == 0 ? _mm256_castsi256_si128(vector) : _mm256_extracti128_si256(vector, 1);
  };
  return {part(all.largest), part(all.smallest), part(all.middle)};
}

__m256i Join(__m128i low, __m128i high) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
}

// 2 or -2, 4 or -4: the magnitude with a minus where the condition does not hold.
__m256i Signed(int magnitude, __m256i condition) {
  return _mm256_blendv_epi8(_mm256_set1_epi32(-magnitude), _mm256_set1_epi32(magnitude), condition);
}

__m256i LightenEight(__m256i pixels, const LightenTable& table) {
  const __m256i lowByte = _mm256_set1_epi32(0xFF);
  const __m256i blue = _mm256_and_si256(pixels, lowByte);
  const __m256i green = _mm256_and_si256(_mm256_srli_epi32(pixels, 8), lowByte);
  const __m256i red = _mm256_srli_epi32(pixels, 16);

  SortedEight old;
  old.largest = _mm256_max_epi32(_mm256_max_epi32(blue, green), red);
  old.smallest = _mm256_min_epi32(_mm256_min_epi32(blue, green), red);
  old.middle = _mm256_sub_epi32(_mm256_add_epi32(_mm256_add_epi32(blue, green), red),
                                _mm256_add_epi32(old.largest, old.smallest));
  const __m256i square =
      _mm256_mullo_epi16(old.largest, _mm256_add_epi32(old.largest, _mm256_set1_epi32(1)));
  const __m256i index = _mm256_add_epi32(_mm256_srli_epi32(square, 1), old.smallest);

  // After green comes blue in the circle, after blue red.
  const __m256i atGreen = Signed(2, _mm256_cmpgt_epi32(blue, red));
  const __m256i atBlue = Signed(4, _mm256_cmpgt_epi32(red, green));
  const __m256i notRed =
      _mm256_blendv_epi8(atBlue, atGreen, _mm256_cmpeq_epi32(green, old.largest));
  const __m256i center = _mm256_andnot_si256(_mm256_cmpeq_epi32(red, old.largest), notRed);

  const SortedFour low = LightenFour(Half(old, 0), _mm256_castsi256_si128(center),
                                     _mm256_castsi256_si128(index), table);
  const SortedFour high = LightenFour(Half(old, 1), _mm256_extracti128_si256(center, 1),
                                      _mm256_extracti128_si256(index, 1), table);
  const __m256i largest = Join(low.largest, high.largest);
  const __m256i smallest = Join(low.smallest, high.smallest);
  const __m256i middle = Join(low.middle, high.middle);
  // Equal channels stay equal, so which of them is the largest does not matter.
  const auto lightened = [&](__m256i channel) {
    const __m256i others =
        _mm256_blendv_epi8(middle, smallest, _mm256_cmpeq_epi32(channel, old.smallest));
    return _mm256_blendv_epi8(others, largest, _mm256_cmpeq_epi32(channel, old.largest));
  };
  return _mm256_or_si256(lightened(blue), _mm256_or_si256(_mm256_slli_epi32(lightened(green), 8),
                                                          _mm256_slli_epi32(lightened(red), 16)));
}

}  // namespace

void Lighten(Byte* row, Long width, const LightenTable& table) {
  // Eight pixels like the eight before them are the rule on a page. No such pixels are there at
  // first: their top bytes are 0.
  __m256i before = _mm256_set1_epi32(-1);
  __m256i lightened = before;
  for (; width >= 10; width -= 8, row += 24) {
    const __m256i pixels = LoadSpread(row);
    if (_mm256_movemask_epi8(_mm256_cmpeq_epi32(pixels, before)) != -1) {
      before = pixels;
      lightened = LightenEight(pixels, table);
    }
    StorePacked(row, lightened);
  }
  if (width > 0) scalar::Lighten(row, width, table);
}

}  // namespace quillet::avx2

#endif
