#include "platform/portable/color_quantizer.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

#include "platform/portable/bitmap_convert.h"
#include "platform/portable/codec_format.h"

namespace quillet {
namespace {

constexpr int kMostColors = 256;

// Boxes of the colour cube are split where that takes away the most variance, until there are 256
// (Xiaolin Wu, "Efficient statistical computations for optimal color quantization", Graphics Gems
// II, 1991). Colours are counted at 5 bits a channel; index 0 of each axis stays empty, so that a
// box's sum is a difference of eight corners.
class Histogram {
 public:
  void Add(const Byte* pixels, Long count) {
    for (Long i = 0; i < count; ++i, pixels += 3) {
      Moment& cell = m_cells[CellOf(pixels)];
      const std::int64_t b = pixels[0];
      const std::int64_t g = pixels[1];
      const std::int64_t r = pixels[2];
      ++cell.weight;
      cell.sum[0] += b;
      cell.sum[1] += g;
      cell.sum[2] += r;
      cell.squares += b * b + g * g + r * r;
    }
  }

  std::vector<PaletteColor> Palette() {
    Accumulate();
    std::vector<Box> boxes{{{0, 0, 0}, {kSide - 1, kSide - 1, kSide - 1}}};
    std::vector<double> variances{Variance(boxes[0])};
    while (boxes.size() < kMostColors) {
      const auto widest = std::max_element(variances.begin(), variances.end());
      if (*widest <= 0) break;
      const auto at = static_cast<std::size_t>(widest - variances.begin());
      Box other;
      if (Split(boxes[at], other)) {
        variances[at] = Variance(boxes[at]);
        boxes.push_back(other);
        variances.push_back(Variance(other));
      } else {
        variances[at] = 0;
      }
    }
    std::vector<PaletteColor> palette;
    for (const Box& box : boxes) {
      const Moment sum = Sum(box);
      if (sum.weight == 0) continue;
      const auto mean = [&](int channel) {
        return static_cast<Byte>((sum.sum[static_cast<std::size_t>(channel)] + sum.weight / 2) /
                                 sum.weight);
      };
      palette.push_back({mean(0), mean(1), mean(2)});
    }
    return palette;
  }

 private:
  static constexpr int kSide = 33;

  struct Moment {
    std::int64_t weight = 0;
    std::array<std::int64_t, 3> sum{};
    std::int64_t squares = 0;

    void Add(const Moment& other, int sign) {
      weight += sign * other.weight;
      for (std::size_t i = 0; i < 3; ++i) sum[i] += sign * other.sum[i];
      squares += sign * other.squares;
    }
  };
  // From beyond `low` to `high` on each axis: blue, green, red.
  struct Box {
    std::array<int, 3> low{}, high{};
  };

  static std::size_t Index(int b, int g, int r) {
    return static_cast<std::size_t>((r * kSide + g) * kSide + b);
  }
  static std::size_t CellOf(const Byte* pixel) {
    return Index((pixel[0] >> 3) + 1, (pixel[1] >> 3) + 1, (pixel[2] >> 3) + 1);
  }

  void Accumulate() {
    for (int axis = 0; axis < 3; ++axis) {
      for (int r = 1; r < kSide; ++r) {
        for (int g = 1; g < kSide; ++g) {
          for (int b = 1; b < kSide; ++b) {
            m_cells[Index(b, g, r)].Add(
                m_cells[Index(b - (axis == 0), g - (axis == 1), r - (axis == 2))], 1);
          }
        }
      }
    }
  }

  Moment Sum(const Box& box) const {
    Moment sum;
    for (int corner = 0; corner < 8; ++corner) {
      const int lows = (corner & 1) + (corner >> 1 & 1) + (corner >> 2 & 1);
      sum.Add(m_cells[Index(corner & 1 ? box.low[0] : box.high[0],
                            corner & 2 ? box.low[1] : box.high[1],
                            corner & 4 ? box.low[2] : box.high[2])],
              lows % 2 == 0 ? 1 : -1);
    }
    return sum;
  }

