#pragma once

#include <string>

#include "platform/win32/sdk.h"

namespace quillet {

// The type library in this file, which need not be registered for that.
HRESULT LoadOwnTypeLibrary(ITypeLib** library);
// One of its interfaces or classes.
HRESULT LoadTypeInfo(REFGUID id, ITypeInfo** typeInfo);

// The file that this code is in; empty when the system does not tell.
std::wstring OwnFileName();

}  // namespace quillet
