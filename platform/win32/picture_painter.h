#pragma once

#include "platform/contracts/picture_services.h"
#include "platform/win32/sdk.h"

namespace quillet {

// Paints what is due of a picture box: the picture's bitmap unscaled at the top-left corner, the
// background where there is none. Every pixel is written once, so nothing flickers. What the
// context's owner has set in it (mapping, clipping, colours) neither matters nor changes.
void PaintPicture(HDC dc, const Picture* picture, COLORREF background) noexcept;

}  // namespace quillet