  // The squared length of the box's sum over its weight: the larger over all boxes, the smaller the
  // variance that is left.
  static double Explained(const Moment& sum) {
    double squared = 0;
    for (const std::int64_t channel : sum.sum) {
      squared += static_cast<double>(channel) * static_cast<double>(channel);
    }
    return squared / static_cast<double>(sum.weight);
  }
  double Variance(const Box& box) const {
    const Moment sum = Sum(box);
    return sum.weight == 0 ? 0 : static_cast<double>(sum.squares) - Explained(sum);
  }

  bool Split(Box& box, Box& other) const {
    const Moment whole = Sum(box);
    double best = 0;
    Box first;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      for (int cut = box.low[axis] + 1; cut < box.high[axis]; ++cut) {
        Box half = box;
        half.high[axis] = cut;
        const Moment sum = Sum(half);
        if (sum.weight == 0 || sum.weight == whole.weight) continue;
        Moment rest = whole;
        rest.Add(sum, -1);
        const double explained = Explained(sum) + Explained(rest);
        if (explained > best) {
          best = explained;
          first = half;
          other = box;
          other.low[axis] = cut;
        }
      }
    }
    if (best == 0) return false;
    box = first;
    return true;
  }

  std::vector<Moment> m_cells{std::size_t{kSide} * kSide * kSide};
};

// The nearest palette colour of each colour, looked up at 6 bits a channel and found when first
// asked for.
class NearestColors {
 public:
  explicit NearestColors(const std::vector<PaletteColor>& palette)
      : m_palette(palette), m_found(std::size_t{1} << 18, kUnknown) {}

  int Find(int blue, int green, int red) {
    std::int16_t& found =
        m_found[static_cast<std::size_t>((red >> 2) << 12 | (green >> 2) << 6 | blue >> 2)];
    if (found == kUnknown) found = Search(blue | 2, green | 2, red | 2);
    return found;
  }

 private:
  static constexpr std::int16_t kUnknown = -1;

  std::int16_t Search(int blue, int green, int red) const {
    int smallest = std::numeric_limits<int>::max();
    std::size_t nearest = 0;
    for (std::size_t i = 0; i < m_palette.size(); ++i) {
      const int b = m_palette[i].blue - blue;
      const int g = m_palette[i].green - green;
      const int r = m_palette[i].red - red;
      const int distance = b * b + g * g + r * r;
      if (distance < smallest) {
        smallest = distance;
        nearest = i;
      }
    }
    return static_cast<std::int16_t>(nearest);
  }

  const std::vector<PaletteColor>& m_palette;
  std::vector<std::int16_t> m_found;
};

Dib::Format IndexedFormat(const Dib& dib, std::vector<PaletteColor> palette, int depth) {
  Dib::Format format = dib.GetFormat();
  format.depth = depth;
  format.topDown = true;
  format.masks = {};
  format.palette = std::move(palette);
  return format;
}

// Rows of the picture at 24 bits.
class Rows24 {
 public:
  explicit Rows24(const Dib& dib)
      : m_dib(dib),
        m_converter(dib.GetFormat()),
        m_row(dib.Depth() == 24 ? 0 : static_cast<std::size_t>(dib.Width()) * 3) {}
  const Byte* Row(Long y) {
    if (m_dib.Depth() == 24) return m_dib.Row(y);
    m_converter.To24(m_dib.Row(y), 0, m_dib.Width(), m_row.data());
    return m_row.data();
  }

 private:
  const Dib& m_dib;
  RowConverter m_converter;
  std::vector<Byte> m_row;
};

// The index of each colour met so far: open addressing, so that a pixel costs one look.
class ColorTable {
 public:
  // The colour's index; -1 when it is one too many.
  int Find(const Byte* pixel) {
    const std::uint32_t color =
        pixel[0] | pixel[1] << 8 | static_cast<std::uint32_t>(pixel[2]) << 16;
    std::size_t at = color * 0x9E3779B1u >> 22;
    while (m_slots[at].index >= 0 && m_slots[at].color != color) at = (at + 1) % m_slots.size();
    if (m_slots[at].index < 0) {
      if (m_palette.size() == kMostColors) return -1;
      m_slots[at] = {color, static_cast<int>(m_palette.size())};
      m_palette.push_back({pixel[0], pixel[1], pixel[2]});
    }
    return m_slots[at].index;
  }
  const std::vector<PaletteColor>& Palette() const { return m_palette; }

