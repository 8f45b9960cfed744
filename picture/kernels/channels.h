#pragma once

#include <cstddef>

#include "base/types.h"
#include "picture/kernels/arithmetic.h"
#include "picture/kernels/kernels.h"

// The vector form of the kernels whose channels know nothing of each other, for any instruction
// set. Lanes says how one takes its bytes:
//
//   Bytes                   kBytes of them
//   Words, UWords           half as many 16-bit integers, with sign and without
//   Load, Store             from and to any address
//   Low, High               halves of the bytes, widened (in whatever order Narrow restores)
//   Narrow(low, high)       bytes again, clamped to 0 .. 255
//
// Each returns how many bytes it did; what is left at the row's end is for a narrower form. Blocks
// go from left to right, and everything is loaded before the block is stored.
namespace quillet::channels {

template <typename Lanes, typename Formula, typename... Sources>
inline std::ptrdiff_t ForEachBlock(Byte* target, std::ptrdiff_t count, Formula formula,
                                   const Sources*... sources) {
  std::ptrdiff_t i = 0;
  for (; i + Lanes::kBytes <= count; i += Lanes::kBytes) {
    const auto low = formula(Lanes::Low(Lanes::Load(sources + i))...);
    const auto high = formula(Lanes::High(Lanes::Load(sources + i))...);
    Lanes::Store(target + i, Lanes::Narrow(low, high));
  }
  return i;
}

// Three blocks hold whole pixels.
template <typename Lanes>
inline std::ptrdiff_t Invert(Byte* row, std::ptrdiff_t count, PixelBytes changes) {
  Byte pattern[3 * Lanes::kBytes];
  for (std::ptrdiff_t i = 0; i < 3 * Lanes::kBytes; i += 3) {
    pattern[i] = changes.blue;
    pattern[i + 1] = changes.green;
    pattern[i + 2] = changes.red;
  }
  const typename Lanes::Bytes change[] = {Lanes::Load(pattern),
                                          Lanes::Load(pattern + Lanes::kBytes),
                                          Lanes::Load(pattern + 2 * Lanes::kBytes)};
  std::ptrdiff_t i = 0;
  for (; i + 3 * Lanes::kBytes <= count; i += 3 * Lanes::kBytes) {
    for (int part = 0; part < 3; ++part) {
      Byte* const at = row + i + part * Lanes::kBytes;
      Lanes::Store(at, Lanes::Load(at) ^ change[part]);
    }
  }
  return i;
}

template <typename Lanes>
inline std::ptrdiff_t Contrast(Byte* row, std::ptrdiff_t count, Integer factor) {
  using Words = typename Lanes::Words;
  const Words factors = Words{} + factor;
  return ForEachBlock<Lanes>(
      row, count, [=](Words c) { return Contrasted(c, factors); }, row);
}

template <typename Lanes>
inline std::ptrdiff_t Fade(Byte* row, std::ptrdiff_t count, Byte level) {
  using Words = typename Lanes::Words;
  using UWords = typename Lanes::UWords;
  const UWords levels = UWords{} + level;
  return ForEachBlock<Lanes>(
      row, count, [=](Words c) { return Faded(UWords(c), levels); }, row);
}

template <typename Lanes>
inline std::ptrdiff_t SharpenByHalf(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  using Words = typename Lanes::Words;
  return ForEachBlock<Lanes>(
      row, count, [](Words c, Words d) { return SharpenedByHalf(c, d); }, row, diagonal);
}

template <typename Lanes>
inline std::ptrdiff_t SharpenByFourFifths(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  using Words = typename Lanes::Words;
  using UWords = typename Lanes::UWords;
  return ForEachBlock<Lanes>(
      row, count, [](Words c, Words d) { return SharpenedByFourFifths<UWords>(c, d); }, row,
      diagonal);
}

template <typename Lanes>
inline std::ptrdiff_t Blur(const Byte* upperLeft, Byte* row, const Byte* below,
                           std::ptrdiff_t count) {
  using Words = typename Lanes::Words;
  using UWords = typename Lanes::UWords;
  return ForEachBlock<Lanes>(
      row, count,
      [](Words ul, Words c, Words r, Words d, Words dr) {
        return Blurred(UWords(ul), UWords(c), UWords(r), UWords(d), UWords(dr));
      },
      upperLeft, row, row + 3, below, below + 3);
}

}  // namespace quillet::channels
