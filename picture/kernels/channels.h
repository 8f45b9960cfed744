#pragma once

#include <cstddef>
#include <cstdint>

#include "base/types.h"
#include "picture/kernels/arithmetic.h"
#include "picture/kernels/kernels.h"

// The vector form of the kernels whose channels know nothing of each other, for any instruction
// set. Lanes says how one takes its bytes:
//
//   Bytes                   kBytes of them
//   Words, UWords           half as many 16-bit integers, with sign and without
//   Load, Store             from and to any address
//   Widen(half, c)          one half of the bytes (in whatever order Narrow restores)
//   Weigh(half, a, v, b, w) a x v + b x w, for one half of the bytes and weights of -128 to 127
//   Narrow(low, high)       bytes again, clamped to 0 .. 255
//   Prefetch(address)       asks for the cache line there, which may lie outside the picture
//
// Each returns how many bytes it did; what is left at the row's end is for a narrower form. Blocks
// go from left to right, and everything is loaded before the block is stored.
namespace quillet::channels {

struct LowHalf {};
struct HighHalf {};

// The formula gives the words of one half. Before a block is done, its cache line in another row is
// asked for: `soon` is that row's address, 0 for none.
template <typename Lanes, typename Formula, typename... Sources>
inline std::ptrdiff_t ForEachBlockAsking(std::uintptr_t soon, Byte* target, std::ptrdiff_t count,
                                         Formula formula, const Sources*... sources) {
  std::ptrdiff_t i = 0;
  const auto transform = [&](auto... bytes) {
    Lanes::Store(target + i,
                 Lanes::Narrow(formula(LowHalf{}, bytes...), formula(HighHalf{}, bytes...)));
  };
  for (; i + Lanes::kBytes <= count; i += Lanes::kBytes) {
    if (soon != 0) Lanes::Prefetch(soon + static_cast<std::uintptr_t>(i));
    transform(Lanes::Load(sources + i)...);
  }
  return i;
}

template <typename Lanes, typename Formula, typename... Sources>
inline std::ptrdiff_t ForEachBlock(Byte* target, std::ptrdiff_t count, Formula formula,
                                   const Sources*... sources) {
  return ForEachBlockAsking<Lanes>(0, target, count, formula, sources...);
}

// Three blocks hold whole pixels.
template <typename Lanes>
inline std::ptrdiff_t Invert(Byte* row, std::ptrdiff_t count, const PixelPattern& changes) {
  const Byte* const pattern = changes.bytes;
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
  using Bytes = typename Lanes::Bytes;
  const auto factors = typename Lanes::Words{} + factor;
  return ForEachBlock<Lanes>(
      row, count, [=](auto half, Bytes c) { return Contrasted(Lanes::Widen(half, c), factors); },
      row);
}

template <typename Lanes>
inline std::ptrdiff_t Fade(Byte* row, std::ptrdiff_t count, Byte level) {
  using Bytes = typename Lanes::Bytes;
  using UWords = typename Lanes::UWords;
  const UWords levels = UWords{} + level;
  return ForEachBlock<Lanes>(
      row, count, [=](auto half, Bytes c) { return Faded(UWords(Lanes::Widen(half, c)), levels); },
      row);
}

template <typename Lanes>
inline std::ptrdiff_t SharpenByHalf(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  using Bytes = typename Lanes::Bytes;
  return ForEachBlock<Lanes>(
      row, count,
      [](auto half, Bytes c, Bytes d) { return HalfEvenHalf(Lanes::Weigh(half, c, 3, d, -1)); },
      row, diagonal);
}

template <typename Lanes>
inline std::ptrdiff_t SharpenByFourFifths(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  using Bytes = typename Lanes::Bytes;
  using UWords = typename Lanes::UWords;
  return ForEachBlock<Lanes>(
      row, count,
      [](auto half, Bytes c, Bytes d) {
        return NearestFifth<UWords>(Lanes::Weigh(half, c, 9, d, -4));
      },
      row, diagonal);
}

template <typename Lanes>
inline std::ptrdiff_t Blur(const Byte* upperLeft, Byte* row, const Byte* below,
                           std::ptrdiff_t count) {
  using Bytes = typename Lanes::Bytes;
  using UWords = typename Lanes::UWords;
  // The row after the one below: so much is done to each block that the processor's own prefetching
  // would come late.
  const auto soon =
      reinterpret_cast<std::uintptr_t>(below) + static_cast<std::uintptr_t>(below - row);
  return ForEachBlockAsking<Lanes>(
      soon, row, count,
      [](auto half, Bytes ul, Bytes c, Bytes r, Bytes d, Bytes dr) {
        const auto sum = Lanes::Widen(half, ul) + Lanes::Weigh(half, c, 1, r, 1) +
                         Lanes::Weigh(half, d, 1, dr, 1);
        return NearestFifth<UWords>(sum);
      },
      upperLeft, row, row + 3, below, below + 3);
}

}  // namespace quillet::channels
