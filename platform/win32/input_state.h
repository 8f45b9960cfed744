#pragma once

#include "base/types.h"

namespace quillet {

// The modifier keys as of the message at hand: 1 shift, 2 control, 4 alt, summed.
Integer ShiftState() noexcept;

// The character of a key as hosts count it, in the ANSI code page; '?' where that has none.
Integer AnsiCharacter(wchar_t unit) noexcept;

}  // namespace quillet
