#include "base/rounding.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/runtime_error.h"

namespace quillet {
namespace {

TEST(Rounding, HalvesGoToTheEvenNeighbour) {
  const struct {
    double value, expected;
  } cases[] = {{0.5, 0},   {1.5, 2},   {2.5, 2},  {3.5, 4},          {-0.5, 0},     {-1.5, -2},
               {-2.5, -2}, {76.5, 76}, {0.49, 0}, {0.4999999999, 0}, {-127.5, -128}};
  for (const auto& [value, expected] : cases) EXPECT_EQ(RoundHalfEven(value), expected) << value;
}

TEST(Rounding, TheBoundsOfAKindAreTakenAfterRounding) {
  EXPECT_EQ(ToLong(2147483647.49), 2147483647);
  EXPECT_EQ(ToInteger(-32768.5), -32768);
  EXPECT_EQ(ToByte(-0.5), 0);
  EXPECT_THROW(ToInteger(32767.5), RunTimeError);
  EXPECT_THROW(ToByte(255.5), RunTimeError);
  EXPECT_THROW(ToLong(std::numeric_limits<double>::quiet_NaN()), RunTimeError);
  EXPECT_THROW(ToLong(std::numeric_limits<double>::infinity()), RunTimeError);
}

}  // namespace
}  // namespace quillet
