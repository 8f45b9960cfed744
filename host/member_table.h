#pragma once

#include <string>

namespace quillet {

// The control's members as a table that reads well as it is and in Markdown, a line each: number,
// name, access, parameters and result, help.
std::string MemberTable();

}  // namespace quillet
