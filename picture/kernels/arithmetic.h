#pragma once

// The arithmetic of one channel, each formula written once: T is int, or a vector of 16-bit
// integers that holds as many channels as the instruction set takes at a time; U is T without sign.
// Results may leave 0 to 255, who stores them clamps. Each is the exact integer form of a product
// with a fraction, rounded half to even.
//
// Vector types are told apart by their width, so that each instantiation belongs to one instruction
// set, and none that is compiled for AVX2 can reach a processor without it.
namespace quillet {

// (c - 128) x factor + 128 for a factor from -128 to 128. A larger one changes nothing any more:
// every channel but 128 has met an end.
template <typename T>
inline T Contrasted(T c, T factor) {
  return c * factor + (128 - 128 * factor);
}

// c x level / 255 for a level from 0 to 255; never half-way.
template <typename U>
inline U Faded(U c, U level) {
  const U product = c * level + 128;
  return (product + (product >> 8)) >> 8;
}

// value / 2, as in c + (c - diagonal) x 0.5 = (3 c - diagonal) / 2.
template <typename T>
inline T HalfEvenHalf(T value) {
  return (value + ((value >> 1) & 1)) >> 1;
}

// value / 5, as in c + (c - diagonal) x 0.8 = (9 c - 4 diagonal) / 5; never half-way, and the float
// nearest to 0.8 gives the same. 0 in place of what is negative.
template <typename U, typename T>
inline U NearestFifth(T value) {
  const T fromTwo = value + 2;
  return U(fromTwo > 0 ? fromTwo : T{}) / 5;
}

// sum / 1000 for a sum from 0 to 255000. Half-way, where 1 more or less matters, the sum is
// 1000 k + 500: with 499 more that is 8 x (125 k + 124) + 7, in which bit 3 is the last bit of k.
constexpr int HalfEvenThousandth(int sum) {
  const int nearly = sum + 499;
  const int isOdd = (nearly >> 3) & 1;
  return (nearly + isOdd) / 1000;
}

// The same number, 1000 times.
constexpr int GrayTimes1000(int blue, int green, int red) {
  return 71 * blue + 707 * green + 222 * red;
}

}  // namespace quillet
