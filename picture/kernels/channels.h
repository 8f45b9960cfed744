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
// The first three need rows of one block at least. The others return how many bytes they did; what
// is left at the row's end is for a narrower form. Their blocks go from left to right, and
// everything is loaded before the block is stored.
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

// In place, for at least one block, with aligned stores but for the first and the last, which reach
// into their neighbours: they are worked out from what was there before, and not earlier than that
// needs, because the row's end is not in the caches yet. The transformation is given the block and
// the channel of its first byte.
template <typename Lanes, typename Transformation>
inline void ForEachAlignedBlock(Byte* row, std::ptrdiff_t count, Transformation transform) {
  constexpr std::ptrdiff_t kBytes = Lanes::kBytes;
  const auto transformed = [&](std::ptrdiff_t at, std::ptrdiff_t channel) {
    return transform(Lanes::Load(row + at), channel);
  };
  const std::ptrdiff_t last = count - kBytes;
  const auto atStart = transformed(0, 0);
  auto i = static_cast<std::ptrdiff_t>((0 - reinterpret_cast<std::uintptr_t>(row)) % kBytes);
  // Three blocks hold whole pixels.
  const std::ptrdiff_t channels[] = {i % 3, (i + kBytes) % 3, (i + 2 * kBytes) % 3};
  for (; i + 3 * kBytes <= last; i += 3 * kBytes) {
    for (int part = 0; part < 3; ++part) {
      const std::ptrdiff_t at = i + part * kBytes;
      Lanes::Store(row + at, transformed(at, channels[part]));
    }
  }
  for (; i + kBytes <= last; i += kBytes) Lanes::Store(row + i, transformed(i, i % 3));
  const auto atEnd = transformed(last, last % 3);
  if (i <= last) Lanes::Store(row + i, transformed(i, i % 3));
  Lanes::Store(row, atStart);
  Lanes::Store(row + last, atEnd);
}

template <typename Lanes>
inline void Invert(Byte* row, std::ptrdiff_t count, const PixelPattern& changes) {
  ForEachAlignedBlock<Lanes>(row, count, [&](typename Lanes::Bytes bytes, std::ptrdiff_t channel) {
    return bytes ^ Lanes::Load(changes.bytes + channel);
  });
}

template <typename Lanes>
inline void Contrast(Byte* row, std::ptrdiff_t count, Integer factor) {
  const auto factors = typename Lanes::Words{} + factor;
  ForEachAlignedBlock<Lanes>(row, count, [=](typename Lanes::Bytes c, std::ptrdiff_t) {
    return Lanes::Narrow(Contrasted(Lanes::Widen(LowHalf{}, c), factors),
                         Contrasted(Lanes::Widen(HighHalf{}, c), factors));
  });
}

template <typename Lanes>
inline void Fade(Byte* row, std::ptrdiff_t count, Byte level) {
  using UWords = typename Lanes::UWords;
  const UWords levels = UWords{} + level;
  ForEachAlignedBlock<Lanes>(row, count, [=](typename Lanes::Bytes c, std::ptrdiff_t) {
    return Lanes::Narrow(Faded(UWords(Lanes::Widen(LowHalf{}, c)), levels),
                         Faded(UWords(Lanes::Widen(HighHalf{}, c)), levels));
  });
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
