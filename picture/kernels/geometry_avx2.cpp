#include "picture/kernels/geometry.h"

#ifdef QUILLET_X86

#include <immintrin.h>

#include <cstdint>

// Everything here has internal linkage or is called through the kernel table only: code compiled
// for AVX2 must not be what the linker keeps of an inline function shared with other files.
namespace quillet::avx2 {
namespace {

__m128i Load16(const Byte* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

void Store16(Byte* to, __m128i value) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
}

// Asks for the cache line at that distance, which may lie outside the picture.
void Prefetch(const Byte* base, std::ptrdiff_t distance) {
  const auto at = reinterpret_cast<std::uintptr_t>(base) + static_cast<std::uintptr_t>(distance);
  _mm_prefetch(reinterpret_cast<const char*>(at), _MM_HINT_T0);
}

__m256i Load32(const Byte* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

void Store32(Byte* to, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), value);
}

// 16 pixels.
struct Pixels16 {
  __m128i part[3];
};

Pixels16 LoadPixels(const Byte* from) {
  return {{Load16(from), Load16(from + 16), Load16(from + 32)}};
}

// Stores the 16 pixels in reverse order.
void StoreReversed(Byte* to, const Pixels16& pixels) {
  // Which byte of each loaded part goes where; -1 for none. Two pixels straddle the parts' borders.
  const __m128i lastFrom2 = _mm_setr_epi8(13, 14, 15, 10, 11, 12, 7, 8, 9, 4, 5, 6, 1, 2, 3, -1);
  const __m128i lastFrom1 =
      _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 14);
  const __m128i middleFrom2 =
      _mm_setr_epi8(-1, 0, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i middleFrom1 = _mm_setr_epi8(15, -1, 11, 12, 13, 8, 9, 10, 5, 6, 7, 2, 3, 4, -1, 0);
  const __m128i middleFrom0 =
      _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 15, -1);
  const __m128i firstFrom1 =
      _mm_setr_epi8(1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i firstFrom0 = _mm_setr_epi8(-1, 12, 13, 14, 9, 10, 11, 6, 7, 8, 3, 4, 5, 0, 1, 2);
  const __m128i* part = pixels.part;
  Store16(to,
          _mm_or_si128(_mm_shuffle_epi8(part[2], lastFrom2), _mm_shuffle_epi8(part[1], lastFrom1)));
  Store16(to + 16, _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(part[2], middleFrom2),
                                             _mm_shuffle_epi8(part[0], middleFrom0)),
                                _mm_shuffle_epi8(part[1], middleFrom1)));
  Store16(to + 32, _mm_or_si128(_mm_shuffle_epi8(part[1], firstFrom1),
                                _mm_shuffle_epi8(part[0], firstFrom0)));
}

// The four pixels at `upper` and the four at `lower`, each in 32 bits, a half of the result each.
// `spread` says where in the 16 loaded bytes the pixels are.
__m256i LoadSpread(const Byte* upper, const Byte* lower, __m256i spread) {
  const __m256i both =
      _mm256_inserti128_si256(_mm256_castsi128_si256(Load16(upper)), Load16(lower), 1);
  return _mm256_shuffle_epi8(both, spread);
}

// Stores the eight pixels in the low three bytes of each 32-bit element.
void StorePacked(Byte* to, __m256i wide) {
  const __m256i pack = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,  //
                                        0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  const __m256i together = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7);
  const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(wide, pack), together);
  Store16(to, _mm256_castsi256_si128(packed));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 16), _mm256_extracti128_si256(packed, 1));
}

}  // namespace

void SwapRows(Byte* a, Byte* b, Long width) {
  // 32 pixels at a time.
  for (; width >= 32; width -= 32, a += 96, b += 96) {
    const __m256i fromA[3] = {Load32(a), Load32(a + 32), Load32(a + 64)};
    const __m256i fromB[3] = {Load32(b), Load32(b + 32), Load32(b + 64)};
    for (int i = 0; i < 3; ++i) {
      Store32(a + 32 * i, fromB[i]);
      Store32(b + 32 * i, fromA[i]);
    }
  }
  scalar::SwapRows(a, b, width);
}

void ReverseRow(Byte* row, Long width) {
  Byte* left = row;
  Byte* right = row + 3 * std::ptrdiff_t{width};
  // The last round's two blocks may overlap in the middle: both are loaded before either is stored,
  // and agree there.
  // The processor's own prefetching loses track of the backward half. The next row lies about one
  // row's length further on.
  const std::ptrdiff_t nextRow = right - left;
  while (right - left >= 48) {
    Prefetch(left, nextRow);
    Prefetch(right, nextRow - 48);
    const Pixels16 first = LoadPixels(left);
    const Pixels16 last = LoadPixels(right - 48);
    StoreReversed(left, last);
    StoreReversed(right - 48, first);
    left += 48;
    right -= 48;
  }
  if (left < right) scalar::ReverseRow(left, static_cast<Long>((right - left) / 3));
}

void RotateStrip(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long rows,
                 Byte* target, std::ptrdiff_t targetStride) {
  const __m256i spread = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1,  //
                                          0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
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
      const __m256i row0 = LoadSpread(from, lower, spread);
      const __m256i row1 = LoadSpread(from - sourceStride, lower - sourceStride, spread);
      const __m256i row2 = LoadSpread(from - 2 * sourceStride, lower - 2 * sourceStride, spread);
      const __m256i row3 = LoadSpread(from - 3 * sourceStride, lower - 3 * sourceStride, spread);
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
