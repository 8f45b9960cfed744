#pragma once

#include "bench/results.h"

namespace quillet::bench {

// Measures the process's own memory (what /proc says is resident) while a control transforms a
// page, prints it in multiples of the picture and counts the goals. Call it when nothing else is
// alive. Prints only that it cannot where there is no /proc.
void MeasureMemory(int dotsPerInch, Results& results);

}  // namespace quillet::bench
