// The kernels that look at a pixel as a whole.

#include <algorithm>

#include "base/rounding.h"
#include "picture/kernels/arithmetic.h"
#include "picture/kernels/lighten_table.h"
#include "picture/kernels/tone.h"

namespace quillet::scalar {
namespace {

void SetAll(Byte* pixel, int value) {
  pixel[0] = pixel[1] = pixel[2] = static_cast<Byte>(value);
}

// Without branches where the outcome is anyone's guess.
void LightenPixel(Byte* pixel, const LightenTable& table) {
  const int blue = pixel[0], green = pixel[1], red = pixel[2];
  const int largest = std::max({blue, green, red});
  const int smallest = std::min({blue, green, red});
  const auto rounded = table.RoundedAt(largest, smallest);
  if (largest == smallest) return SetAll(pixel, rounded.smallest);

  // Where the middle channel lies between the two, 0 to 1. The hue says it: a float counted from
  // the largest channel's place on the circle, red 0, green 2 or blue 4, upwards or downwards.
  // Counting both ways round alike, the place has a minus for downwards.
  const int middle = blue + green + red - largest - smallest;
  const double lowest = table.Fraction(smallest);
  const double exactPlace = (table.Fraction(middle) - lowest) / (table.Fraction(largest) - lowest);
  const int fromGreen = blue > red ? 2 : -2;
  const int fromBlue = red > green ? 4 : -4;
  const double center = red == largest ? 0 : green == largest ? fromGreen : fromBlue;
  const double place = static_cast<Single>(center + exactPlace) - center;

  const ChannelRange range = table.At(largest, smallest);
  const double low = range.smallest;
  const double high = range.largest;
  const Byte newMiddle = NearestByte((low + (high - low) * place) * 255);
  // Equal channels stay equal, so which of them counts as the largest does not matter.
  const auto lightened = [&](int channel) {
    const Byte other = channel == smallest ? rounded.smallest : newMiddle;
    return channel == largest ? rounded.largest : other;
  };
  pixel[0] = lightened(blue);
  pixel[1] = lightened(green);
  pixel[2] = lightened(red);
}

}  // namespace

void GrayScale(Byte* row, Long width) {
  for (Long x = 0; x < width; ++x, row += 3)
    SetAll(row, HalfEvenThousandth(GrayTimes1000(row[0], row[1], row[2])));
}

void BlackWhite(Byte* row, Long width) {
  for (Long x = 0; x < width; ++x, row += 3) {
    const bool isWhite = row[0] >= kWhiteFrom || row[1] >= kWhiteFrom || row[2] >= kWhiteFrom;
    SetAll(row, isWhite ? 255 : 0);
  }
}

void Lighten(Byte* row, Long width, const LightenTable& table) {
  Byte before[] = {row[0], row[1], row[2]};
  LightenPixel(row, table);
  // Pixels like their left neighbour are the rule on a page.
  for (Long x = 1; x < width; ++x) {
    const Byte* const left = row;
    row += 3;
    if (std::equal(before, before + 3, row)) {
      std::copy_n(left, 3, row);
      continue;
    }
    std::copy_n(row, 3, before);
    LightenPixel(row, table);
  }
}

}  // namespace quillet::scalar
