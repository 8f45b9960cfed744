#include "platform/portable/test_page_canvas.h"

#include <algorithm>
#include <cmath>

#include "base/rounding.h"

namespace quillet {
namespace {

constexpr double kMillimetresPerInch = 25.4;

Byte Mixed(Byte under, Byte over, int share) {
  return static_cast<Byte>((under * (255 - share) + over * share + 127) / 255);
}

// The length that the interval covers of the pixel that begins at `pixel`.
double Overlap(double from, double to, int pixel) {
  return std::clamp(std::min(to, pixel + 1.0) - std::max(from, static_cast<double>(pixel)), 0.0,
                    1.0);
}

}  // namespace

PageCanvas::PageCanvas(int width, int height, int dotsPerInch, Byte* rows, std::ptrdiff_t stride)
    : m_width(width),
      m_height(height),
      m_scale(dotsPerInch / kMillimetresPerInch),
      m_rows(rows),
      m_stride(stride) {}

void PageCanvas::Put(int column, int row, PageColor color) const noexcept {
  Byte* pixel = At(column, row);
  pixel[0] = color.blue;
  pixel[1] = color.green;
  pixel[2] = color.red;
}

void PageCanvas::Blend(int column, int row, PageColor color, Byte share) const noexcept {
  Byte* pixel = At(column, row);
  pixel[0] = Mixed(pixel[0], color.blue, share);
  pixel[1] = Mixed(pixel[1], color.green, share);
  pixel[2] = Mixed(pixel[2], color.red, share);
}

PageCanvas::Pixels PageCanvas::CentresIn(const PageBox& box) const {
  const auto first = [this](double position, int limit) {
    return std::clamp(ToLong(std::ceil(position * m_scale - 0.5)), 0, limit);
  };
  return {first(box.left, m_width), first(box.top, m_height), first(box.right, m_width),
          first(box.bottom, m_height)};
}

PageCanvas::Pixels PageCanvas::Touched(const PageBox& box) const {
  const auto clamped = [](double position, int limit) {
    return std::clamp(ToLong(position), 0, limit);
  };
  return {clamped(std::floor(box.left * m_scale), m_width),
          clamped(std::floor(box.top * m_scale), m_height),
          clamped(std::ceil(box.right * m_scale), m_width),
          clamped(std::ceil(box.bottom * m_scale), m_height)};
}

void PageCanvas::Fill(PageColor color) {
  for (int column = 0; column < m_width; ++column) Put(column, 0, color);
  for (int row = 1; row < m_height; ++row)
    std::copy_n(m_rows, 3 * static_cast<std::ptrdiff_t>(m_width), At(0, row));
}

void PageCanvas::FillBox(const PageBox& box, PageColor color) {
  const Pixels pixels = Touched(box);
  std::vector<double> wide;
  for (int column = pixels.left; column < pixels.right; ++column)
    wide.push_back(Overlap(box.left * m_scale, box.right * m_scale, column));
  for (int row = pixels.top; row < pixels.bottom; ++row) {
    const double high = Overlap(box.top * m_scale, box.bottom * m_scale, row);
    for (int column = pixels.left; column < pixels.right; ++column) {
      const double share = high * wide[static_cast<std::size_t>(column - pixels.left)];
      if (share == 1) {
        Put(column, row, color);
      } else {
        Blend(column, row, color, ToByte(255 * share));
      }
    }
  }
}

void PageCanvas::Stroke(std::span<const PagePath> paths, double penWidth, PageColor color) {
  PageBox box{1e6, 1e6, -1e6, -1e6};
  for (const PagePath& path : paths) {
    for (const PagePoint& point : path) {
      box.left = std::min(box.left, point.x);
      box.top = std::min(box.top, point.y);
      box.right = std::max(box.right, point.x);
      box.bottom = std::max(box.bottom, point.y);
    }
  }
  if (box.left > box.right) return;
  const double reach = penWidth / 2 + 1 / m_scale;
  const Pixels area =
      Touched({box.left - reach, box.top - reach, box.right + reach, box.bottom + reach});
  const auto columns = static_cast<std::size_t>(area.right - area.left);
  m_mask.assign(columns * static_cast<std::size_t>(area.bottom - area.top), 0);
  for (const PagePath& path : paths)
    for (std::size_t i = 1; i < path.size(); ++i)
      StrokeLine(path[i - 1], path[i], penWidth / 2, area);

  const Byte* share = m_mask.data();
  for (int row = area.top; row < area.bottom; ++row)
    for (int column = area.left; column < area.right; ++column, ++share)
      if (*share != 0) Blend(column, row, color, *share);
}

// The share falls from all to nothing over one pixel around the pen's edge, linearly in the square
// of the distance: as smooth as with the distance itself, and without a root. A pen thinner than a
// pixel draws paler instead of narrower.
void PageCanvas::StrokeLine(PagePoint from, PagePoint to, double radius, const Pixels& area) {
  const double pen = std::max(radius * m_scale, 0.5);
  const double strength = 255 * std::min(2 * radius * m_scale, 1.0);
  const Byte full = ToByte(strength);
  const double outer = (pen + 0.5) * (pen + 0.5);
  const double inner = (pen - 0.5) * (pen - 0.5);
  const double alongX = (to.x - from.x) * m_scale;
  const double alongY = (to.y - from.y) * m_scale;
  const double length = std::max(alongX * alongX + alongY * alongY, 1e-9);
  const double reach = radius + 1 / m_scale;
  const Pixels line = Touched({std::min(from.x, to.x) - reach, std::min(from.y, to.y) - reach,
                               std::max(from.x, to.x) + reach, std::max(from.y, to.y) + reach});
  const int columns = area.right - area.left;
  for (int row = line.top; row < line.bottom; ++row) {
    Byte* mask = m_mask.data() + static_cast<std::ptrdiff_t>(row - area.top) * columns - area.left;
    const double y = row + 0.5 - from.y * m_scale;
    for (int column = line.left; column < line.right; ++column) {
      const double x = column + 0.5 - from.x * m_scale;
      const double part = std::clamp((x * alongX + y * alongY) / length, 0.0, 1.0);
      const double awayX = x - part * alongX;
      const double awayY = y - part * alongY;
      const double distance = awayX * awayX + awayY * awayY;
      if (distance >= outer) continue;
      mask[column] = std::max(
          mask[column],
          distance <= inner ? full : ToByte(strength * (outer - distance) / (outer - inner)));
    }
  }
}

void PageCanvas::FillDisc(PagePoint centre, double radius, PageColor color) {
  const PagePath dot[] = {{centre, centre}};
  Stroke(dot, 2 * radius, color);
}

}  // namespace quillet
