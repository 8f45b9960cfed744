#pragma once

#include <string>
#include <vector>

#include "base/types.h"

namespace quillet {

// The pages of a little-endian TIFF file, each as a file whose first page it is.
std::vector<std::vector<Byte>> PagesOfTiff(const std::vector<Byte>& file);

}  // namespace quillet
