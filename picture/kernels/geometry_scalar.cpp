#include <algorithm>
#include <utility>

#include "picture/kernels/geometry.h"

namespace quillet::scalar {

void SwapRows(Byte* a, Byte* b, Long width) {
  std::swap_ranges(a, a + 3 * std::ptrdiff_t{width}, b);
}

void ReverseRow(Byte* row, Long width) {
  if (width < 2) return;
  Byte* left = row;
  Byte* right = row + 3 * (std::ptrdiff_t{width} - 1);
  for (; left < right; left += 3, right -= 3) {
    std::swap(left[0], right[0]);
    std::swap(left[1], right[1]);
    std::swap(left[2], right[2]);
  }
}

void RotateStrip(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long rows,
                 Byte* target, std::ptrdiff_t targetStride) {
  for (Long x = 0; x < width; ++x) {
    const Byte* from = source + 3 * std::ptrdiff_t{x} + (rows - 1) * sourceStride;
    Byte* to = target + x * targetStride;
    for (Long column = 0; column < rows; ++column, from -= sourceStride, to += 3) {
      to[0] = from[0];
      to[1] = from[1];
      to[2] = from[2];
    }
  }
}

}  // namespace quillet::scalar
