#include "picture/kernels/tone.h"

#ifdef QUILLET_X86

#include <cstddef>
#include <cstdint>

#include "picture/kernels/channels.h"
#include "picture/kernels/vectors_avx2.h"

namespace quillet::avx2 {
namespace {

struct Lanes {
  static constexpr std::ptrdiff_t kBytes = 32;
  using Bytes = __m256i;
  using Words = std::int16_t __attribute__((vector_size(32)));
  using UWords = std::uint16_t __attribute__((vector_size(32)));

  static Bytes Load(const Byte* from) { return Load32(from); }
  static void Store(Byte* to, Bytes bytes) { Store32(to, bytes); }
  static Bytes Interleave(channels::LowHalf, Bytes a, Bytes b) {
    return _mm256_unpacklo_epi8(a, b);
  }
  static Bytes Interleave(channels::HighHalf, Bytes a, Bytes b) {
    return _mm256_unpackhi_epi8(a, b);
  }
  template <typename Half>
  static Words Widen(Half half, Bytes c) {
    return Words(Interleave(half, c, _mm256_setzero_si256()));
  }
  template <typename Half>
  static Words Weigh(Half half, Bytes a, int v, Bytes b, int w) {
    const __m256i weights = _mm256_set1_epi16(static_cast<short>((w & 0xFF) << 8 | (v & 0xFF)));
    return Words(_mm256_maddubs_epi16(Interleave(half, a, b), weights));
  }
  static void Prefetch(std::uintptr_t address) {
    _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
  }
  template <typename AnyWords>
  static Bytes Narrow(AnyWords low, AnyWords high) {
    return _mm256_packus_epi16(__m256i(low), __m256i(high));
  }
};

}  // namespace

void Invert(Byte* row, std::ptrdiff_t count, const PixelPattern& changes) {
  if (count < Lanes::kBytes) return sse2::Invert(row, count, changes);
  channels::Invert<Lanes>(row, count, changes);
}

void Contrast(Byte* row, std::ptrdiff_t count, Integer factor) {
  if (count < Lanes::kBytes) return sse2::Contrast(row, count, factor);
  channels::Contrast<Lanes>(row, count, factor);
}

void Fade(Byte* row, std::ptrdiff_t count, Byte level) {
  if (count < Lanes::kBytes) return sse2::Fade(row, count, level);
  channels::Fade<Lanes>(row, count, level);
}

void SharpenByHalf(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  const auto done = channels::SharpenByHalf<Lanes>(row, diagonal, count);
  sse2::SharpenByHalf(row + done, diagonal + done, count - done);
}

void SharpenByFourFifths(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  const auto done = channels::SharpenByFourFifths<Lanes>(row, diagonal, count);
  sse2::SharpenByFourFifths(row + done, diagonal + done, count - done);
}

void Blur(const Byte* upperLeft, Byte* row, const Byte* below, std::ptrdiff_t count) {
  const auto done = channels::Blur<Lanes>(upperLeft, row, below, count);
  sse2::Blur(upperLeft + done, row + done, below + done, count - done);
}

}  // namespace quillet::avx2

#endif
