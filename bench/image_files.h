#pragma once

#include "bench/results.h"

namespace quillet::bench {

// Saves and loads the page in every format, beside the format's library driven directly and OpenCV,
// and adds a page to a TIFF file of a hundred, beside copying that file.
void MeasureImageFiles(int dotsPerInch, int rounds, Results& results);

}  // namespace quillet::bench
