#pragma once

#include "platform/win32/sdk.h"

namespace quillet {

// Paints a scroll bar control in its state of this moment, at the top-left corner of a context. The
// system's own painting is for windows that show only.
void PaintBar(HDC dc, HWND bar);

}  // namespace quillet
