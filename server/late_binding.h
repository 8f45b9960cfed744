#pragma once

#include "platform/win32/sdk.h"
#include "server/control_core.h"

namespace quillet {

// IDispatch of the control by the core's own table: the system's way through the type library does
// not do for all hosts (arguments left out, variables passed by reference).

// The numbers of a member and of its parameters, which are counted from 0. Names ignore case;
// DISP_E_UNKNOWNNAME and the number −1 for those that there are not.
HRESULT FindNumbers(const LPOLESTR* names, UINT count, DISPID* numbers);

// Reads, writes or calls a member with a host's arguments, by position or by name.
// DISP_E_MEMBERNOTFOUND when there is none for these flags; for a picture, only a write by
// reference is one. Run-time errors are those of the core's dispatch; `argumentAtFault` is set to
// the place of an argument that cannot be converted. `result` may be null, or holds nothing before.
HRESULT InvokeMember(ControlCore& core, DISPID number, WORD flags, DISPPARAMS& given,
                     VARIANT* result, UINT& argumentAtFault);

}  // namespace quillet
