#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include <emmintrin.h>

#include "picture/kernels/channels.h"

namespace quillet::sse2 {
namespace {

struct Lanes {
  static constexpr std::ptrdiff_t kBytes = 16;
  using Bytes = __m128i;
  using Words = std::int16_t __attribute__((vector_size(16)));
  using UWords = std::uint16_t __attribute__((vector_size(16)));

  static Bytes Load(const Byte* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  }
  static void Store(Byte* to, Bytes bytes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
  }
  static Words Widen(channels::LowHalf, Bytes c) {
    return Words(_mm_unpacklo_epi8(c, _mm_setzero_si128()));
  }
  static Words Widen(channels::HighHalf, Bytes c) {
    return Words(_mm_unpackhi_epi8(c, _mm_setzero_si128()));
  }
  template <typename Half>
  static Words Weigh(Half half, Bytes a, int v, Bytes b, int w) {
    return Widen(half, a) * static_cast<short>(v) + Widen(half, b) * static_cast<short>(w);
  }
  static void Prefetch(std::uintptr_t address) {
    _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
  }
  template <typename AnyWords>
  static Bytes Narrow(AnyWords low, AnyWords high) {
    return _mm_packus_epi16(__m128i(low), __m128i(high));
  }
};

}  // namespace

void Invert(Byte* row, std::ptrdiff_t count, const PixelPattern& changes) {
  if (count < Lanes::kBytes) return scalar::Invert(row, count, changes);
  channels::Invert<Lanes>(row, count, changes);
}

void Contrast(Byte* row, std::ptrdiff_t count, Integer factor) {
  if (count < Lanes::kBytes) return scalar::Contrast(row, count, factor);
  channels::Contrast<Lanes>(row, count, factor);
}

void Fade(Byte* row, std::ptrdiff_t count, Byte level) {
  if (count < Lanes::kBytes) return scalar::Fade(row, count, level);
  channels::Fade<Lanes>(row, count, level);
}

void SharpenByHalf(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  const auto done = channels::SharpenByHalf<Lanes>(row, diagonal, count);
  scalar::SharpenByHalf(row + done, diagonal + done, count - done);
}

void SharpenByFourFifths(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  const auto done = channels::SharpenByFourFifths<Lanes>(row, diagonal, count);
  scalar::SharpenByFourFifths(row + done, diagonal + done, count - done);
}

void Blur(const Byte* upperLeft, Byte* row, const Byte* below, std::ptrdiff_t count) {
  const auto done = channels::Blur<Lanes>(upperLeft, row, below, count);
  scalar::Blur(upperLeft + done, row + done, below + done, count - done);
}

}  // namespace quillet::sse2

#endif
