// The operations whose result at a pixel depends on its neighbours. In place, from the top left:
// who reads a pixel to the right or below reads it as it was, who reads one above reads it as it
// has become.

#include <algorithm>

#include "base/rounding.h"
#include "picture/cPicture24.h"
#include "picture/pixel_loan.h"

namespace quillet {
namespace {

// By any amount. Run-time error 6 for a result beyond 16 bits.
void SharpenRow(Byte* row, const Byte* diagonal, std::ptrdiff_t count, Single amount) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const Integer sharpened = ToInteger((row[i] - diagonal[i]) * double{amount} + row[i]);
    row[i] = static_cast<Byte>(std::clamp(sharpened, Integer{0}, Integer{255}));
  }
}

}  // namespace

void cPicture24::Sharpen(Single sngAmount) {
  TransformRows(0, 1, [&](DibSection& pixels, Long y) {
    Byte* const row = pixels.Row(y);
    const Byte* const diagonal = pixels.Row(y + 1) + 3;
    const std::ptrdiff_t count = 3 * std::ptrdiff_t{pixels.Width() - 1};
    if (sngAmount == 0.5f)
      m_kernels.SharpenByHalf(row, diagonal, count);
    else if (sngAmount == 0.8f)
      m_kernels.SharpenByFourFifths(row, diagonal, count);
    else
      SharpenRow(row, diagonal, count, sngAmount);
  });
}

void cPicture24::Blur() {
  TransformRows(1, 1, [&](DibSection& pixels, Long y) {
    if (pixels.Width() < 3) return;
    m_kernels.Blur(pixels.Row(y - 1), pixels.Row(y) + 3, pixels.Row(y + 1) + 3,
                   3 * std::ptrdiff_t{pixels.Width() - 2});
  });
}

}  // namespace quillet
