#include "server/com_variant.h"

#include "base/runtime_error.h"
#include "platform/win32/com_ptr.h"
#include "platform/win32/text.h"

namespace quillet {
namespace {

void Require(HRESULT result) {
  if (SUCCEEDED(result)) return;
  if (result == E_OUTOFMEMORY) throw RunTimeError(ErrorNumber::OutOfMemory);
  if (result == DISP_E_OVERFLOW) throw RunTimeError(ErrorNumber::Overflow);
  throw RunTimeError(ErrorNumber::TypeMismatch);
}

// Dates and amounts of money are text to a String and numbers to every other kind.
VARTYPE PlainKindOf(ValueKind kind) {
  return kind == ValueKind::String ? VT_BSTR : VT_R8;
}

Variant Converted(const VARIANT& given, VARTYPE type, Win32Pictures& pictures) {
  UniqueVariant plain;
  Require(::VariantChangeType(&plain.get(), const_cast<VARIANT*>(&given), 0, type));
  return FromVariant(plain.get(), ValueKind::None, pictures);
}

ObjectRef ObjectFrom(::IUnknown* object, Win32Pictures& pictures) {
  return pictures.Wrap(object);
}

::IDispatch* ObjectTo(const ObjectRef& object) {
  return Win32Pictures::ObjectOf(std::dynamic_pointer_cast<Picture>(object)).release();
}

}  // namespace

Variant FromVariant(const VARIANT& given, ValueKind kind, Win32Pictures& pictures) {
  if (given.vt == (VT_BYREF | VT_VARIANT)) {
    // One level only: a reference to itself would never end.
    if (!given.pvarVal || given.pvarVal->vt == (VT_BYREF | VT_VARIANT))
      throw RunTimeError(ErrorNumber::TypeMismatch);
    return FromVariant(*given.pvarVal, kind, pictures);
  }
  if (given.vt & VT_BYREF) {
    if (!given.byref) throw RunTimeError(ErrorNumber::TypeMismatch);
    UniqueVariant value;
    Require(::VariantCopyInd(&value.get(), const_cast<VARIANT*>(&given)));
    return FromVariant(value.get(), kind, pictures);
  }
  switch (given.vt) {
    case VT_EMPTY:
      return {};
    case VT_ERROR:
      if (given.scode == DISP_E_PARAMNOTFOUND) return Omitted{};
      throw RunTimeError(ErrorNumber::TypeMismatch);
    case VT_UI1:
      return Byte{given.bVal};
    case VT_I2:
      return Integer{given.iVal};
    case VT_I4:
    case VT_INT:
      return static_cast<Long>(given.lVal);
    case VT_R4:
      return Single{given.fltVal};
    case VT_R8:
      return given.dblVal;
    case VT_BOOL:
      return given.boolVal != VARIANT_FALSE;
    case VT_BSTR:
      return FromBstr(given.bstrVal);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      if (kind == ValueKind::Picture) return ObjectFrom(given.punkVal, pictures);
      if (!given.punkVal) throw RunTimeError(ErrorNumber::TypeMismatch, "no object");
      return Converted(given, PlainKindOf(kind), pictures);
    case VT_I1:
    case VT_UI2:
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_CY:
    case VT_DATE:
    case VT_DECIMAL:
      return Converted(given, PlainKindOf(kind), pictures);
    default:
      throw RunTimeError(ErrorNumber::TypeMismatch);
  }
}

void ToVariant(const Variant& value, VARIANT& out) {
  struct {
    VARIANT& out;
    void operator()(std::monostate) const { out.vt = VT_EMPTY; }
    void operator()(Omitted) const {
      out.scode = DISP_E_PARAMNOTFOUND;
      out.vt = VT_ERROR;
    }
    void operator()(Byte number) const {
      out.bVal = number;
      out.vt = VT_UI1;
    }
    void operator()(Integer number) const {
      out.iVal = number;
      out.vt = VT_I2;
    }
    void operator()(Long number) const {
      out.lVal = number;
      out.vt = VT_I4;
    }
    void operator()(Single number) const {
      out.fltVal = number;
      out.vt = VT_R4;
    }
    void operator()(double number) const {
      out.dblVal = number;
      out.vt = VT_R8;
    }
    void operator()(bool flag) const {
      out.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
      out.vt = VT_BOOL;
    }
    void operator()(const std::string& text) const {
      out.bstrVal = ToBstr(text);
      out.vt = VT_BSTR;
    }
    void operator()(const ObjectRef& object) const {
      out.pdispVal = ObjectTo(object);
      out.vt = VT_DISPATCH;
    }
  } const store{out};
  std::visit(store, value);
}

void WriteBack(VARIANT& argument, const Variant& value) {
  switch (argument.vt) {
    case VT_BYREF | VT_VARIANT: {
      UniqueVariant changed;
      ToVariant(value, changed.get());
      Require(::VariantCopy(argument.pvarVal, &changed.get()));
      return;
    }
    case VT_BYREF | VT_BSTR: {
      const BSTR text = ToBstr(VariantToString(value));
      ::SysFreeString(*argument.pbstrVal);
      *argument.pbstrVal = text;
      return;
    }
    case VT_BYREF | VT_DISPATCH:
    case VT_BYREF | VT_UNKNOWN: {
      const ComPtr<::IUnknown> before(*argument.ppunkVal);
      if (before) before->Release();
      *argument.ppunkVal = ObjectTo(VariantToObject(value));
      return;
    }
    default:
      return;
  }
}

std::string FromBstr(BSTR text) {
  return text ? Utf8({text, ::SysStringLen(text)}) : std::string();
}

BSTR ToBstr(const std::string& text) {
  const std::wstring wide = Utf16(text);
  const BSTR copy = ::SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (!copy) throw RunTimeError(ErrorNumber::OutOfMemory);
  return copy;
}

}  // namespace quillet
