#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "base/types.h"
#include "platform/portable/test_page_font.h"

namespace quillet {

struct PageColor {
  Byte red = 0, green = 0, blue = 0;
};

// In millimetres from the page's top left corner; right and bottom are the far edges.
struct PageBox {
  double left = 0, top = 0, right = 0, bottom = 0;
};

// Draws on the rows of a 24-bit page in millimetres, with soft edges: a pixel takes the share of
// ink that the shape covers of it. What lies beyond the page is cut off.
//
// Pixels are the same on every processor: only operations that IEEE 754 defines to the last bit.
class PageCanvas {
 public:
  // `rows` is the top row's first byte, `stride` the way to the next row, in bytes; negative for
  // rows that are stored bottom-up. Pixels are blue, green, red.
  PageCanvas(int width, int height, int dotsPerInch, Byte* rows, std::ptrdiff_t stride);

  void Fill(PageColor color);
  void FillBox(const PageBox& box, PageColor color);
  // Draws the paths in one go with a round pen, so that they cross without a darker spot.
  void Stroke(std::span<const PagePath> paths, double penWidth, PageColor color);
  void FillDisc(PagePoint centre, double radius, PageColor color);

  // Gives each pixel whose centre is in the box the colour that shader(column, row, centre) says.
  template <typename Shader>
  void Shade(const PageBox& box, Shader&& shader) {
    const Pixels pixels = CentresIn(box);
    for (int row = pixels.top; row < pixels.bottom; ++row)
      for (int column = pixels.left; column < pixels.right; ++column)
        Put(column, row, shader(column, row, Centre(column, row)));
  }

 private:
  // Columns and rows, the far ones excluded.
  struct Pixels {
    int left, top, right, bottom;
  };

  Byte* At(int column, int row) const noexcept {
    return m_rows + row * m_stride + std::ptrdiff_t{3} * column;
  }
  void Put(int column, int row, PageColor color) const noexcept;
  void Blend(int column, int row, PageColor color, Byte share) const noexcept;
  PagePoint Centre(int column, int row) const noexcept {
    return {(column + 0.5) / m_scale, (row + 0.5) / m_scale};
  }
  Pixels CentresIn(const PageBox& box) const;
  Pixels Touched(const PageBox& box) const;
  void StrokeLine(PagePoint from, PagePoint to, double radius, const Pixels& area);

  int m_width, m_height;
  double m_scale;  // pixels per millimetre
  Byte* m_rows;
  std::ptrdiff_t m_stride;
  std::vector<Byte> m_mask;  // the pen's share of each pixel in the area being stroked
};

}  // namespace quillet
