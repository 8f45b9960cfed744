#include "host/win32_call_result.h"

#include <cstdio>
#include <stdexcept>

#include "base/runtime_error.h"
#include "platform/win32/com_ptr.h"
#include "server/com_error.h"
#include "server/com_variant.h"

namespace quillet {
namespace {

[[noreturn]] void Throw(HRESULT failure, BSTR description) {
  const auto number = static_cast<ErrorNumber>(HRESULT_CODE(failure));
  if (failure == ResultOf(number)) throw RunTimeError::Told(number, FromBstr(description));
  throw std::runtime_error("the control answers " + TextOf(failure));
}

}  // namespace

std::string TextOf(HRESULT result) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(result));
  return text;
}

void ThrowFailure(HRESULT failure, const EXCEPINFO& told) {
  Throw(failure == DISP_E_EXCEPTION ? told.scode : failure, told.bstrDescription);
}

void RequireCall(HRESULT result) {
  if (SUCCEEDED(result)) return;
  ComPtr<IErrorInfo> told;
  ::GetErrorInfo(0, told.Receive());
  UniqueVariant description;
  if (told && SUCCEEDED(told->GetDescription(&description.get().bstrVal)))
    description.get().vt = VT_BSTR;
  Throw(result, description.get().vt == VT_BSTR ? description.get().bstrVal : nullptr);
}

}  // namespace quillet
