#pragma once

#include <span>

#include "control/dispatch.h"
#include "platform/win32/sdk.h"
#include "platform/win32/win32_pictures.h"

namespace quillet {

// Calls a control's member by its name, as a script does: by-reference arguments as references to
// variants, and what the call leaves in these is left in `arguments`, also by one that fails.
// Errors as of ThrowFailure. The control may be let go of inside the call.
Variant CallByName(::IDispatch& control, const Member& member, std::span<Variant> arguments,
                   Win32Pictures& pictures);

}  // namespace quillet
