#pragma once

#include <string>

#include "base/runtime_error.h"
#include "platform/win32/sdk.h"

namespace quillet {

// What a COM caller is told of a failure.
struct ComError {
  HRESULT result = E_UNEXPECTED;
  std::wstring description;
};

// 0x800A0000 + number, the form in which hosts know run-time errors.
HRESULT ResultOf(ErrorNumber number) noexcept;

// Of the exception that is being handled: call it in a catch block. Memory that ran out is run-time
// error 7; what is no run-time error is E_UNEXPECTED.
ComError CurrentError() noexcept;

// Leaves the description for a caller that asks the thread for it, and returns the result.
HRESULT Report(const ComError& error, REFIID iid) noexcept;
// Fills in the record of a late-bound call; the caller frees the strings.
void Fill(EXCEPINFO& record, const ComError& error) noexcept;

}  // namespace quillet
