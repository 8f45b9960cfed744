#pragma once

#include "base/types.h"

namespace quillet {

// A display has 96 dots to the inch, a twip is 1/1440 inch.
inline constexpr int kTwipsPerPixel = 15;

inline Single TwipsFromPixels(int pixels) noexcept {
  return static_cast<Single>(pixels) * kTwipsPerPixel;
}

// A rectangle in whole pixels; sizes are 0 or more.
struct PixelRect {
  int left = 0, top = 0, width = 0, height = 0;

  bool Empty() const noexcept { return width == 0 || height == 0; }
  bool Contains(int x, int y) const noexcept {
    return x >= left && y >= top && x - left < width && y - top < height;
  }
  PixelRect Intersection(const PixelRect& other) const noexcept;
  PixelRect Inset(int pixels) const noexcept;
  bool operator==(const PixelRect&) const = default;
};

// The pixels of a place given in twips, each number rounded for itself. Run-time error 380 for a
// negative size, and for numbers no display could hold.
PixelRect RectFromTwips(Single left, Single top, Single width, Single height);

}  // namespace quillet
