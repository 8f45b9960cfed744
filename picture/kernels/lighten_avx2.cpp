#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include "picture/kernels/lighten_table.h"
#include "picture/kernels/vectors_avx2.h"

// Eight pixels at a time, each channel in 32-bit elements; their fractions four at a time.
namespace quillet::avx2 {
namespace {

// Fractions and 32-bit integers of eight pixels' channels, by size.
struct Fractions {
  __m256 largest, smallest, middle;
};
struct Channels {
  __m256i largest, smallest, middle;
};

// channel / 255, rounded to a float: for every channel the same as the rounded product with the
// double nearest to 1 / 255. The product with 257 / 65536 is exact.
__m256 ToFractions(__m256i channels) {
  const __m256 c = _mm256_cvtepi32_ps(channels);
  const __m256 coarse = _mm256_set1_ps(257.0f / 65536);
  const __m256 fine = _mm256_set1_ps(static_cast<float>(1.0 / 255 - 257.0 / 65536));
  return _mm256_add_ps(_mm256_mul_ps(c, coarse), _mm256_mul_ps(c, fine));
}

// The largest and smallest channels that the table has at these indices. Loads one by one: it beats
// the processor's gathering.
void LoadRanges(__m256i indices, const LightenTable& table, Fractions& fractions) {
  alignas(32) Long at[8];
  _mm256_store_si256(reinterpret_cast<__m256i*>(at), indices);
  const auto pair = [&](int first, int second) {
    const ChannelRange* const ranges = table.Data();
    const __m128i one = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(ranges + at[first]));
    const __m128i two = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(ranges + at[second]));
    return _mm_castsi128_ps(_mm_unpacklo_epi64(one, two));
  };
  // Smallest and largest in turn, of pixels 0, 1, 4, 5 and of pixels 2, 3, 6, 7.
  const __m256 first = _mm256_insertf128_ps(_mm256_castps128_ps256(pair(0, 1)), pair(4, 5), 1);
  const __m256 second = _mm256_insertf128_ps(_mm256_castps128_ps256(pair(2, 3)), pair(6, 7), 1);
  fractions.smallest = _mm256_shuffle_ps(first, second, _MM_SHUFFLE(2, 0, 2, 0));
  fractions.largest = _mm256_shuffle_ps(first, second, _MM_SHUFFLE(3, 1, 3, 1));
}

// Half to even whatever the thread's rounding mode is.
constexpr int kNearest = _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC;

// A grey pixel's channels are all as far apart as this; no others are nearer. What comes out for
// their middle channel is not used, but must not be 0 / 0.
constexpr float kNoSpread = 1.0f / 512;

// Puts the middle channel in its place and rounds, in floats. Ignores how the hue is rounded and
// rounds at each step, which makes less than 0.0002 of a unit. False when that might matter, as
// some result is that near to half-way: of noise one block in fifty, but of some percentages many.
bool LightenQuickly(const Fractions& old, Fractions& lightened, Channels& result) {
  const __m256 spread =
      _mm256_max_ps(_mm256_sub_ps(old.largest, old.smallest), _mm256_set1_ps(kNoSpread));
  const __m256 place = _mm256_div_ps(_mm256_sub_ps(old.middle, old.smallest), spread);
  const __m256 newSpread = _mm256_sub_ps(lightened.largest, lightened.smallest);
  lightened.middle = _mm256_add_ps(lightened.smallest, _mm256_mul_ps(newSpread, place));

  __m256 farthest = _mm256_setzero_ps();
  const auto round = [&](__m256 fractions) {
    const __m256 values = _mm256_mul_ps(fractions, _mm256_set1_ps(255));
    const __m256 rounded = _mm256_round_ps(values, kNearest);
    const __m256 distance = _mm256_andnot_ps(_mm256_set1_ps(-0.0f), _mm256_sub_ps(values, rounded));
    farthest = _mm256_max_ps(farthest, distance);
    return _mm256_cvttps_epi32(rounded);
  };
  result = {round(lightened.largest), round(lightened.smallest), round(lightened.middle)};
  const __m256 limit = _mm256_set1_ps(0.5f - 1.0f / 2048);
  return _mm256_movemask_ps(_mm256_cmp_ps(farthest, limit, _CMP_GT_OQ)) == 0;
}

__m128i RoundFour(__m256d fractions) {
  const __m256d values = _mm256_mul_pd(fractions, _mm256_set1_pd(255));
  return _mm256_cvttpd_epi32(_mm256_round_pd(values, kNearest));
}

