#include "platform/portable/surface_rect.h"

#include <algorithm>
#include <cmath>

#include "base/rounding.h"
#include "base/runtime_error.h"

namespace quillet {
namespace {

// Far beyond any display, and small enough that sums of places stay exact.
constexpr double kFarthestPixel = 1'000'000;

int PixelsFromTwips(Single twips) {
  const double pixels = static_cast<double>(twips) / kTwipsPerPixel;
  if (!(std::abs(pixels) <= kFarthestPixel)) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  return ToLong(pixels);
}

}  // namespace

PixelRect PixelRect::Intersection(const PixelRect& other) const noexcept {
  const int right = std::min(left + width, other.left + other.width);
  const int bottom = std::min(top + height, other.top + other.height);
  const int x = std::max(left, other.left);
  const int y = std::max(top, other.top);
  return {x, y, std::max(right - x, 0), std::max(bottom - y, 0)};
}

PixelRect PixelRect::Inset(int pixels) const noexcept {
  return {left + pixels, top + pixels, std::max(width - 2 * pixels, 0),
          std::max(height - 2 * pixels, 0)};
}

PixelRect RectFromTwips(Single left, Single top, Single width, Single height) {
  if (width < 0 || height < 0) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  return {PixelsFromTwips(left), PixelsFromTwips(top), PixelsFromTwips(width),
          PixelsFromTwips(height)};
}

}  // namespace quillet
