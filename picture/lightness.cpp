#include "picture/lightness.h"

#include "base/rounding.h"

namespace quillet {

Single MaxOf3(Single a, Single b, Single c) {
  if (a > b) return a > c ? a : c;
  return c > b ? c : b;
}

Single MinOf3(Single a, Single b, Single c) {
  if (a >= b) return c < b ? c : b;
  return a < c ? a : c;
}

HSL RGBToHSL(Long red, Long green, Long blue) {
  const auto r = static_cast<Single>(red * kChannelUnit);
  const auto g = static_cast<Single>(green * kChannelUnit);
  const auto b = static_cast<Single>(blue * kChannelUnit);
  const double max = MaxOf3(r, g, b);
  const double min = MinOf3(r, g, b);
  HSL color;
  color.lightness = static_cast<Single>((max + min) * 0.5);
  if (max == min) return color;
  const double difference = max - min;
  color.saturation =
      static_cast<Single>(difference / (color.lightness <= 0.5f ? max + min : 2 - max - min));
  const double hue = r == max   ? (double{g} - b) / difference
                     : g == max ? 2 + (double{b} - r) / difference
                                : 4 + (double{r} - g) / difference;
  color.hue = static_cast<Single>(hue);
  return color;
}

ChannelRange RangeOf(Single saturation, Single lightness) {
  const double s = saturation;
  const double l = lightness;
  if (saturation == 0) return {lightness, lightness};
  ChannelRange range;
  range.smallest = static_cast<Single>(lightness <= 0.5f ? (1 - s) * l : l - (1 - l) * s);
  range.largest = static_cast<Single>(2 * l - range.smallest);
  return range;
}

RGB HSLToRGB(Single hue, Single saturation, Single lightness) {
  const auto [m1, m2] = RangeOf(saturation, lightness);
  // A channel that lies between the two, by the distance of the hue from the nearest of red, green
  // and blue.
  const double low = m1;
  const double high = m2;
  const double spread = high - low;
  const auto rising = [&](double sixths) { return low + spread * (hue - sixths); };
  const auto falling = [&](double sixths) { return low - spread * (hue - sixths); };
  const auto color = [](double r, double g, double b) {
    return RGB{ToLong(r * 255), ToLong(g * 255), ToLong(b * 255)};
  };
  if (hue < 0) return color(high, low, falling(0));
  if (hue < 1) return color(high, rising(0), low);
  if (hue < 2) return color(falling(2), high, low);
  if (hue < 3) return color(low, high, rising(2));
  if (hue < 4) return color(low, falling(4), high);
  return color(rising(4), low, high);
}

}  // namespace quillet
