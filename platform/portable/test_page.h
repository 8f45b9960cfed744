#pragma once

#include <cstddef>

#include "base/types.h"

namespace quillet {

// The built-in test page: an A4 letter with text down to small print, a table, a photograph, colour
// and grey wedges, and fine lines. The same pixels on every processor.

inline constexpr int kMinTestPageResolution = 50;
inline constexpr int kMaxTestPageResolution = 1200;

struct TestPageSize {
  int width, height;  // in pixels
};

// 210 x 297 mm to the nearest pixel: 1240 x 1754 at 150 dots per inch. Run-time error 5 for a
// resolution below 50 or above 1200.
TestPageSize SizeOfTestPage(int dotsPerInch);

// Draws the page as 24-bit pixels (blue, green, red). `rows` is the top row's first byte, `stride`
// the way from a row to the next, in bytes, negative for rows stored bottom-up. Bytes between the
// rows are left alone. Run-time error 5 as above, and for a stride shorter than a row.
void RenderTestPage(int dotsPerInch, Byte* rows, std::ptrdiff_t stride);

}  // namespace quillet
