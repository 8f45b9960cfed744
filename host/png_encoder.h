#pragma once

#include <vector>

#include "embed/control_window.h"

namespace quillet {

// A snapshot with pixels as a PNG file's content. std::runtime_error when that fails.
std::vector<char> EncodePng(const Snapshot& snapshot);

}  // namespace quillet
