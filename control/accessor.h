#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "base/runtime_error.h"
#include "base/variant.h"
#include "control/TWAIN.h"
#include "control/dispatch.h"

// From a member function of the control to a row of the table of members: argument kinds,
// conversions and write-back all come from the function's own signature.

namespace quillet {

// How one C++ type passes through dispatch.
template <typename Type>
struct Passage;

template <>
struct Passage<void> {
  static constexpr ValueKind kKind = ValueKind::None;
};

template <>
struct Passage<Integer> {
  static constexpr ValueKind kKind = ValueKind::Int16;
  static Integer From(const Variant& value) { return VariantToInteger(value); }
  static Variant To(Integer value) { return value; }
};

template <>
struct Passage<Long> {
  static constexpr ValueKind kKind = ValueKind::Int32;
  static Long From(const Variant& value) { return VariantToLong(value); }
  static Variant To(Long value) { return value; }
};

template <>
struct Passage<bool> {
  static constexpr ValueKind kKind = ValueKind::Boolean;
  static bool From(const Variant& value) { return VariantToBoolean(value); }
  static Variant To(bool value) { return value; }
};

template <>
struct Passage<std::string> {
  static constexpr ValueKind kKind = ValueKind::String;
  static std::string From(const Variant& value) { return VariantToString(value); }
  static Variant To(std::string value) { return value; }
};

// Hosts know colours as signed 32-bit integers of the same bits.
template <>
struct Passage<OLE_COLOR> {
  static constexpr ValueKind kKind = ValueKind::OleColor;
  static OLE_COLOR From(const Variant& value) {
    const double number = VariantToDouble(value);
    return number > 2147483647.0 && number <= 4294967295.0
               ? static_cast<OLE_COLOR>(VariantToLong(number - 4294967296.0))
               : static_cast<OLE_COLOR>(VariantToLong(value));
  }
  static Variant To(OLE_COLOR value) { return static_cast<Long>(value); }
};

template <>
struct Passage<ObjectRef> {
  static constexpr ValueKind kKind = ValueKind::Picture;
  static ObjectRef From(const Variant& value) { return VariantToObject(value); }
  static Variant To(ObjectRef value) { return value; }
};

template <>
struct Passage<PictureRef> {
  static constexpr ValueKind kKind = ValueKind::Picture;
  static PictureRef From(const Variant& value) {
    const ObjectRef object = VariantToObject(value);
    PictureRef picture = std::dynamic_pointer_cast<Picture>(object);
    if (object && !picture)
      throw RunTimeError(ErrorNumber::TypeMismatch, "an object that is no picture");
    return picture;
  }
  static Variant To(const PictureRef& value) { return ObjectRef(value); }
};

template <typename Enumeration, ValueKind kind>
struct EnumerationPassage {
  static constexpr ValueKind kKind = kind;
  static Enumeration From(const Variant& value) {
    return static_cast<Enumeration>(VariantToLong(value));
  }
  static Variant To(Enumeration value) { return static_cast<Long>(value); }
};

template <>
struct Passage<IMAGE_COLORTYPE> : EnumerationPassage<IMAGE_COLORTYPE, ValueKind::ImageColorType> {};
template <>
struct Passage<IMAGE_TYPE> : EnumerationPassage<IMAGE_TYPE, ValueKind::ImageType> {};
template <>
struct Passage<FIT_TYPE> : EnumerationPassage<FIT_TYPE, ValueKind::FitType> {};

// A parameter that the function may change is passed by reference.
template <typename Argument>
inline constexpr bool kByReference =
    std::is_lvalue_reference_v<Argument> && !std::is_const_v<std::remove_reference_t<Argument>>;

template <typename Function>
struct Signature;

template <typename Returned, typename... Arguments>
struct Signature<Returned (TWAIN::*)(Arguments...)> {
  using Result = Returned;
  using Values = std::tuple<std::remove_cvref_t<Arguments>...>;
  static constexpr std::array<ValueKind, sizeof...(Arguments)> kKinds{
      Passage<std::remove_cvref_t<Arguments>>::kKind...};
  static constexpr std::array<bool, sizeof...(Arguments)> kByReferences{kByReference<Arguments>...};
};

template <typename Returned, typename... Arguments>
struct Signature<Returned (TWAIN::*)(Arguments...) const>
    : Signature<Returned (TWAIN::*)(Arguments...)> {};

// Converts the arguments (one for each parameter), calls the member and writes changed ones back,
// also when the member fails: it changed them before.
template <auto function>
Variant CallMember(TWAIN& control, std::span<Variant> arguments) {
  using Shape = Signature<decltype(function)>;
  using Values = typename Shape::Values;
  return [&]<std::size_t... index>(std::index_sequence<index...>)->Variant {
    Values values{Passage<std::tuple_element_t<index, Values>>::From(arguments[index])...};
    const auto writeBack = [&] {
      ((Shape::kByReferences[index]
            ? void(arguments[index] =
                       Passage<std::tuple_element_t<index, Values>>::To(std::get<index>(values)))
            : void()),
       ...);
    };
    try {
      if constexpr (std::is_void_v<typename Shape::Result>) {
        (control.*function)(std::get<index>(values)...);
        writeBack();
        return {};
      } else {
        auto result = (control.*function)(std::get<index>(values)...);
        writeBack();
        return Passage<std::remove_cvref_t<typename Shape::Result>>::To(std::move(result));
      }
    } catch (...) {
      writeBack();
      throw;
    }
  }
  (std::make_index_sequence<std::tuple_size_v<Values>>());
}

// A row of the table. The names of parameters must fit the function's signature.
template <auto function>
consteval Member MemberRow(Long number, const char* name, Access access, const char* help = nullptr,
                           std::span<const Parameter> parameters = {}) {
  using Shape = Signature<decltype(function)>;
  if (access == Access::Method) {
    if (parameters.size() != Shape::kKinds.size()) throw "one name for each parameter";
    for (std::size_t i = 0; i < parameters.size(); ++i)
      if (parameters[i].byReference != Shape::kByReferences[i]) throw "by reference or by value";
  }
  return {number,        name,
          access,        parameters,
          Shape::kKinds, Passage<std::remove_cvref_t<typename Shape::Result>>::kKind,
          help,          &CallMember<function>};
}

}  // namespace quillet
