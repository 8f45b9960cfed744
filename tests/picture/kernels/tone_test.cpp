#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

#include "picture/kernels/arithmetic.h"
#include "picture/kernels/lighten_table.h"
#include "tests/support/kernel_rows.h"
#include "tests/support/literal_tone.h"

namespace quillet {
namespace {

// 0, 1, .. 255.
std::vector<Byte> AllBytes() {
  std::vector<Byte> bytes(256);
  std::iota(bytes.begin(), bytes.end(), Byte{0});
  return bytes;
}

// All pixels of that red, 3 x 65536 bytes.
std::vector<Byte> AllColors(int red) {
  std::vector<Byte> row;
  row.reserve(3 * 65536);
  for (int green = 0; green < 256; ++green)
    for (int blue = 0; blue < 256; ++blue)
      row.insert(row.end(),
                 {static_cast<Byte>(blue), static_cast<Byte>(green), static_cast<Byte>(red)});
  return row;
}

TEST(ToneKernels, FadeIsExactForEveryChannelAndLevel) {
  ForEachSet([](const Kernels& kernels) {
    for (int level = 0; level < 256; ++level) {
      std::vector<Byte> row = AllBytes();
      kernels.Fade(row.data(), 256, static_cast<Byte>(level));
      for (int c = 0; c < 256; ++c)
        ASSERT_EQ(row[static_cast<std::size_t>(c)],
                  literal::FadedChannel(static_cast<Byte>(c), level));
    }
  });
}

TEST(ToneKernels, ContrastIsExactForEveryChannelAndFactor) {
  ForEachSet([](const Kernels& kernels) {
    for (int factor = -128; factor <= 128; ++factor) {
      std::vector<Byte> row = AllBytes();
      kernels.Contrast(row.data(), 256, static_cast<Integer>(factor));
      for (int c = 0; c < 256; ++c)
        ASSERT_EQ(row[static_cast<std::size_t>(c)],
                  literal::ContrastedChannel(static_cast<Byte>(c), factor));
    }
  });
}

TEST(ToneKernels, ContrastFactorsBeyondTheirRangeChangeNothingMore) {
  for (int c = 0; c < 256; ++c)
    for (int factor = -32768; factor <= 32767; ++factor)
      ASSERT_EQ(literal::ContrastedChannel(static_cast<Byte>(c), factor),
                literal::ContrastedChannel(static_cast<Byte>(c), std::clamp(factor, -128, 128)));
}

TEST(ToneKernels, SharpenIsExactForEveryPairOfChannels) {
  ForEachSet([](const Kernels& kernels) {
    for (int c = 0; c < 256; ++c) {
      const std::vector<Byte> diagonal = AllBytes();
      std::vector<Byte> half(256, static_cast<Byte>(c));
      std::vector<Byte> fourFifths = half;
      kernels.SharpenByHalf(half.data(), diagonal.data(), 256);
      kernels.SharpenByFourFifths(fourFifths.data(), diagonal.data(), 256);
      for (std::size_t d = 0; d < 256; ++d) {
        ASSERT_EQ(half[d], literal::SharpenedChannel(static_cast<Byte>(c), diagonal[d], 0.5f));
        ASSERT_EQ(fourFifths[d],
                  literal::SharpenedChannel(static_cast<Byte>(c), diagonal[d], 0.8f));
      }
    }
  });
}

TEST(ToneKernels, BlurIsExactForEverySum) {
  ForEachSet([](const Kernels& kernels) {
    for (int sum = 0; sum <= 5 * 255; ++sum) {
      // The same in every pixel, the more the later in the sum.
      int left = sum;
      Byte part[5];
      for (int i = 0; i < 5; ++i) {
        part[i] = static_cast<Byte>(std::min(left / (5 - i), 255));
        left -= part[i];
      }
      constexpr std::size_t kWidth = 40;
      for (std::size_t x = 0; x < kWidth;
           x += 13) {  // in a block, in its narrower rest, at the end
        std::vector<Byte> above(3 * kWidth), row(3 * kWidth + 3), below(3 * kWidth + 3);
        above[3 * x] = part[0];
        row[3 * x] = part[1];
        row[3 * x + 3] = part[2];
        below[3 * x] = part[3];
        below[3 * x + 3] = part[4];
        kernels.Blur(above.data(), row.data(), below.data(), 3 * kWidth);
        ASSERT_EQ(row[3 * x], literal::BlurredChannel(sum)) << sum;
      }
    }
  });
}

TEST(ToneKernels, GrayIsExactForEverySum) {
  for (int sum = 0; sum <= 255000; ++sum)
    ASSERT_EQ(HalfEvenThousandth(sum), literal::GrayOfSum(sum)) << sum;
}

TEST(ToneKernels, GrayAndBlackWhiteAreExactForEveryColor) {
  for (int red = 0; red < 256; ++red) {
    const std::vector<Byte> colors = AllColors(red);
    std::vector<Byte> gray, blackWhite;
    for (std::size_t i = 0; i < colors.size(); i += 3) {
      const int sum = 71 * colors[i] + 707 * colors[i + 1] + 222 * colors[i + 2];
      gray.insert(gray.end(), 3, static_cast<Byte>(HalfEvenThousandth(sum)));
      const bool isDark = colors[i] < 192 && colors[i + 1] < 192 && red < 192;
      blackWhite.insert(blackWhite.end(), 3, static_cast<Byte>(isDark ? 0 : 255));
    }
    ForEachSet([&](const Kernels& kernels) {
      std::vector<Byte> row = colors;
      kernels.GrayScale(row.data(), 65536);
      ASSERT_EQ(row, gray) << red;
      row = colors;
      kernels.BlackWhite(row.data(), 65536);
      ASSERT_EQ(row, blackWhite) << red;
    });
  }
}

// Lightens `colors` with every set and compares with the literal operation.
void ExpectLightened(const std::vector<Byte>& colors, Long percent) {
  std::vector<Byte> expected;
  expected.reserve(colors.size());
  for (std::size_t i = 0; i < colors.size(); i += 3) {
    const Pixel pixel = literal::Lightened({colors[i], colors[i + 1], colors[i + 2]}, percent);
    expected.insert(expected.end(), {pixel.blue, pixel.green, pixel.red});
  }
  const auto table = std::make_unique<LightenTable>(percent);
  ForEachSet([&](const Kernels& kernels) {
    std::vector<Byte> row = colors;
    kernels.Lighten(row.data(), static_cast<Long>(row.size() / 3), *table);
    ASSERT_EQ(row, expected) << percent;
  });
}

TEST(ToneKernels, LightenIsExactForEveryColor) {
  for (int red = 0; red < 256; ++red) ExpectLightened(AllColors(red), 50);
}

TEST(ToneKernels, LightenIsExactForManyColorsAtManyPercentages) {
  std::vector<Byte> colors;
  for (int color = 0; color < 1 << 24; color += 251)
    colors.insert(colors.end(), {static_cast<Byte>(color), static_cast<Byte>(color >> 8),
                                 static_cast<Byte>(color >> 16)});
  for (const Long percent : {-2147483647 - 1, -101, -100, -99, -63, -50, -1, 0, 1, 7, 33, 99, 100,
                             101, 254, 25400, 2147483647})
    ExpectLightened(colors, percent);
}

TEST(ToneKernels, LightenFollowsRunsOfOneColor) {
  std::vector<Byte> colors;
  for (const int run : {1, 40, 7, 8, 9, 16, 3, 1, 1, 30}) {
    const auto shade = static_cast<Byte>(5 * run);
    for (int x = 0; x < run; ++x)
      colors.insert(colors.end(), {shade, static_cast<Byte>(255 - shade), 77});
  }
  ExpectLightened(colors, -30);
}

// Every kernel on rows of every width, between canaries: what the scalar form does, and not a byte
// more.
TEST(ToneKernels, EverySetChangesExactlyTheRow) {
  const auto table = std::make_unique<LightenTable>(35);
  const struct {
    const char* name;
    std::function<void(const Kernels&, Rows&)> run;
  } actions[] = {
      {"invert", [](const Kernels& k,
                    Rows& r) { k.Invert(r.Row(1), 3 * r.width, PixelPattern(255, 0, 255)); }},
      {"contrast", [](const Kernels& k, Rows& r) { k.Contrast(r.Row(1), 3 * r.width, -3); }},
      {"fade", [](const Kernels& k, Rows& r) { k.Fade(r.Row(1), 3 * r.width, 99); }},
      {"sharpen",
       [](const Kernels& k, Rows& r) { k.SharpenByHalf(r.Row(1), r.Row(2) + 3, 3 * r.width - 3); }},
      {"sharpen more",
       [](const Kernels& k, Rows& r) {
         k.SharpenByFourFifths(r.Row(1), r.Row(2) + 3, 3 * r.width - 3);
       }},
      {"blur",
       [](const Kernels& k, Rows& r) {
         k.Blur(r.Row(0), r.Row(1) + 3, r.Row(2) + 3, std::max(3 * r.width - 6, 0));
       }},
      {"gray", [](const Kernels& k, Rows& r) { k.GrayScale(r.Row(1), r.width); }},
      {"black white", [](const Kernels& k, Rows& r) { k.BlackWhite(r.Row(1), r.width); }},
      {"lighten", [&](const Kernels& k, Rows& r) { k.Lighten(r.Row(1), r.width, *table); }}};
  for (const auto& action : actions) {
    SCOPED_TRACE(action.name);
    for (Long width = 1; width <= 131; ++width) {
      Rows expected = Rows(width, 3).Fill();
      action.run(*KernelsFor(InstructionSet::Scalar), expected);
      ForEachSet([&](const Kernels& kernels) {
        Rows rows = Rows(width, 3).Fill();
        action.run(kernels, rows);
        ASSERT_EQ(rows.block, expected.block) << width;
      });
    }
  }
}

}  // namespace
}  // namespace quillet
