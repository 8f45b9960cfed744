#pragma once

#include <vector>

#include "platform/portable/icon_image.h"

namespace quillet {

// An ICO file (CUR for an image with a hot spot) of that one image, 32 bits a pixel. Run-time error
// 481 for more than the 256 x 256 pixels that the format can say.
std::vector<Byte> WriteIcon(const IconImage& image);

}  // namespace quillet
