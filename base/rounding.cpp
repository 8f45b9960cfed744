#include "base/rounding.h"

#include <cmath>
#include <limits>

#include "base/runtime_error.h"

namespace quillet {
namespace {

template <typename Kind>
Kind Round(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= std::numeric_limits<Kind>::min() && rounded <= std::numeric_limits<Kind>::max()))
    throw RunTimeError(ErrorNumber::Overflow);
  return static_cast<Kind>(rounded);
}

}  // namespace

double RoundHalfEven(double value) noexcept {
  const double below = std::floor(value);
  const double fraction = value - below;
  if (fraction < 0.5) return below;
  if (fraction > 0.5) return below + 1.0;
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

Byte ToByte(double value) {
  return Round<Byte>(value);
}
Integer ToInteger(double value) {
  return Round<Integer>(value);
}
Long ToLong(double value) {
  return Round<Long>(value);
}

}  // namespace quillet
