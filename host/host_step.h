#pragma once

#include <string_view>

#include "host/step.h"

namespace quillet {

// The action of `@verb` or `@verb:arguments`: what the host or the user does, not the control.
// UsageError for an unknown verb or arguments that it does not take.
Step::Action ParseHostStep(std::string_view text);

}  // namespace quillet
