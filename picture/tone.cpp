// The operations whose result at a pixel depends on that pixel alone.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/rounding.h"
#include "picture/cPicture24.h"
#include "picture/kernels/lighten_table.h"
#include "picture/lightness.h"
#include "picture/pixel_loan.h"

namespace quillet {
namespace {

// A channel scaled by a level that may be outside 0 .. 255: run-time error 6 for a result that is
// no byte, and for a product beyond 32 bits, whose result would be none either.
Byte FadedChannel(Byte channel, Long level) {
  return ToByte(static_cast<double>(std::int64_t{channel} * level) * kChannelUnit);
}

// Pixel after pixel, a pixel only if all its channels can be: an error leaves this one and all that
// follow as they were.
void FadePixels(Byte* row, Long width, Long level) {
  for (Long x = 0; x < width; ++x, row += 3) {
    const Byte blue = FadedChannel(row[0], level);
    const Byte green = FadedChannel(row[1], level);
    const Byte red = FadedChannel(row[2], level);
    row[0] = blue;
    row[1] = green;
    row[2] = red;
  }
}

}  // namespace

void cPicture24::Invert(bool bRed, bool bGreen, bool bBlue) {
  if (!bRed && !bGreen && !bBlue) return;
  const auto change = [](bool selected) { return static_cast<Byte>(selected ? 255 : 0); };
  const PixelPattern changes(change(bBlue), change(bGreen), change(bRed));
  TransformRows(0, 0, [&](DibSection& pixels, Long y) {
    m_kernels.Invert(pixels.Row(y), 3 * std::ptrdiff_t{pixels.Width()}, changes);
  });
}

void cPicture24::GrayScale() {
  TransformRows(0, 0, [&](DibSection& pixels, Long y) {
    m_kernels.GrayScale(pixels.Row(y), pixels.Width());
  });
}

void cPicture24::BlackWhite() {
  TransformRows(0, 0, [&](DibSection& pixels, Long y) {
    m_kernels.BlackWhite(pixels.Row(y), pixels.Width());
  });
}

void cPicture24::Contrast(Integer iValue) {
  const Integer factor = std::clamp(iValue, Integer{-128}, Integer{128});
  TransformRows(0, 1, [&](DibSection& pixels, Long y) {
    m_kernels.Contrast(pixels.Row(y), 3 * std::ptrdiff_t{pixels.Width() - 1}, factor);
  });
}

void cPicture24::Fade(Long lValue) {
  const bool staysInRange = lValue >= 0 && lValue <= 255;
  TransformRows(0, 0, [&](DibSection& pixels, Long y) {
    if (staysInRange)
      m_kernels.Fade(pixels.Row(y), 3 * std::ptrdiff_t{pixels.Width()}, static_cast<Byte>(lValue));
    else
      FadePixels(pixels.Row(y), pixels.Width(), lValue);
  });
}

void cPicture24::Lighten(Long lValue) {
  if (m_width < 1) return;
  const auto table = std::make_unique<LightenTable>(lValue);
  TransformRows(0, 0, [&](DibSection& pixels, Long y) {
    m_kernels.Lighten(pixels.Row(y), pixels.Width(), *table);
  });
}

}  // namespace quillet
