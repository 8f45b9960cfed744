#pragma once

#include <string>

#include "embed/control_window.h"

namespace quillet {

// Writes what a person sees as a PNG file. std::runtime_error, with the file's name and the reason,
// when that fails; what cannot be encoded leaves an existing file as it is.
void WritePng(const std::string& fileName, const Snapshot& snapshot);

}  // namespace quillet
