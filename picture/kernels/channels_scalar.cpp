// The kernels whose channels know nothing of each other.

#include "picture/kernels/arithmetic.h"
#include "picture/kernels/tone.h"

namespace quillet::scalar {
namespace {

constexpr Byte Clamped(int value) {
  return static_cast<Byte>(value < 0 ? 0 : value > 255 ? 255 : value);
}

}  // namespace

void Invert(Byte* row, std::ptrdiff_t count, const PixelPattern& changes) {
  for (; count >= 3; count -= 3, row += 3) {
    row[0] = static_cast<Byte>(row[0] ^ changes.bytes[0]);
    row[1] = static_cast<Byte>(row[1] ^ changes.bytes[1]);
    row[2] = static_cast<Byte>(row[2] ^ changes.bytes[2]);
  }
}

void Contrast(Byte* row, std::ptrdiff_t count, Integer factor) {
  for (std::ptrdiff_t i = 0; i < count; ++i) row[i] = Clamped(Contrasted<int>(row[i], factor));
}

void Fade(Byte* row, std::ptrdiff_t count, Byte level) {
  for (std::ptrdiff_t i = 0; i < count; ++i)
    row[i] = static_cast<Byte>(Faded<unsigned>(row[i], level));
}

void SharpenByHalf(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i)
    row[i] = Clamped(HalfEvenHalf(3 * row[i] - diagonal[i]));
}

void SharpenByFourFifths(Byte* row, const Byte* diagonal, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i)
    row[i] = Clamped(NearestFifth<int>(9 * row[i] - 4 * diagonal[i]));
}

void Blur(const Byte* upperLeft, Byte* row, const Byte* below, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i)
    row[i] = static_cast<Byte>(
        NearestFifth<int>(upperLeft[i] + row[i] + row[i + 3] + below[i] + below[i + 3]));
}

}  // namespace quillet::scalar
