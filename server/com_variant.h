#pragma once

#include "base/variant.h"
#include "control/events.h"
#include "platform/win32/sdk.h"
#include "platform/win32/win32_pictures.h"

namespace quillet {

// Values between COM and the core. The system's kinds that the core has no kind for become the one
// that loses nothing of them; objects where a plain value is expected give their default value.

// A host's argument for a parameter of that kind, references looked through; Omitted for one that
// was left out. Run-time errors: 13 for what cannot become such a value (arrays, Null, objects that
// are no picture), 6 for what does not fit, 7.
Variant FromVariant(const VARIANT& given, ValueKind kind, Win32Pictures& pictures);

// A value as it goes out; `out` holds nothing before. Run-time error 7.
void ToVariant(const Variant& value, VARIANT& out);

// What a call left in an argument that was passed by reference; an argument that was not is left
// alone. Run-time error 7.
void WriteBack(VARIANT& argument, const Variant& value);

// Text of either side; run-time error 7.
std::string FromBstr(BSTR text);
BSTR ToBstr(const std::string& text);

// Frees a VARIANT with its scope.
class UniqueVariant {
 public:
  UniqueVariant() noexcept { ::VariantInit(&m_value); }
  UniqueVariant(const UniqueVariant&) = delete;
  UniqueVariant& operator=(const UniqueVariant&) = delete;
  ~UniqueVariant() { ::VariantClear(&m_value); }

  VARIANT& get() noexcept { return m_value; }

 private:
  VARIANT m_value;
};

}  // namespace quillet
