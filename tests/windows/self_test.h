#pragma once

#include <iosfwd>

namespace quillet {

// Checks on this machine whatever the control relies on that needs no scanner, prints a table of
// what held, then what was measured, and what to send back. 0 when everything held, else 1.
int RunSelfTest(std::ostream& out);

}  // namespace quillet
