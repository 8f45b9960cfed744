#include "base/variant.h"

#include <gtest/gtest.h>

#include "tests/support/error_of.h"

namespace quillet {
namespace {

TEST(Variant, NumbersAreReadAsHostsReadThem) {
  const struct {
    Variant value;
    Long expected;
  } cases[] = {
      {std::string("90"), 90},
      {std::string(" -7 "), -7},
      {std::string("+3"), 3},
      {std::string("2.5"), 2},
      {std::string("3.5"), 4},
      {std::string("1e3"), 1000},
      {std::string("&HFF"), 255},
      {std::string("&HFFFF"), -1},
      {std::string("&HFFFF&"), 65535},
      {std::string("0xFFFF"), 65535},
      {std::string("&h80000005"), -2147483643},
      {true, -1},
      {Single{0.5f}, 0},
      {1.5, 2},
      {Byte{200}, 200},
      {Integer{-5}, -5},
      {std::monostate{}, 0},
  };
  for (const auto& [value, expected] : cases) EXPECT_EQ(VariantToLong(value), expected);
}

TEST(Variant, WhatDoesNotFitOverflowsAndWhatIsNoNumberMismatches) {
  using enum ErrorNumber;
  EXPECT_EQ(ErrorOf([] { VariantToInteger(std::string("70000")); }), Overflow);
  EXPECT_EQ(ErrorOf([] { VariantToInteger(Long{32768}); }), Overflow);
  EXPECT_EQ(ErrorOf([] { VariantToLong(2147483647.5); }), Overflow);
  EXPECT_EQ(ErrorOf([] { VariantToLong(std::string("1e999")); }), Overflow);
  EXPECT_EQ(ErrorOf([] { VariantToLong(std::string("&HFFFFFFFFF")); }), Overflow);
  EXPECT_EQ(ErrorOf([] { VariantToSingle(1e300); }), Overflow);
  for (const char* text : {"abc", "", "12x", "&H", "&H&", "0xG", "nan", "inf", "+-5"})
    EXPECT_EQ(ErrorOf([=] { VariantToLong(std::string(text)); }), TypeMismatch) << text;
  EXPECT_EQ(ErrorOf([] { VariantToLong(ObjectRef()); }), TypeMismatch);
  EXPECT_EQ(ErrorOf([] { VariantToLong(Omitted{}); }), TypeMismatch);
  EXPECT_EQ(ErrorOf([] { VariantToObject(std::string("x")); }), TypeMismatch);
}

TEST(Variant, BooleansAndTextConvertBothWays) {
  EXPECT_TRUE(VariantToBoolean(std::string("true")));
  EXPECT_FALSE(VariantToBoolean(std::string(" FALSE ")));
  EXPECT_TRUE(VariantToBoolean(std::string("-1")));
  EXPECT_TRUE(VariantToBoolean(0.25));
  EXPECT_EQ(ErrorOf([] { VariantToBoolean(std::string("maybe")); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(VariantToString(true), "True");
  EXPECT_EQ(VariantToString(Single{1.5f}), "1.5");
  EXPECT_EQ(VariantToString(Long{-3}), "-3");
}

}  // namespace
}  // namespace quillet
