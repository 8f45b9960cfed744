#include "platform/portable/resample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace quillet {
namespace {

constexpr Byte kCanary = 0xA5;

// A picture with padded rows, every byte outside the pixels a canary.
struct Image {
  Image(Long pixels, Long rows)
      : width(pixels),
        height(rows),
        stride((3 * std::ptrdiff_t{pixels} + 3) / 4 * 4 + 4),
        bytes(static_cast<std::size_t>(stride * rows + 64), kCanary) {}

  Image& Fill(unsigned seed) {
    for (Long y = 0; y < height; ++y) {
      for (Long i = 0; i < 3 * width; ++i) Row(y)[i] = static_cast<Byte>((seed *= 69069u) >> 24);
    }
    return *this;
  }

  Image& FillFlat(Byte blue, Byte green, Byte red) {
    for (Long y = 0; y < height; ++y) {
      for (Long x = 0; x < width; ++x) {
        const Byte pixel[] = {blue, green, red};
        std::copy_n(pixel, 3, Row(y) + 3 * x);
      }
    }
    return *this;
  }

  Byte* Row(Long y) { return bytes.data() + y * stride; }
  const Byte* Row(Long y) const { return bytes.data() + y * stride; }

  Long width, height;
  std::ptrdiff_t stride;
  std::vector<Byte> bytes;
};

Image Resampled(const Image& source, Long width, Long height, InstructionSet set) {
  Image target(width, height);
  Resample24(source.Row(0), source.stride, source.width, source.height, target.Row(0),
             target.stride, width, height, set);
  return target;
}

// One row or column of grey pixels resampled to another length, as its first channel.
std::vector<int> Line(const std::vector<int>& values, Long length, bool upright) {
  const Long size = static_cast<Long>(values.size());
  Image source = upright ? Image(1, size) : Image(size, 1);
  for (Long i = 0; i < size; ++i) {
    Byte* pixel = upright ? source.Row(i) : source.Row(0) + 3 * i;
    std::fill_n(pixel, 3, static_cast<Byte>(values[static_cast<std::size_t>(i)]));
  }
  const Image target = upright ? Resampled(source, 1, length, BestKernels().set)
                               : Resampled(source, length, 1, BestKernels().set);
  std::vector<int> result;
  for (Long i = 0; i < length; ++i) {
    result.push_back(upright ? *target.Row(i) : target.Row(0)[3 * i]);
  }
  return result;
}

TEST(Resample, SmallLinesComeOutAsOnPaper) {
  const struct {
    std::vector<int> values, expected;
  } cases[] = {
      {{10, 21}, {16}},                        // 15.5, halves up
      {{0, 90, 240}, {30, 190}},               // thirds: (2*0 + 90)/3, (90 + 2*240)/3
      {{0, 0, 255, 255, 255}, {51, 255}},      // two pixels and a half each
      {{7}, {7, 7, 7, 7, 7}},                  // a single pixel
      {{0, 100}, {0, 25, 75, 100}},            // centres at -1/4, 1/4, 3/4, 5/4
      {{0, 80, 40}, {0, 20, 60, 70, 50, 40}},  // centres at -1/4, 1/4, 3/4, 5/4, 7/4, 9/4
      {{5, 250, 5}, {5, 250, 5}},              // equal size
  };
  for (const auto& [values, expected] : cases) {
    for (const bool upright : {false, true}) {
      EXPECT_EQ(Line(values, static_cast<Long>(expected.size()), upright), expected) << upright;
    }
  }
}

TEST(Resample, HalfSizeRoundsTheAverageOfFourOnce) {
  // Sums 0 to 7 spread over the four pixels: rounding twice would show.
  for (int sum = 0; sum < 8; ++sum) {
    Image source(40, 2);
    source.FillFlat(0, 0, 0);
    for (Long x = 0; x < 40; x += 2) {
      source.Row(0)[3 * x] = static_cast<Byte>(sum / 2);
      source.Row(1)[3 * x + 3] = static_cast<Byte>(sum - sum / 2);
    }
    const Image target = Resampled(source, 20, 1, BestKernels().set);
    for (Long x = 0; x < 20; ++x) EXPECT_EQ(target.Row(0)[3 * x], (sum + 2) / 4) << sum << ' ' << x;
  }
}

TEST(Resample, AnAreaAverageIsTheExactOneRounded) {
  const struct {
    Long width, height, newWidth, newHeight;
  } cases[] = {
      {50, 41, 15, 12}, {97, 64, 61, 64}, {300, 7, 1, 7}, {64, 530, 3, 2}, {33, 33, 32, 31}};
  for (const auto& [width, height, newWidth, newHeight] : cases) {
    const Image source = Image(width, height).Fill(17);
    const Image target = Resampled(source, newWidth, newHeight, BestKernels().set);
    const auto overlap = [](Long pixel, Long at, Long size, Long newSize) {
      const double ratio = double(size) / newSize;
      return std::max(0.0, std::min(pixel + 1.0, (at + 1) * ratio) -
                               std::max(double(pixel), at * ratio)) /
             ratio;
    };
    for (Long y = 0; y < newHeight; ++y) {
      for (Long i = 0; i < 3 * newWidth; ++i) {
        double exact = 0;
        for (Long v = 0; v < height; ++v) {
          const double share = overlap(v, y, height, newHeight);
          if (share == 0) continue;
          for (Long u = 0; u < width; ++u) {
            exact += share * overlap(u, i / 3, width, newWidth) * source.Row(v)[3 * u + i % 3];
          }
        }
        ASSERT_LE(std::abs(exact - target.Row(y)[i]), 0.5 + 1.0 / 256)
            << width << ' ' << i << ' ' << y;
      }
    }
  }
}

TEST(Resample, OneColourStaysThatColourAtEverySize) {
  const struct {
    Long width, height, newWidth, newHeight;
  } cases[] = {{1, 1, 70, 3},        {70, 3, 1, 1},    {37, 23, 31, 11}, {37, 23, 50, 40},
               {37, 23, 12, 40},     {37, 23, 50, 11}, {60, 40, 30, 20}, {1, 65536, 65536, 1},
               {65536, 1, 1, 65536}, {70001, 2, 7, 1}, {2, 70001, 3, 5}, {513, 257, 2, 1},
               {2560, 2, 10, 1},     {2569, 2, 11, 3}};
  for (const auto& [width, height, newWidth, newHeight] : cases) {
    for (const Byte level : {Byte{1}, Byte{128}, Byte{255}}) {
      const Byte other = static_cast<Byte>(255 - level);
      const Image source = Image(width, height).FillFlat(level, other, 77);
      const Image target = Resampled(source, newWidth, newHeight, BestKernels().set);
      ASSERT_EQ(target.bytes, Image(newWidth, newHeight).FillFlat(level, other, 77).bytes)
          << width << " x " << height << " to " << newWidth << " x " << newHeight;
    }
  }
}

TEST(Resample, EqualSizeKeepsEveryPixel) {
  for (Long width = 1; width <= 67; ++width) {
    const Image source = Image(width, 3).Fill(5);
    ASSERT_EQ(Resampled(source, width, 3, BestKernels().set).bytes, source.bytes);
  }
}

TEST(Resample, EveryInstructionSetGivesTheSameBytesAndKeepsTheRestOfTheRow) {
  for (Long width = 1; width <= 67; ++width) {
    for (const Long height : {1, 2, 5, 8}) {
      const Image source = Image(width, height).Fill(static_cast<unsigned>(width));
      for (const Long newWidth :
           {Long{1}, (width + 1) / 2, width, 3 * width / 2 + 1, 2 * width, 73}) {
        for (const Long newHeight : {1, 4, 5, 11}) {
          const Image expected = Resampled(source, newWidth, newHeight, InstructionSet::Scalar);
          for (Long y = 0; y < newHeight; ++y) {
            ASSERT_TRUE(std::all_of(expected.Row(y) + 3 * newWidth,
                                    expected.Row(y) + expected.stride,
                                    [](Byte b) { return b == kCanary; }));
          }
          for (const auto set : {InstructionSet::Sse2, InstructionSet::Avx2}) {
            if (!KernelsFor(set)) continue;
            ASSERT_EQ(Resampled(source, newWidth, newHeight, set).bytes, expected.bytes)
                << width << " x " << height << " to " << newWidth << " x " << newHeight;
          }
        }
      }
    }
  }
}

TEST(Resample, LongRowsAndTallSpansAreTheSameInEveryInstructionSet) {
  const struct {
    Long width, height, newWidth, newHeight;
  } cases[] = {{250, 530, 70, 2}, {1031, 40, 4, 13},     {1031, 40, 3, 37}, {251, 20, 700, 60},
               {251, 20, 80, 60}, {3001, 7, 4003, 2801}, {2569, 3, 11, 5},  {700, 20, 251, 20},
               {251, 20, 700, 7}, {500, 40, 250, 20}};
  for (const auto& [width, height, newWidth, newHeight] : cases) {
    const Image source = Image(width, height).Fill(23);
    const Image expected = Resampled(source, newWidth, newHeight, InstructionSet::Scalar);
    EXPECT_EQ(Resampled(source, newWidth, newHeight, BestKernels().set).bytes, expected.bytes)
        << width << " x " << height << " to " << newWidth << " x " << newHeight;
  }
}

TEST(Resample, ExtremeRatiosAverageAllThePixels) {
  // Half black, half white, beyond what 24 bits of weight could add up.
  for (const Long size : {600, 65536}) {
    std::vector<int> values(static_cast<std::size_t>(size), 0);
    std::fill(values.begin() + size / 2, values.end(), 255);
    for (const bool upright : {false, true}) {
      EXPECT_EQ(Line(values, 1, upright), std::vector<int>{128}) << size;
      EXPECT_EQ(Line(values, 2, upright), (std::vector<int>{0, 255})) << size;
    }
  }
}

}  // namespace
}  // namespace quillet
