#include "tests/support/literal_tone.h"

#include <algorithm>
#include <cmath>

namespace quillet::literal {
namespace {

Byte Clamped(double value) {
  return static_cast<Byte>(std::clamp(value, 0.0, 255.0));
}

// Byte i of row y, to be changed.
Byte& At(PixelRows24& rows, Long i, Long y) {
  return rows.bytes[rows.Stride() * static_cast<std::size_t>(y) + static_cast<std::size_t>(i)];
}

template <typename PixelFunction>
PixelRows24 EachPixel(PixelRows24 rows, PixelFunction function) {
  for (Long y = 0; y < rows.height; ++y) {
    for (Long x = 0; x < rows.width; ++x) {
      const Pixel pixel = function(rows.At(x, y));
      At(rows, 3 * x, y) = pixel.blue;
      At(rows, 3 * x + 1, y) = pixel.green;
      At(rows, 3 * x + 2, y) = pixel.red;
    }
  }
  return rows;
}

Pixel Gray(Byte value) {
  return {value, value, value};
}

}  // namespace

Byte FadedChannel(Byte channel, int level) {
  return static_cast<Byte>(std::nearbyint(channel * level * 0.00392156862745098));
}

Byte ContrastedChannel(Byte channel, int factor) {
  return Clamped((channel - 128) * factor + 128);
}

Byte SharpenedChannel(Byte channel, Byte diagonal, Single amount) {
  return Clamped(std::nearbyint((channel - diagonal) * double{amount} + channel));
}

Byte BlurredChannel(int sum) {
  return static_cast<Byte>(std::nearbyint(sum * 0.2));
}

Byte GrayOfSum(int sum) {
  return static_cast<Byte>(std::nearbyint(sum * 0.001));
}

Pixel Lightened(Pixel pixel, Long percent) {
  const auto r = static_cast<float>(pixel.red * 0.00392156862745098);
  const auto g = static_cast<float>(pixel.green * 0.00392156862745098);
  const auto b = static_cast<float>(pixel.blue * 0.00392156862745098);
  const double max = std::max({r, g, b});
  const double min = std::min({r, g, b});
  float h = 0;
  float s = 0;
  auto l = static_cast<float>((max + min) * 0.5);
  if (max != min) {
    s = static_cast<float>(l <= 0.5f ? (max - min) / (max + min) : (max - min) / (2 - max - min));
    const double delta = max - min;
    if (r == max)
      h = static_cast<float>((double{g} - double{b}) / delta);
    else if (g == max)
      h = static_cast<float>(2 + (double{b} - double{r}) / delta);
    else
      h = static_cast<float>(4 + (double{r} - double{g}) / delta);
  }
  const double scaled = (std::max(percent, -100) / 100.0 + 1) * l;
  l = scaled > 1 ? 1.0f : static_cast<float>(scaled);

  double red = l, green = l, blue = l;
  if (s != 0) {
    const auto m1 = static_cast<float>(l <= 0.5f ? (1 - double{s}) * l : l - (1 - double{l}) * s);
    const auto m2 = static_cast<float>(2 * double{l} - m1);
    const double low = m1, high = m2, hue = h;
    if (hue < 0)
      red = high, green = low, blue = low - (high - low) * hue;
    else if (hue < 1)
      red = high, green = low + (high - low) * hue, blue = low;
    else if (hue < 2)
      red = low - (high - low) * (hue - 2), green = high, blue = low;
    else if (hue < 3)
      red = low, green = high, blue = low + (high - low) * (hue - 2);
    else if (hue < 4)
      red = low, green = low - (high - low) * (hue - 4), blue = high;
    else
      red = low + (high - low) * (hue - 4), green = low, blue = high;
  }
  return {static_cast<Byte>(std::lrint(blue * 255)), static_cast<Byte>(std::lrint(green * 255)),
          static_cast<Byte>(std::lrint(red * 255))};
}

PixelRows24 Invert(PixelRows24 rows, bool red, bool green, bool blue) {
  const auto inverted = [](Byte c, bool selected) {
    return static_cast<Byte>(selected ? 255 - c : c);
  };
  return EachPixel(std::move(rows), [&](Pixel p) {
    return Pixel{inverted(p.blue, blue), inverted(p.green, green), inverted(p.red, red)};
  });
}

PixelRows24 GrayScale(PixelRows24 rows) {
  return EachPixel(std::move(rows), [](Pixel p) {
    return Gray(GrayOfSum(707 * p.green + 222 * p.red + 71 * p.blue));
  });
}

PixelRows24 BlackWhite(PixelRows24 rows) {
  return EachPixel(std::move(rows), [](Pixel p) {
    return Gray(p.red < 192 && p.green < 192 && p.blue < 192 ? 0 : 255);
  });
}

PixelRows24 Contrast(PixelRows24 rows, int factor) {
  for (Long y = 0; y < rows.height - 1; ++y)
    for (Long i = 0; i < 3 * (rows.width - 1); ++i)
      At(rows, i, y) = ContrastedChannel(At(rows, i, y), factor);
  return rows;
}

PixelRows24 Fade(PixelRows24 rows, int level) {
  return EachPixel(std::move(rows), [=](Pixel p) {
    return Pixel{FadedChannel(p.blue, level), FadedChannel(p.green, level),
                 FadedChannel(p.red, level)};
  });
}

PixelRows24 Lighten(PixelRows24 rows, Long percent) {
  return EachPixel(std::move(rows), [=](Pixel p) { return Lightened(p, percent); });
}

PixelRows24 Sharpen(PixelRows24 rows, Single amount) {
  for (Long y = 0; y < rows.height - 1; ++y)
    for (Long i = 0; i < 3 * (rows.width - 1); ++i)
      At(rows, i, y) = SharpenedChannel(At(rows, i, y), At(rows, i + 3, y + 1), amount);
  return rows;
}

PixelRows24 Blur(PixelRows24 rows) {
  for (Long y = 1; y < rows.height - 1; ++y)
    for (Long i = 3; i < 3 * (rows.width - 1); ++i)
      At(rows, i, y) = BlurredChannel(At(rows, i + 3, y) + At(rows, i + 3, y + 1) +
                                      At(rows, i - 3, y - 1) + At(rows, i, y) + At(rows, i, y + 1));
  return rows;
}

}  // namespace quillet::literal
