#pragma once

namespace quillet {

// What --help prints.
extern const char* const kHelp;

}  // namespace quillet