 private:
  struct Slot {
    std::uint32_t color = 0;
    int index = -1;
  };
  std::array<Slot, 1024> m_slots{};
  std::vector<PaletteColor> m_palette;
};

}  // namespace

std::optional<Dib> ExactPalette(const Dib& dib) {
  if (dib.Depth() <= 8) return dib;
  Rows24 rows(dib);
  ColorTable colors;
  // Most pictures are refused within their first rows, before memory is asked for.
  for (Long y = 0; y < dib.Height(); ++y) {
    const Byte* pixel = rows.Row(y);
    for (Long x = 0; x < dib.Width(); ++x, pixel += 3) {
      if (colors.Find(pixel) < 0) return std::nullopt;
    }
  }
  const std::vector<PaletteColor> palette = colors.Palette();
  Dib indexed(IndexedFormat(dib, palette, DepthFor(palette.size())));
  std::vector<Byte> indexes(static_cast<std::size_t>(dib.Width()));
  for (Long y = 0; y < dib.Height(); ++y) {
    const Byte* pixel = rows.Row(y);
    for (Byte& index : indexes) {
      index = static_cast<Byte>(colors.Find(pixel));
      pixel += 3;
    }
    PackIndexes(indexes.data(), dib.Width(), indexed.Depth(), indexed.WritableRow(y));
  }
  return indexed;
}

Dib AdaptivePalette(const Dib& dib) {
  Rows24 rows(dib);
  Histogram histogram;
  for (Long y = 0; y < dib.Height(); ++y) histogram.Add(rows.Row(y), dib.Width());
  const std::vector<PaletteColor> palette = histogram.Palette();
  NearestColors nearest(palette);
  Dib indexed(IndexedFormat(dib, palette, 8));

  // Floyd and Steinberg's weights (An adaptive algorithm for spatial greyscale, 1976), row by row
  // in turning directions, in sixteenths. `ahead` is what the next pixel gets; a row of errors has
  // a pixel of margin at each end.
  const Long width = dib.Width();
  std::vector<int> errors((static_cast<std::size_t>(width) + 2) * 3);
  for (Long y = 0; y < dib.Height(); ++y) {
    const Byte* const row = rows.Row(y);
    Byte* const target = indexed.WritableRow(y);
    const int step = y % 2 == 0 ? 1 : -1;
    int ahead[3] = {};
    // What goes below: behind the pixel, and below it.
    int behind[3] = {};
    int below[3] = {};
    for (Long i = 0, x = step > 0 ? 0 : width - 1; i < width; ++i, x += step) {
      int* const error = errors.data() + (std::ptrdiff_t{x} + 1) * 3;
      int value[3];
      for (int c = 0; c < 3; ++c) {
        const int sum = error[c] + ahead[c];
        value[c] =
            std::clamp(row[std::ptrdiff_t{x} * 3 + c] + (sum + (sum < 0 ? -8 : 8)) / 16, 0, 255);
      }
      const int index = nearest.Find(value[0], value[1], value[2]);
      target[x] = static_cast<Byte>(index);
      const PaletteColor& color = palette[static_cast<std::size_t>(index)];
      const int given[3] = {color.blue, color.green, color.red};
      for (int c = 0; c < 3; ++c) {
        const int difference = value[c] - given[c];
        ahead[c] = difference * 7;
        error[c - 3 * step] = behind[c] + difference * 3;
        behind[c] = below[c] + difference * 5;
        below[c] = difference;
      }
    }
    int* const last = errors.data() + (step > 0 ? std::ptrdiff_t{width} : 1) * 3;
    for (int c = 0; c < 3; ++c) last[c] = behind[c];
  }
  return indexed;
}

}  // namespace quillet
