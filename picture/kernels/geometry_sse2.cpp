#include "picture/kernels/geometry.h"

#ifdef QUILLET_X86

#include <emmintrin.h>

#include <cstdint>
#include <cstring>

namespace quillet::sse2 {
namespace {

// Asks for the cache line at that distance, which may lie outside the picture.
void Prefetch(const Byte* base, std::ptrdiff_t distance) {
  const auto at = reinterpret_cast<std::uintptr_t>(base) + static_cast<std::uintptr_t>(distance);
  _mm_prefetch(reinterpret_cast<const char*>(at), _MM_HINT_T0);
}

// The low 12 bytes: the four pixels in the low three bytes of each 32-bit element, pushed together.
__m128i PackPixels(__m128i wide) {
  const __m128i first = _mm_and_si128(wide, _mm_set1_epi64x(0xFFFFFF));
  const __m128i second = _mm_and_si128(_mm_srli_epi64(wide, 8), _mm_set1_epi64x(0xFFFFFF000000));
  const __m128i pairs = _mm_or_si128(first, second);
  // The upper half's 6 bytes move down beside the lower half's.
  return _mm_or_si128(_mm_move_epi64(pairs), _mm_slli_si128(_mm_srli_si128(pairs, 8), 6));
}

// Column `Column` of four rows of pixels, written to `to`.
template <int Column>
void StoreColumn(const __m128i (&rows)[4], Byte* to) {
  const __m128i upper =
      _mm_unpacklo_epi32(_mm_srli_si128(rows[0], 3 * Column), _mm_srli_si128(rows[1], 3 * Column));
  const __m128i lower =
      _mm_unpacklo_epi32(_mm_srli_si128(rows[2], 3 * Column), _mm_srli_si128(rows[3], 3 * Column));
  const __m128i packed = PackPixels(_mm_unpacklo_epi64(upper, lower));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to), packed);
  const int last = _mm_cvtsi128_si32(_mm_srli_si128(packed, 8));
  std::memcpy(to + 8, &last, sizeof last);
}

}  // namespace

void RotateStrip(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long rows,
                 Byte* target, std::ptrdiff_t targetStride) {
  // Blocks of 4 by 4 pixels; the rows left over are the strip's first. A load of 16 bytes takes in
  // 4 bytes beyond its pixels, which therefore must have two more to their right.
  const Long blockRows = rows & ~3;
  Long x = 0;
  for (; x + 6 <= width; x += 4) {
    const Byte* from = source + 3 * std::ptrdiff_t{x} + (rows - 1) * sourceStride;
    Byte* to = target + x * targetStride;
    for (Long column = 0; column < blockRows; column += 4, from -= 4 * sourceStride, to += 12) {
      __m128i block[4];
      for (int i = 0; i < 4; ++i) {
        const Byte* pixels = from - i * sourceStride;
        // Source pixels two or three cache lines on, and the target rows of the next block.
        Prefetch(pixels, 192);
        Prefetch(to, (4 + i) * targetStride);
        block[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
      }
      StoreColumn<0>(block, to);
      StoreColumn<1>(block, to + targetStride);
      StoreColumn<2>(block, to + 2 * targetStride);
      StoreColumn<3>(block, to + 3 * targetStride);
    }
  }
  // The columns at the right, then the rows at the top beside the blocks.
  scalar::RotateStrip(source + 3 * std::ptrdiff_t{x}, sourceStride, width - x, rows,
                      target + x * targetStride, targetStride);
  scalar::RotateStrip(source, sourceStride, x, rows - blockRows, target + 3 * blockRows,
                      targetStride);
}

}  // namespace quillet::sse2

#endif
