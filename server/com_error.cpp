#include "server/com_error.h"

#include <new>

#include "platform/win32/com_ptr.h"
#include "platform/win32/text.h"

namespace quillet {
namespace {

constexpr wchar_t kSource[] = L"Quillet.Twain";

ComError Describe(const RunTimeError& error) noexcept {
  ComError described{ResultOf(error.Number()), {}};
  try {
    described.description = Utf16(error.what());
  } catch (...) {
    // The number alone then.
  }
  return described;
}

}  // namespace

HRESULT ResultOf(ErrorNumber number) noexcept {
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<int>(number));
}

ComError CurrentError() noexcept {
  try {
    throw;
  } catch (const RunTimeError& error) {
    return Describe(error);
  } catch (const std::bad_alloc&) {
    return {ResultOf(ErrorNumber::OutOfMemory), {}};
  } catch (...) {
    return {E_UNEXPECTED, {}};
  }
}

HRESULT Report(const ComError& error, REFIID iid) noexcept {
  ComPtr<ICreateErrorInfo> description;
  ComPtr<IErrorInfo> told;
  if (SUCCEEDED(::CreateErrorInfo(description.Receive()))) {
    description->SetGUID(iid);
    description->SetSource(const_cast<LPOLESTR>(kSource));
    description->SetDescription(const_cast<LPOLESTR>(error.description.c_str()));
    description->QueryInterface(IID_IErrorInfo, told.ReceiveVoid());
  }
  ::SetErrorInfo(0, told.get());
  return error.result;
}

void Fill(EXCEPINFO& record, const ComError& error) noexcept {
  record = {};
  record.scode = error.result;
  record.bstrSource = ::SysAllocString(kSource);
  record.bstrDescription = ::SysAllocString(error.description.c_str());
}

}  // namespace quillet
