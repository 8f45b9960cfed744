#pragma once

#include "bench/results.h"

namespace quillet::bench {

// Measures a scan in colour from the moment the source says that its image is ready until the
// control shows it, beside the least that its way through a file can cost: one memcpy, one file
// write and one file read of the same bytes, in the same rounds. Prints the time and the peak
// memory, and counts the goals. Call it when nothing else is alive.
void MeasureScan(int dotsPerInch, int rounds, Results& results);

}  // namespace quillet::bench
