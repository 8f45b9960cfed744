#include "base/variant.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "base/rounding.h"
#include "base/runtime_error.h"

namespace quillet {
namespace {

template <typename... Handlers>
struct Overload : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overload(Handlers...) -> Overload<Handlers...>;

[[noreturn]] void Mismatch(const char* wanted, const std::string& given) {
  throw RunTimeError(ErrorNumber::TypeMismatch, given + " where " + wanted + " is expected");
}

std::string_view Trim(std::string_view text) {
  const auto isSpace = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

// &H and 0x numbers are bit patterns. As in source text, &H with up to four digits is an Integer,
// so that &HFFFF is -1; &HFFFF& and 0xFFFF are 65535. Eight digits reach the negative Longs.
bool ParseHexadecimal(std::string_view text, double& number) {
  if (text.size() < 3) return false;
  const std::string_view mark = text.substr(0, 2);
  const bool basic = EqualsIgnoringCase(mark, "&H");
  if (!basic && !EqualsIgnoringCase(mark, "0x")) return false;
  text.remove_prefix(2);
  const bool markedLong = basic && text.back() == '&';
  if (markedLong) text.remove_suffix(1);
  std::uint32_t bits = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bits, 16);
  if (text.empty() || end != text.data() + text.size()) return false;
  if (error == std::errc::result_out_of_range) throw RunTimeError(ErrorNumber::Overflow);
  if (error != std::errc{}) return false;
  number = basic && !markedLong && bits <= 0xFFFF
               ? static_cast<double>(static_cast<std::int16_t>(bits))
               : static_cast<double>(static_cast<std::int32_t>(bits));
  return true;
}

double ParseNumber(const std::string& value, const char* wanted) {
  std::string_view text = Trim(value);
  double number = 0;
  if (ParseHexadecimal(text, number)) return number;
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::result_out_of_range) throw RunTimeError(ErrorNumber::Overflow, value);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(number))
    Mismatch(wanted, "\"" + value + "\"");
  return number;
}

double Number(const Variant& value, const char* wanted) {
  return std::visit(
      Overload{[](std::monostate) { return 0.0; }, [](bool flag) { return flag ? -1.0 : 0.0; },
               [&](const std::string& text) { return ParseNumber(text, wanted); },
               [&](Omitted) -> double { Mismatch(wanted, "an omitted argument"); },
               [&](const ObjectRef&) -> double { Mismatch(wanted, "an object"); },
               [](auto number) { return static_cast<double>(number); }},
      value);
}

std::string FloatToString(double value, int digits) {
  std::array<char, 40> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.*g", digits, value);
  return std::string(text.data(), static_cast<std::size_t>(length));
}

}  // namespace

Integer VariantToInteger(const Variant& value) {
  return ToInteger(Number(value, "an Integer"));
}
Long VariantToLong(const Variant& value) {
  return ToLong(Number(value, "a Long"));
}
double VariantToDouble(const Variant& value) {
  return Number(value, "a Double");
}

Single VariantToSingle(const Variant& value) {
  const auto single = static_cast<Single>(Number(value, "a Single"));
  if (!std::isfinite(single)) throw RunTimeError(ErrorNumber::Overflow);
  return single;
}

bool VariantToBoolean(const Variant& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag;
  if (const auto* text = std::get_if<std::string>(&value)) {
    const std::string_view word = Trim(*text);
    if (EqualsIgnoringCase(word, "True")) return true;
    if (EqualsIgnoringCase(word, "False")) return false;
  }
  return Number(value, "a Boolean") != 0.0;
}

std::string VariantToString(const Variant& value) {
  return std::visit(
      Overload{[](std::monostate) { return std::string(); },
               [](const std::string& text) { return text; },
               [](bool flag) { return std::string(flag ? "True" : "False"); },
               [](Single number) { return FloatToString(static_cast<double>(number), 7); },
               [](double number) { return FloatToString(number, 15); },
               [](Omitted) -> std::string { Mismatch("a String", "an omitted argument"); },
               [](const ObjectRef&) -> std::string { Mismatch("a String", "an object"); },
               [](auto number) { return std::to_string(number); }},
      value);
}

ObjectRef VariantToObject(const Variant& value) {
  if (const auto* object = std::get_if<ObjectRef>(&value)) return *object;
  if (std::holds_alternative<std::monostate>(value)) return nullptr;
  Mismatch("an object", "a value");
}

}  // namespace quillet
