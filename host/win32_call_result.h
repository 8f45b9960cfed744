#pragma once

#include <string>

#include "platform/win32/sdk.h"

namespace quillet {

// What a call through COM came to, as the exception that the core would have thrown: the run-time
// error that 0x800A0000 and its number stand for, with the text that was told along with it;
// std::runtime_error for any other failure. The record's strings stay the caller's.
[[noreturn]] void ThrowFailure(HRESULT failure, const EXCEPINFO& told);

// The same for a failure whose text was left for the thread.
void RequireCall(HRESULT result);

// 0x8000FFFF and the like.
std::string TextOf(HRESULT result);

}  // namespace quillet
