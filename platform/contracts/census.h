#pragma once

namespace quillet {

// Live platform objects made through the contracts. All zero once everything has been let go.
struct CensusCounts {
  int bitmaps = 0;
  int deviceContexts = 0;
  int pictures = 0;
  int globalBlocks = 0;
  int windows = 0;

  bool operator==(const CensusCounts&) const = default;
};

}  // namespace quillet
