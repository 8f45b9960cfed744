#pragma once

#include "platform/portable/portable_scroll_bar.h"
#include "platform/portable/raster.h"

namespace quillet {

// Draws a bar in the classic look on a raster of the control's inside: two arrows, between them the
// trough with the thumb. A bar that cannot be moved has grey arrows and no thumb; a short one loses
// its thumb alone.
void DrawScrollBar(Raster& inside, const PortableScrollBar& bar, bool enabled);

}  // namespace quillet
