#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/portable/test_page_canvas.h"

namespace quillet {

// A photograph of a mountain lake that never was: gradients, soft and rough textures, hard edges
// and a little grain, all from fixed seeds.
class TestPhoto {
 public:
  // From 0 to 1 a channel.
  struct Light {
    double red, green, blue;
  };

  // The photograph fills the box.
  explicit TestPhoto(const PageBox& box);

  // The colour at a point of the box; `column` and `row` choose the grain.
  PageColor At(int column, int row, PagePoint point) const;

 private:
  // The sky and the ranges of hills in front of it, the farthest `ranges` of them.
  Light Hills(std::int32_t x, std::int32_t y, std::size_t ranges) const;
  Light Lake(std::int32_t x, std::int32_t y) const;

  PageBox m_box;
  std::vector<std::vector<double>> m_ridges;  // of the ranges, from the farthest
  std::vector<double> m_bank;                 // where the meadow begins
};

}  // namespace quillet
