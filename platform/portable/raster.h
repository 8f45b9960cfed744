#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "base/types.h"
#include "platform/portable/surface_rect.h"
#include "platform/portable/system_colors.h"

namespace quillet {

// A picture of the screen in memory: RGB, 3 bytes a pixel, rows top-down without padding. Drawing
// outside it is clipped.
class Raster {
 public:
  // Run-time error 7 when there is no memory.
  Raster(int width, int height, Rgb color);

  int Width() const noexcept { return m_width; }
  int Height() const noexcept { return m_height; }
  PixelRect Bounds() const noexcept { return {0, 0, m_width, m_height}; }
  Rgb At(int x, int y) const;
  Byte* Pixels() noexcept { return m_pixels.data(); }
  std::vector<Byte> TakePixels() && noexcept { return std::move(m_pixels); }

  void Fill(const PixelRect& area, Rgb color);
  // Every other pixel in each colour, as on a chessboard.
  void Dither(const PixelRect& area, Rgb color, Rgb other);
  // A frame one pixel wide: `lit` along the left and top, `shaded` along the bottom and right.
  void Edge(const PixelRect& area, Rgb lit, Rgb shaded);
  void Paste(const Raster& source, int left, int top);
  // Pixels as bitmaps keep them: blue, green, red, rows `stride` bytes apart.
  void PasteBgr(const PixelRect& area, const Byte* pixels, std::size_t stride);

 private:
  std::size_t Offset(int x, int y) const noexcept;

  int m_width;
  int m_height;
  std::vector<Byte> m_pixels;
};

}  // namespace quillet
