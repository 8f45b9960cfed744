#pragma once

#include <string>

namespace quillet {

// What went wrong with a file, by the system's error number, as the run-time error that hosts know:
// 53 no such file, 61 no room, 70 not allowed, 76 no such folder, 75 for everything else.
[[noreturn]] void ThrowFileError(const std::string& fileName, int error);

// Run-time error 75 for a name that is empty or that the system would see cut short.
void RequireFileName(const std::string& fileName);

}  // namespace quillet
