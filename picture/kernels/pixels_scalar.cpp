// The kernels that look at a pixel as a whole.

#include "base/rounding.h"
#include "picture/kernels/arithmetic.h"
#include "picture/kernels/lighten_table.h"
#include "picture/kernels/tone.h"

namespace quillet::scalar {
namespace {

void SetAll(Byte* pixel, int value) {
  pixel[0] = pixel[1] = pixel[2] = static_cast<Byte>(value);
}

// The places of a pixel's channels by size. Of equal channels, red goes before green, green before
// blue.
struct Order {
  int largest, middle, smallest;
};

Order OrderOf(const Byte* pixel) {
  int largest = 2;
  if (pixel[1] > pixel[largest]) largest = 1;
  if (pixel[0] > pixel[largest]) largest = 0;
  int middle = largest == 2 ? 1 : 2;
  int smallest = 3 - largest - middle;
  if (pixel[smallest] > pixel[middle]) return {largest, smallest, middle};
  return {largest, middle, smallest};
}

// Where the middle channel lies between the smallest (0) and the largest (1), as the hue says it: a
// float counted from red at 0, green at 2 or blue at 4, so that a distance from green or blue has
// fewer digits.
double PlaceBetween(const Byte* pixel, const Order& order) {
  const auto fraction = [&](int channel) {
    return double{static_cast<Single>(pixel[channel] * kChannelUnit)};
  };
  const double place = (fraction(order.middle) - fraction(order.smallest)) /
                       (fraction(order.largest) - fraction(order.smallest));
  const double center = 2.0 * (2 - order.largest);
  // The channel that follows the largest in the circle red, green, blue makes the hue larger.
  const bool rises = order.middle == (order.largest + 2) % 3;
  const auto hue = static_cast<Single>(rises ? center + place : center - place);
  return rises ? hue - center : center - hue;
}

void LightenPixel(Byte* pixel, const LightenTable& table) {
  const Order order = OrderOf(pixel);
  const ChannelRange range = table.At(pixel[order.largest], pixel[order.smallest]);
  const double low = range.smallest;
  const double high = range.largest;
  if (pixel[order.largest] == pixel[order.smallest]) return SetAll(pixel, NearestByte(low * 255));
  const double middle = low + (high - low) * PlaceBetween(pixel, order);
  pixel[order.largest] = NearestByte(high * 255);
  pixel[order.middle] = NearestByte(middle * 255);
  pixel[order.smallest] = NearestByte(low * 255);
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
  PixelBytes before{row[0], row[1], row[2]};
  LightenPixel(row, table);
  // Pixels like their left neighbour are the rule on a page.
  for (Long x = 1; x < width; ++x) {
    const Byte* const left = row;
    row += 3;
    if (row[0] == before.blue && row[1] == before.green && row[2] == before.red) {
      for (int channel = 0; channel < 3; ++channel) row[channel] = left[channel];
      continue;
    }
    before = {row[0], row[1], row[2]};
    LightenPixel(row, table);
  }
}

}  // namespace quillet::scalar
