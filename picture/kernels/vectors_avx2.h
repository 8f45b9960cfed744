#pragma once

#include <cstddef>
#include <cstdint>

#include "base/types.h"

// What the AVX2 kernels load and store; empty for code that is not compiled for AVX2. Nothing here,
// and nothing that those kernels instantiate, may be shared with code that runs on every processor:
// of an inline function the linker keeps but one copy.
#ifdef __AVX2__

#include <immintrin.h>

namespace quillet::avx2 {

inline __m128i Load16(const Byte* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

inline void Store16(Byte* to, __m128i value) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
}

// Asks for the cache line at that distance, which may lie outside the picture.
inline void Prefetch(const Byte* base, std::ptrdiff_t distance) {
  const auto at = reinterpret_cast<std::uintptr_t>(base) + static_cast<std::uintptr_t>(distance);
  _mm_prefetch(reinterpret_cast<const char*>(at), _MM_HINT_T0);
}

inline __m256i Load32(const Byte* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

inline void Store32(Byte* to, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), value);
}

// 16 bytes at `low` and 16 at `high`, a half of the result each.
inline __m256i LoadHalves(const Byte* low, const Byte* high) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(Load16(low)), Load16(high), 1);
}

// The same bytes in both halves.
inline __m256i Both(__m128i half) {
  return _mm256_broadcastsi128_si256(half);
}

// The four pixels at `upper` and the four at `lower`, each in the low three bytes of a 32-bit
// element, a half of the result each. Reads 16 bytes from either, 4 more than the pixels have.
inline __m256i LoadSpread(const Byte* upper, const Byte* lower) {
  const __m128i spread = _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  return _mm256_shuffle_epi8(LoadHalves(upper, lower), Both(spread));
}

// Stores the eight pixels in the low three bytes of each 32-bit element.
inline void StorePacked(Byte* to, __m256i wide) {
  const __m256i pack = Both(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
  const __m256i together = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7);
  const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(wide, pack), together);
  Store16(to, _mm256_castsi256_si128(packed));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 16), _mm256_extracti128_si256(packed, 1));
}

}  // namespace quillet::avx2

#endif
