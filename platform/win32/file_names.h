#pragma once

#include <string>

namespace quillet {

// A file's name as the system takes it. Names that the system's usual limit of 260 characters would
// refuse get the form that has none. A name that is empty or holds a NUL names no file: empty.
std::wstring SystemFileName(const std::string& name);

// Whether there is a folder of that name.
bool IsFolder(const std::wstring& name) noexcept;

}  // namespace quillet
