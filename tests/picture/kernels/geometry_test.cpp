#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "picture/kernels/kernels.h"
#include "tests/support/kernel_rows.h"

namespace quillet {
namespace {

TEST(GeometryKernels, EverySetAnswersToItsName) {
  ForEachSet([&](const Kernels& kernels) { EXPECT_EQ(KernelsFor(kernels.set), &kernels); });
  ASSERT_NE(KernelsFor(InstructionSet::Scalar), nullptr);
  EXPECT_EQ(KernelsFor(BestKernels().set), &BestKernels());
}

TEST(GeometryKernels, SwappedRowsChangePlacesAndNothingElse) {
  ForEachSet([](const Kernels& kernels) {
    for (Long width = 1; width <= 67; ++width) {
      Rows rows = Rows(width, 3).Fill();
      Rows expected = rows;
      std::copy_n(rows.Row(0), 3 * width, expected.Row(2));
      std::copy_n(rows.Row(2), 3 * width, expected.Row(0));
      kernels.SwapRows(rows.Row(0), rows.Row(2), width);
      ASSERT_EQ(rows.block, expected.block) << width;
    }
  });
}

TEST(GeometryKernels, AReversedRowHoldsItsPixelsFromRightToLeft) {
  ForEachSet([](const Kernels& kernels) {
    for (Long width = 1; width <= 131; ++width) {
      Rows rows = Rows(width, 1).Fill();
      Rows expected = rows;
      for (Long x = 0; x < width; ++x) {
        std::copy_n(rows.Row(0) + 3 * x, 3, expected.Row(0) + 3 * (width - 1 - x));
      }
      kernels.ReverseRow(rows.Row(0), width);
      ASSERT_EQ(rows.block, expected.block) << width;
    }
  });
}

TEST(GeometryKernels, ARotatedStripStandsUprightWithItsFirstRowAtTheRight) {
  ForEachSet([](const Kernels& kernels) {
    for (Long width = 1; width <= 67; ++width) {
      for (const Long height : {1, 2, 3, 4, 5, 7, 8, 9, 16, 19}) {
        Rows source = Rows(width, height).Fill();
        Rows target(height, width);
        Rows expected(height, width);
        for (Long y = 0; y < height; ++y) {
          for (Long x = 0; x < width; ++x) {
            std::copy_n(source.Row(y) + 3 * x, 3, expected.Row(x) + 3 * (height - 1 - y));
          }
        }
        kernels.RotateStrip(source.Row(0), source.stride, width, height, target.Row(0),
                            target.stride);
        ASSERT_EQ(target.block, expected.block) << width << " x " << height;
      }
    }
  });
}

TEST(GeometryKernels, StripsOfAPictureMeetWithoutAGap) {
  ForEachSet([](const Kernels& kernels) {
    Rows source = Rows(13, 2 * kRotateStripRows + 5).Fill();
    Rows target(source.height, source.width);
    for (Long top = 0; top < source.height; top += kRotateStripRows) {
      const Long rows = std::min(kRotateStripRows, source.height - top);
      kernels.RotateStrip(source.Row(top), source.stride, source.width, rows,
                          target.Row(0) + 3 * (source.height - top - rows), target.stride);
    }
    for (Long y = 0; y < source.height; ++y) {
      for (Long x = 0; x < source.width; ++x) {
        ASSERT_EQ(target.Pixel(source.height - 1 - y, x), source.Pixel(x, y)) << x << ' ' << y;
      }
    }
  });
}

}  // namespace
}  // namespace quillet
