#pragma once

#include <ostream>

#include "platform/contracts/census.h"

namespace quillet {

inline void PrintTo(const CensusCounts& counts, std::ostream* out) {
  *out << counts.bitmaps << " bitmaps, " << counts.deviceContexts << " device contexts, "
       << counts.pictures << " pictures, " << counts.globalBlocks << " global blocks, "
       << counts.windows << " windows";
}

}  // namespace quillet
