#include "platform/portable/scroll_bar_painter.h"

#include <algorithm>

#include "platform/portable/system_colors.h"

namespace quillet {
namespace {

// A triangle's rows from its tip on are 1, 3, 5 and 7 pixels long.
constexpr int kArrowRows = 4;

void DrawRaised(Raster& raster, const PixelRect& area) {
  raster.Fill(area, ResolveColor(kFace3D));
  raster.Edge(area.Inset(1), ResolveColor(kHighlight3D), ResolveColor(kShadow3D));
  raster.Edge(area, ResolveColor(kLight3D), ResolveColor(kDarkShadow3D));
}

void DrawTriangle(Raster& raster, const PixelRect& area, Orientation orientation, bool forward,
                  Rgb color) {
  const bool horizontal = orientation == Orientation::Horizontal;
  const int along = horizontal ? area.left + (area.width - kArrowRows) / 2
                               : area.top + (area.height - kArrowRows) / 2;
  const int middle =
      horizontal ? area.top + (area.height - 1) / 2 : area.left + (area.width - 1) / 2;
  for (int row = 0; row < kArrowRows; ++row) {
    const int half = forward ? kArrowRows - 1 - row : row;
    const PixelRect line = horizontal ? PixelRect{along + row, middle - half, 1, 2 * half + 1}
                                      : PixelRect{middle - half, along + row, 2 * half + 1, 1};
    const PixelRect shown = line.Intersection(area);
    if (!shown.Empty()) raster.Fill(shown, color);
  }
}

void DrawArrow(Raster& raster, const PixelRect& area, Orientation orientation, bool forward,
               bool enabled) {
  DrawRaised(raster, area);
  const PixelRect face = area.Inset(2);
  if (enabled) {
    DrawTriangle(raster, face, orientation, forward, ResolveColor(kButtonText));
    return;
  }
  PixelRect shifted = face;
  ++shifted.left;
  ++shifted.top;
  DrawTriangle(raster, shifted, orientation, forward, ResolveColor(kHighlight3D));
  DrawTriangle(raster, face, orientation, forward, ResolveColor(kShadow3D));
}

}  // namespace

void DrawScrollBar(Raster& inside, const PortableScrollBar& bar, bool enabled) {
  const ScrollBarGeometry geometry = bar.Geometry();
  const PixelRect& place = bar.Place();
  const auto slice = [&](int start, int length) {
    return bar.Direction() == Orientation::Horizontal
               ? PixelRect{place.left + start, place.top, length, place.height}
               : PixelRect{place.left, place.top + start, place.width, length};
  };
  const bool works = enabled && geometry.Scrolls();
  const int arrow = geometry.ArrowLength();
  const int trough = geometry.TroughLength();
  inside.Dither(slice(arrow, trough), ResolveColor(kHighlight3D), ResolveColor(kFace3D));
  DrawArrow(inside, slice(0, arrow), bar.Direction(), false, works);
  DrawArrow(inside, slice(arrow + trough, arrow), bar.Direction(), true, works);
  if (works && geometry.HasThumb())
    DrawRaised(inside, slice(geometry.ThumbStart(), geometry.ThumbLength()));
}

}  // namespace quillet
