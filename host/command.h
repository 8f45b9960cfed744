#pragma once

#include <iosfwd>
#include <span>
#include <string>

namespace quillet {

// The quillet command: runs it with the given arguments (the program's name left out) and streams
// and returns its exit status.
int RunCommand(std::span<const std::string> arguments, std::istream& in, std::ostream& out,
               std::ostream& err);

}  // namespace quillet