// The same exactly, four pixels at a time in doubles. `center` is the largest channel's place on
// the circle of hues (red 0, green 2, blue 4), with a minus where the middle one lies before it:
// the hue then counts backwards, which rounds alike.
template <int half>
void LightenFour(const Fractions& old, const Fractions& lightened, __m256i center,
                 __m128i (&result)[3]) {
  const auto toDoubles = [](__m256 eight) {
    return _mm256_cvtps_pd(_mm256_extractf128_ps(eight, half));
  };
  const __m256d lowest = toDoubles(old.smallest);
  const __m256d spread =
      _mm256_max_pd(_mm256_sub_pd(toDoubles(old.largest), lowest), _mm256_set1_pd(kNoSpread));
  const __m256d from = _mm256_cvtepi32_pd(_mm256_extracti128_si256(center, half));
  const __m256d hue =
      _mm256_add_pd(from, _mm256_div_pd(_mm256_sub_pd(toDoubles(old.middle), lowest), spread));
  const __m256d place = _mm256_sub_pd(_mm256_cvtps_pd(_mm256_cvtpd_ps(hue)), from);

  const __m256d largest = toDoubles(lightened.largest);
  const __m256d smallest = toDoubles(lightened.smallest);
  const __m256d middle =
      _mm256_add_pd(smallest, _mm256_mul_pd(_mm256_sub_pd(largest, smallest), place));
  result[0] = RoundFour(largest);
  result[1] = RoundFour(smallest);
  result[2] = RoundFour(middle);
}

Channels LightenExactly(const Fractions& old, const Fractions& lightened, __m256i center) {
  __m128i low[3], high[3];
  LightenFour<0>(old, lightened, center, low);
  LightenFour<1>(old, lightened, center, high);
  const auto join = [&](int i) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(low[i]), high[i], 1);
  };
  return {join(0), join(1), join(2)};
}

// 2 or -2, 4 or -4: with a minus where the condition does not hold.
__m256i Signed(int magnitude, __m256i condition) {
  return _mm256_blendv_epi8(_mm256_set1_epi32(-magnitude), _mm256_set1_epi32(magnitude), condition);
}

__m256i LightenEight(__m256i pixels, const LightenTable& table) {
  const __m256i lowByte = _mm256_set1_epi32(0xFF);
  const __m256i blue = _mm256_and_si256(pixels, lowByte);
  const __m256i green = _mm256_and_si256(_mm256_srli_epi32(pixels, 8), lowByte);
  const __m256i red = _mm256_srli_epi32(pixels, 16);
  const __m256i largest = _mm256_max_epi32(_mm256_max_epi32(blue, green), red);
  const __m256i smallest = _mm256_min_epi32(_mm256_min_epi32(blue, green), red);
  const __m256i middle = _mm256_sub_epi32(_mm256_add_epi32(_mm256_add_epi32(blue, green), red),
                                          _mm256_add_epi32(largest, smallest));
  const __m256i square =
      _mm256_mullo_epi16(largest, _mm256_add_epi32(largest, _mm256_set1_epi32(1)));
  const __m256i index = _mm256_add_epi32(_mm256_srli_epi32(square, 1), smallest);

  const Fractions old{ToFractions(largest), ToFractions(smallest), ToFractions(middle)};
  Fractions lightened;
  LoadRanges(index, table, lightened);
  Channels result;
  if (!LightenQuickly(old, lightened, result)) {
    // After green comes blue in the circle, after blue red.
    const __m256i atGreen = Signed(2, _mm256_cmpgt_epi32(blue, red));
    const __m256i atBlue = Signed(4, _mm256_cmpgt_epi32(red, green));
    const __m256i notRed = _mm256_blendv_epi8(atBlue, atGreen, _mm256_cmpeq_epi32(green, largest));
    const __m256i center = _mm256_andnot_si256(_mm256_cmpeq_epi32(red, largest), notRed);
    result = LightenExactly(old, lightened, center);
  }
  // Equal channels stay equal, so which of them counts as the largest does not matter.
  const auto select = [&](__m256i channel) {
    const __m256i others =
        _mm256_blendv_epi8(result.middle, result.smallest, _mm256_cmpeq_epi32(channel, smallest));
    return _mm256_blendv_epi8(others, result.largest, _mm256_cmpeq_epi32(channel, largest));
  };
  return _mm256_or_si256(select(blue), _mm256_or_si256(_mm256_slli_epi32(select(green), 8),
                                                       _mm256_slli_epi32(select(red), 16)));
}

}  // namespace

void Lighten(Byte* row, Long width, const LightenTable& table) {
  // Eight pixels like the eight before them are the rule on a page. No such pixels are there at
  // first: their top bytes are 0.
  __m256i before = _mm256_set1_epi32(-1);
  __m256i lightened = before;
  for (; width >= 10; width -= 8, row += 24) {
    const __m256i pixels = LoadSpread(row, row + 12);
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
