#include "host/win32_late_call.h"

#include <string>
#include <vector>

#include "host/win32_call_result.h"
#include "platform/win32/com_ptr.h"
#include "platform/win32/text.h"
#include "server/com_variant.h"

namespace quillet {
namespace {

WORD FlagOf(Access access) {
  switch (access) {
    case Access::Get:
      return DISPATCH_PROPERTYGET;
    case Access::Put:
      return DISPATCH_PROPERTYPUT;
    case Access::PutRef:
      return DISPATCH_PROPERTYPUTREF;
    case Access::Method:
      return DISPATCH_METHOD;
  }
  return 0;
}

// What a call tells of an exception.
class ExceptionRecord {
 public:
  ExceptionRecord() = default;
  ExceptionRecord(const ExceptionRecord&) = delete;
  ExceptionRecord& operator=(const ExceptionRecord&) = delete;
  ~ExceptionRecord() {
    ::SysFreeString(m_record.bstrSource);
    ::SysFreeString(m_record.bstrDescription);
    ::SysFreeString(m_record.bstrHelpFile);
  }

  EXCEPINFO& get() noexcept { return m_record; }

 private:
  EXCEPINFO m_record{};
};

DISPID NumberByName(::IDispatch& control, const char* name) {
  std::wstring wide = Utf16(name);
  LPOLESTR names = wide.data();
  DISPID number = DISPID_UNKNOWN;
  RequireCall(control.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &number));
  return number;
}

}  // namespace

Variant CallByName(::IDispatch& control, const Member& member, std::span<Variant> arguments,
                   Win32Pictures& pictures) {
  const ComPtr<::IDispatch> alive(&control);
  const DISPID number = NumberByName(control, member.name);

  const std::size_t count = arguments.size();
  std::vector<UniqueVariant> values(count);
  std::vector<VARIANTARG> given(count);  // last to first; what they refer to is of `values`
  std::vector<std::size_t> writtenBack;
  for (std::size_t i = 0; i < count; ++i) {
    ToVariant(arguments[i], values[i].get());
    VARIANTARG& argument = given[count - 1 - i];
    const bool isOmitted = std::holds_alternative<Omitted>(arguments[i]);
    if (i < member.parameters.size() && member.parameters[i].byReference && !isOmitted) {
      argument.vt = VT_BYREF | VT_VARIANT;
      argument.pvarVal = &values[i].get();
      writtenBack.push_back(i);
    } else {
      argument = values[i].get();
    }
  }

  const bool isWrite = member.access == Access::Put || member.access == Access::PutRef;
  DISPID written = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{given.data(), isWrite ? &written : nullptr, static_cast<UINT>(count),
                        isWrite ? 1u : 0u};
  ExceptionRecord exception;
  UniqueVariant answer;
  const HRESULT result =
      alive->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, FlagOf(member.access), &parameters,
                    isWrite ? nullptr : &answer.get(), &exception.get(), nullptr);

  for (const std::size_t i : writtenBack) {
    const bool isObject = std::holds_alternative<ObjectRef>(arguments[i]);
    // The same object is the same argument still.
    if (!isObject) arguments[i] = FromVariant(values[i].get(), member.kinds[i], pictures);
  }
  if (FAILED(result)) ThrowFailure(result, exception.get());
  return FromVariant(answer.get(), member.result, pictures);
}

}  // namespace quillet
