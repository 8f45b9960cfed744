#include "server/twain_part.h"

#include "server/late_binding.h"
#include "server/type_library.h"

namespace quillet {

HRESULT TwainPart::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT TwainPart::GetTypeInfo(UINT index, LCID, ITypeInfo** typeInfo) {
  if (!typeInfo) return E_POINTER;
  *typeInfo = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return Enter([&] { return LoadTypeInfo(kTwainInterface, typeInfo); });
}

HRESULT TwainPart::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* numbers) {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !numbers) return E_POINTER;
  if (count == 0) return E_INVALIDARG;
  for (UINT i = 0; i < count; ++i)
    if (!names[i]) return E_POINTER;
  return Enter([&] { return FindNumbers(names, count, numbers); });
}

HRESULT TwainPart::Invoke(DISPID number, REFIID iid, LCID, WORD flags, DISPPARAMS* arguments,
                          VARIANT* result, EXCEPINFO* exception, UINT* argument) {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!arguments || (arguments->cArgs > 0 && !arguments->rgvarg) ||
      (arguments->cNamedArgs > 0 && !arguments->rgdispidNamedArgs))
    return E_POINTER;
  if (result) ::VariantInit(result);
  return Enter([&]() -> HRESULT {
    UINT atFault = 0;
    try {
      return InvokeMember(m_core, number, flags, *arguments, result, atFault);
    } catch (...) {
      const ComError error = CurrentError();
      if (argument) *argument = atFault;
      if (exception) Fill(*exception, error);
      return DISP_E_EXCEPTION;
    }
  });
}

}  // namespace quillet
