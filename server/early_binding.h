#pragma once

#include <array>
#include <string>

#include "base/rounding.h"
#include "control/dispatch.h"
#include "platform/win32/sdk.h"
#include "server/com_variant.h"
#include "server/control_core.h"

// From a call through the dual interface to the core's dispatch: each C++ type's way in and out.

namespace quillet {

inline Variant FromArgument(SHORT value, Win32Pictures&) {
  return Integer{value};  // a Boolean too: −1 and 0
}
inline Variant FromArgument(LONG value, Win32Pictures&) {
  return static_cast<Long>(value);
}
inline Variant FromArgument(ULONG value, Win32Pictures&) {
  return static_cast<Long>(value);  // a colour, by its bits
}
template <typename Enumeration>
requires std::is_enum_v<Enumeration> Variant FromArgument(Enumeration value, Win32Pictures&) {
  return static_cast<Long>(value);
}
inline Variant FromArgument(BSTR value, Win32Pictures&) {
  return FromBstr(value);
}
inline Variant FromArgument(const BSTR* value, Win32Pictures&) {
  return value ? Variant(FromBstr(*value)) : Variant(Omitted{});
}
inline Variant FromArgument(IPictureDisp* value, Win32Pictures& pictures) {
  return ObjectRef(pictures.Wrap(value));
}
inline Variant FromArgument(IPictureDisp* const* value, Win32Pictures& pictures) {
  return value ? Variant(ObjectRef(pictures.Wrap(*value))) : Variant(Omitted{});
}

// What the call left in an argument; by value nothing comes back.
template <typename Type>
void ToArgument(const Variant&, Type) {}
inline void ToArgument(const Variant& value, BSTR* argument) {
  if (!argument) return;
  const std::string left = VariantToString(value);
  if (left == FromBstr(*argument)) return;
  const BSTR text = ToBstr(left);
  ::SysFreeString(*argument);
  *argument = text;
}

inline void ToResult(const Variant& value, SHORT& result) {
  result = VariantToInteger(value);
}
inline void ToResult(const Variant& value, LONG& result) {
  result = VariantToLong(value);
}
inline void ToResult(const Variant& value, ULONG& result) {
  result = static_cast<ULONG>(VariantToLong(value));
}
template <typename Enumeration>
requires std::is_enum_v<Enumeration>
void ToResult(const Variant& value, Enumeration& result) {
  result = static_cast<Enumeration>(VariantToLong(value));
}
inline void ToResult(const Variant& value, BSTR& result) {
  result = ToBstr(VariantToString(value));
}
inline void ToResult(const Variant& value, IPictureDisp*& result) {
  result =
      Win32Pictures::ObjectOf(std::dynamic_pointer_cast<Picture>(VariantToObject(value))).release();
}

template <typename... Arguments>
Variant CallMember(ControlCore& core, Long number, Access access, Arguments... arguments) {
  std::array<Variant, sizeof...(Arguments)> values{FromArgument(arguments, core.Pictures())...};
  const auto writeBack = [&] {
    std::size_t index = 0;
    (ToArgument(values[index++], arguments), ...);
  };
  Variant result;
  try {
    result = Invoke(core.Control(), number, access, values);
  } catch (...) {
    writeBack();
    throw;
  }
  if (access != Access::Get) core.Watcher().Changed();
  writeBack();
  return result;
}

}  // namespace quillet
