#pragma once

#include <string>
#include <variant>

#include "base/object.h"
#include "base/types.h"

namespace quillet {

// An optional argument that the caller left out.
struct Omitted {
  bool operator==(const Omitted&) const = default;
};

// A self-describing value as it passes between host and control: no value, an omitted argument, the
// integer kinds, floats, Boolean, text (UTF-8), or an object (which may be no object).
using Variant = std::variant<std::monostate, Omitted, Byte, Integer, Long, Single, double, bool,
                             std::string, ObjectRef>;

// Conversions as hosts expect them. Text is read as a number in decimal, &H or 0x notation, white
// space around it ignored; numbers round half to even; True is -1. Errors: 6 for a number that does
// not fit, 13 for a value that cannot become that kind.
Integer VariantToInteger(const Variant& value);
Long VariantToLong(const Variant& value);
Single VariantToSingle(const Variant& value);
double VariantToDouble(const Variant& value);
bool VariantToBoolean(const Variant& value);
std::string VariantToString(const Variant& value);
ObjectRef VariantToObject(const Variant& value);

}  // namespace quillet
