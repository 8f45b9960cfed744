#pragma once

#include "base/types.h"

namespace quillet {

// The nearest integer, halves to the even neighbour: 2.5 gives 2, 3.5 gives 4, -0.5 gives 0.
// Independent of the thread's rounding mode, so a host that changed it cannot change a result.
double RoundHalfEven(double value) noexcept;

// RoundHalfEven of a value that is known to give 0 to 255, in the middle of a loop over pixels.
inline Byte NearestByte(double value) noexcept {
  const int below = static_cast<int>(value);
  const double fraction = value - below;
  const int isAbove = fraction > 0.5;
  const int isHalf = fraction == 0.5;
  return static_cast<Byte>(below + (isAbove | (isHalf & below)));
}

// RoundHalfEven into the integer kind; run-time error 6 for what does not fit, infinities and NaN
// too.
Byte ToByte(double value);
Integer ToInteger(double value);
Long ToLong(double value);

// The low bits of a wider integer, as two's complement.
constexpr Byte LowByte(Long value) noexcept {
  return static_cast<Byte>(value & 0xFF);
}
constexpr Integer LowWord(Long value) noexcept {
  return static_cast<Integer>(value & 0xFFFF);
}

}  // namespace quillet
