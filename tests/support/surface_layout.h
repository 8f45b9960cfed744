#pragma once

#include "platform/contracts/surface.h"

namespace quillet {

// Places the parts as the control does: the box in the top-left corner, the shown bars along the
// bottom and the right. All in twips.
inline void LayOut(Surface& surface, bool showHorizontal, bool showVertical) {
  const Single border = surface.UserControl().BorderStyle() == 1 ? 60 : 0;
  const Single width = surface.UserControl().Width();
  const Single height = surface.UserControl().Height();
  const Single barHeight = showHorizontal ? 255 : 0;
  const Single barWidth = showVertical ? 255 : 0;
  surface.HScroll1().Move(0, height - barHeight - border, width - barWidth - 30);
  surface.HScroll1().PutVisible(showHorizontal);
  surface.VScroll1().Move(width - barWidth - border, 0, barWidth, height - barHeight - 30);
  surface.VScroll1().PutVisible(showVertical);
  surface.picTwain().Move(0, 0, width - barWidth - border, height - barHeight - border);
}

}  // namespace quillet
