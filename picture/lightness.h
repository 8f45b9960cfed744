#pragma once

#include "base/types.h"

namespace quillet {

// Colours by hue, saturation and lightness, as in J. D. Foley and A. van Dam, "Fundamentals of
// Interactive Computer Graphics" (HSL, "hexcone" with the hue in sixths of a turn). A value is a
// 32-bit float only where it is stored in a Single; everything between is double.

// 0.00392156862745098, the double nearest to 1 / 255.
inline constexpr double kChannelUnit = 1.0 / 255;

struct HSL {
  // -1 to below 5: 0 red, 1 yellow, 2 green, 3 cyan, 4 blue, -1 magenta. Red is asked first.
  Single hue = 0;
  Single saturation = 0;  // 0 to 1
  Single lightness = 0;   // 0 to 1
};

struct RGB {
  Long red = 0, green = 0, blue = 0;  // 0 to 255
};

// The largest and the smallest channel of a colour, 0 to 1.
struct ChannelRange {
  Single smallest = 0;
  Single largest = 0;
};

Single MaxOf3(Single a, Single b, Single c);
Single MinOf3(Single a, Single b, Single c);

HSL RGBToHSL(Long red, Long green, Long blue);
RGB HSLToRGB(Single hue, Single saturation, Single lightness);

// Where a colour's channels end, whatever its hue.
ChannelRange RangeOf(Single saturation, Single lightness);

}  // namespace quillet
