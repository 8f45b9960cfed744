#include "picture/kernels/geometry.h"

#ifdef QUILLET_X86

#include "picture/kernels/vectors_avx2.h"

namespace quillet::avx2 {
namespace {

// Makes the compiler work the value out though nothing uses it.
void KeepAlive(__m128i value) {
  asm volatile("" : : "x"(value));
}

// Twice 16 pixels: part i has their bytes 16 i to 16 i + 15, of both in a half each.
struct PixelPair {
  __m256i part[3];
};

PixelPair LoadPixels(const Byte* low, const Byte* high) {
  return {
      {LoadHalves(low, high), LoadHalves(low + 16, high + 16), LoadHalves(low + 32, high + 32)}};
}

// Both in reverse order of pixels.
PixelPair Reversed(const PixelPair& pixels) {
  // Which byte of each loaded part goes where; -1 for none. Two pixels straddle the parts' borders.
  const __m256i lastFrom2 =
      Both(_mm_setr_epi8(13, 14, 15, 10, 11, 12, 7, 8, 9, 4, 5, 6, 1, 2, 3, -1));
  const __m256i lastFrom1 =
      Both(_mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 14));
  const __m256i middleFrom2 =
      Both(_mm_setr_epi8(-1, 0, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1));
  const __m256i middleFrom1 =
      Both(_mm_setr_epi8(15, -1, 11, 12, 13, 8, 9, 10, 5, 6, 7, 2, 3, 4, -1, 0));
  const __m256i middleFrom0 =
      Both(_mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 15, -1));
  const __m256i firstFrom1 =
      Both(_mm_setr_epi8(1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1));
  const __m256i firstFrom0 =
      Both(_mm_setr_epi8(-1, 12, 13, 14, 9, 10, 11, 6, 7, 8, 3, 4, 5, 0, 1, 2));
  const __m256i* part = pixels.part;
  return {{_mm256_or_si256(_mm256_shuffle_epi8(part[2], lastFrom2),
                           _mm256_shuffle_epi8(part[1], lastFrom1)),
           _mm256_or_si256(_mm256_or_si256(_mm256_shuffle_epi8(part[2], middleFrom2),
                                           _mm256_shuffle_epi8(part[0], middleFrom0)),
                           _mm256_shuffle_epi8(part[1], middleFrom1)),
           _mm256_or_si256(_mm256_shuffle_epi8(part[1], firstFrom1),
                           _mm256_shuffle_epi8(part[0], firstFrom0))}};
}

}  // namespace

void SwapRows(Byte* a, Byte* b, Long width) {
  // Rows are swapped from the outside in, so that one of the two goes backwards from row to row,
  // which the processor does not foresee: asked for are the rows two further on and two back.
  const std::ptrdiff_t twoRows = 6 * std::ptrdiff_t{width};
  // 64 pixels at a time.
  for (; width >= 64; width -= 64, a += 192, b += 192) {
    for (int line = 0; line < 192; line += 64) {
      Prefetch(a, line + twoRows);
      Prefetch(b, line - twoRows);
    }
    for (int i = 0; i < 192; i += 32) {
      const __m256i fromA = Load32(a + i);
      Store32(a + i, Load32(b + i));
      Store32(b + i, fromA);
    }
  }
  scalar::SwapRows(a, b, width);
}

void ReverseRow(Byte* row, Long width) {
  Byte* left = row;
  Byte* right = row + 3 * std::ptrdiff_t{width};
  // Brings the row into the first cache in the order that the processor foresees best.
  __m128i touched = _mm_setzero_si128();
  for (const Byte* line = left; right - line >= 16; line += 64) {
    touched = _mm_or_si128(touched, Load16(line));
  }
  KeepAlive(touched);
  // The last round's two blocks may overlap in the middle: both are loaded before either is stored,
  // and agree there.
  while (right - left >= 48) {
    const PixelPair both = Reversed(LoadPixels(left, right - 48));
    for (int i = 0; i < 3; ++i) {
      Store16(left + 16 * i, _mm256_extracti128_si256(both.part[i], 1));
      Store16(right - 48 + 16 * i, _mm256_castsi256_si128(both.part[i]));
    }
    left += 48;
    right -= 48;
  }
  if (left < right) scalar::ReverseRow(left, static_cast<Long>((right - left) / 3));
}

void RotateStrip(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long rows,
                 Byte* target, std::ptrdiff_t targetStride) {
  // Blocks of 4 columns by 8 rows; the rows left over are the strip's first.
  const Long blockRows = rows & ~7;
  Long x = 0;
  for (; x + 6 <= width; x += 4) {
    const Byte* from = source + 3 * std::ptrdiff_t{x} + (rows - 1) * sourceStride;
    Byte* to = target + x * targetStride;
    for (Long column = 0; column < blockRows; column += 8, from -= 8 * sourceStride, to += 24) {
      // Source pixels two or three cache lines on, and the target rows of the next block.
      for (int i = 0; i < 8; ++i) Prefetch(from, 192 - i * sourceStride);
      for (int i = 4; i < 8; ++i) Prefetch(to, i * targetStride);
      const Byte* lower = from - 4 * sourceStride;
      const __m256i row0 = LoadSpread(from, lower);
      const __m256i row1 = LoadSpread(from - sourceStride, lower - sourceStride);
      const __m256i row2 = LoadSpread(from - 2 * sourceStride, lower - 2 * sourceStride);
      const __m256i row3 = LoadSpread(from - 3 * sourceStride, lower - 3 * sourceStride);
      const __m256i left01 = _mm256_unpacklo_epi32(row0, row1);
      const __m256i left23 = _mm256_unpacklo_epi32(row2, row3);
      const __m256i right01 = _mm256_unpackhi_epi32(row0, row1);
      const __m256i right23 = _mm256_unpackhi_epi32(row2, row3);
      StorePacked(to, _mm256_unpacklo_epi64(left01, left23));
      StorePacked(to + targetStride, _mm256_unpackhi_epi64(left01, left23));
      StorePacked(to + 2 * targetStride, _mm256_unpacklo_epi64(right01, right23));
      StorePacked(to + 3 * targetStride, _mm256_unpackhi_epi64(right01, right23));
    }
  }
  // The columns at the right, then the rows at the top beside the blocks.
  sse2::RotateStrip(source + 3 * std::ptrdiff_t{x}, sourceStride, width - x, rows,
                    target + x * targetStride, targetStride);
  sse2::RotateStrip(source, sourceStride, x, rows - blockRows, target + 3 * blockRows,
                    targetStride);
}

}  // namespace quillet::avx2

#endif
