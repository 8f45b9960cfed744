#pragma once

#include "tests/support/pictures.h"

// The tone operations and filters pixel by pixel and in fractions, as one would write them down
// without a thought of speed: what the buffer's are measured by.
namespace quillet::literal {

Byte FadedChannel(Byte channel, int level);  // level from 0 to 255
Byte ContrastedChannel(Byte channel, int factor);
Byte SharpenedChannel(Byte channel, Byte diagonal, Single amount);
Byte BlurredChannel(int sum);
Byte GrayOfSum(int sum);  // 707 green + 222 red + 71 blue
Pixel Lightened(Pixel pixel, Long percent);

PixelRows24 Invert(PixelRows24 rows, bool red, bool green, bool blue);
PixelRows24 GrayScale(PixelRows24 rows);
PixelRows24 BlackWhite(PixelRows24 rows);
PixelRows24 Contrast(PixelRows24 rows, int factor);
PixelRows24 Fade(PixelRows24 rows, int level);
PixelRows24 Lighten(PixelRows24 rows, Long percent);
PixelRows24 Sharpen(PixelRows24 rows, Single amount);
PixelRows24 Blur(PixelRows24 rows);

}  // namespace quillet::literal
