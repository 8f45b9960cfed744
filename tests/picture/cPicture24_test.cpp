#include "picture/cPicture24.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "embed/stage.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_platform.h"
#include "tests/support/forwarding_bitmaps.h"
#include "tests/support/pictures.h"
#include "tests/support/platform_with.h"

namespace quillet {
namespace {

constexpr Long kMax = std::numeric_limits<Long>::max();
constexpr Long kMin = std::numeric_limits<Long>::min();

// A copy service that answers with the source itself, as one may.
class SameHandle : public ForwardingBitmaps {
 public:
  using ForwardingBitmaps::ForwardingBitmaps;
  BitmapHandle CopyImage(BitmapHandle bitmap, Long, Long) override { return bitmap; }
  bool DeleteObject(BitmapHandle bitmap) override {
    deleted.push_back(bitmap);
    return ForwardingBitmaps::DeleteObject(bitmap);
  }
  std::vector<BitmapHandle> deleted;
};

class PictureBuffer : public testing::Test {
 protected:
  PictureRef Gradient24(Long width, Long height) {
    return PictureOf(platform, width, height, Gradient);
  }
  PixelRows24 Shown(const PictureRef& picture) { return PixelsOf(platform, picture); }
  // The picture after one operation on a buffer of its own.
  template <typename Operation>
  PixelRows24 After(Long width, Long height, Operation&& operation) {
    cPicture24 buffer(platform);
    buffer.CopyFromPicture(Gradient24(width, height));
    operation(buffer);
    return Shown(buffer.CopyToPicture());
  }

  std::unique_ptr<Stage> m_platform = MakeStage();
  Platform& platform = m_platform->Contracts();
};

TEST_F(PictureBuffer, RowsArePaddedToFourBytesWithZeros) {
  const struct {
    Long width;
    std::size_t stride;
  } cases[] = {{1, 4}, {2, 8}, {3, 12}, {4, 12}, {5, 16}, {8, 24}};
  for (const auto& [width, stride] : cases) {
    SCOPED_TRACE(width);
    cPicture24 buffer(platform);
    buffer.CopyFromPicture(Gradient24(width, 2));
    buffer.Reverse();
    const std::vector<Byte> bits = buffer.GetBits();
    ASSERT_EQ(bits.size(), 2 * stride);
    EXPECT_EQ(bits[0], Gradient(width - 1, 0).blue);
    EXPECT_EQ(bits[stride + 2], Gradient(width - 1, 1).red);
    for (std::size_t row = 0; row < 2; ++row)
      for (std::size_t i = 3 * static_cast<std::size_t>(width); i < stride; ++i)
        EXPECT_EQ(bits[row * stride + i], 0);
  }
}

TEST_F(PictureBuffer, WhatIsNoBitmapLeavesItEmpty) {
  cPicture24 buffer(platform);
  for (const PictureRef& picture :
       {PictureRef(), platform.pictures.EmptyPicture(), IconPicture(platform)}) {
    buffer.CopyFromPicture(Gradient24(3, 2));
    buffer.CopyFromPicture(picture);
    EXPECT_EQ(buffer.Width(), 0);
    EXPECT_EQ(buffer.CopyToPicture(), nullptr);
    EXPECT_TRUE(buffer.GetBits().empty());
    EXPECT_FALSE(buffer.Crop(0, 0, 0, 0));
    EXPECT_FALSE(buffer.Resize(kMax, -1));
    buffer.ResizeToFit(0, 0, true);
    buffer.Flip();
    buffer.Reverse();
    buffer.Rotate();
    EXPECT_EQ(buffer.Height(), 0);
  }
}

TEST_F(PictureBuffer, EveryDepthIsReadAs24Bits) {
  const std::vector<Pixel> palette{{0, 0, 0}, {255, 255, 255}};
  const auto oneBit =
      OneBitPicture(platform, 9, 2, [](Long x, Long y) { return (x + y) % 2 != 0; });
  cPicture24 buffer(platform);
  buffer.CopyFromPicture(oneBit);
  const PictureRef copy = buffer.CopyToPicture();
  EXPECT_NE(copy, oneBit);
  EXPECT_EQ(Shown(copy), RowsOf(9, 2, [&](Long x, Long y) {
              return palette[static_cast<std::size_t>((x + y) % 2)];
            }));
  BITMAP record;
  platform.bitmaps.GetObjectA(copy->Handle(), record);
  EXPECT_EQ(record.bmBitsPixel, 24);
}

TEST_F(PictureBuffer, PicturesGivenOutDoNotChangeWhenTheBufferGoesOn) {
  cPicture24 buffer(platform);
  buffer.CopyFromPicture(Gradient24(5, 4));
  buffer.Flip();
  const PictureRef flipped = buffer.CopyToPicture();
  const PixelRows24 before = Shown(flipped);
  const PictureRef same = buffer.CopyToPicture();
  EXPECT_NE(same, flipped);
  EXPECT_EQ(Shown(same), before);
  buffer.Flip();
  EXPECT_EQ(Shown(flipped), before);
  EXPECT_EQ(Shown(buffer.CopyToPicture()), RowsOf(5, 4, Gradient));
}

TEST_F(PictureBuffer, GeometryMovesPixelsWhereTheyBelong) {
  for (const auto& [width, height] :
       {std::pair<Long, Long>{1, 1}, {3, 2}, {2, 5}, {67, 129}, {1, 300}}) {
    SCOPED_TRACE(testing::Message() << width << "x" << height);
    const Long right = width - 1;
    const Long bottom = height - 1;
    EXPECT_EQ(After(width, height, [](cPicture24& b) { b.Flip(); }),
              RowsOf(width, height, [=](Long x, Long y) { return Gradient(x, bottom - y); }));
    EXPECT_EQ(After(width, height, [](cPicture24& b) { b.Reverse(); }),
              RowsOf(width, height, [=](Long x, Long y) { return Gradient(right - x, y); }));
    EXPECT_EQ(After(width, height, [](cPicture24& b) { b.Rotate(); }),
              RowsOf(height, width, [=](Long x, Long y) { return Gradient(y, bottom - x); }));
    EXPECT_EQ(After(width, height,
                    [](cPicture24& b) {
                      for (int turn = 0; turn < 4; ++turn) b.Rotate();
                    }),
              RowsOf(width, height, Gradient));
  }
}

TEST_F(PictureBuffer, CropTakesARectangleAndIsBlackOutside) {
  const struct {
    Long left, top, width, height;
  } cases[] = {{0, 0, 7, 5},     {2, 1, 3, 3},     {-2, -1, 4, 4},  {5, 3, 6, 9},
               {-3, -3, 20, 20}, {100, 100, 2, 2}, {kMax, 0, 3, 3}, {kMin, kMin, 3, 3}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.left << "," << c.top);
    EXPECT_EQ(
        After(7, 5, [&](cPicture24& b) { EXPECT_TRUE(b.Crop(c.left, c.top, c.width, c.height)); }),
        RowsOf(c.width, c.height, [&](Long x, Long y) {
          const std::int64_t sourceX = std::int64_t{c.left} + x;
          const std::int64_t sourceY = std::int64_t{c.top} + y;
          const bool inside = sourceX >= 0 && sourceX < 7 && sourceY >= 0 && sourceY < 5;
          return inside ? Gradient(static_cast<Long>(sourceX), static_cast<Long>(sourceY))
                        : Pixel{};
        }));
  }
}

TEST_F(PictureBuffer, CropWorksOnItsOwnPixelsAsOnAPictures) {
  EXPECT_EQ(After(7, 5,
                  [](cPicture24& b) {
                    b.Flip();
                    b.Crop(1, 1, 4, 3);
                    b.Crop(1, 0, 2, 2);
                  }),
            RowsOf(2, 2, [](Long x, Long y) { return Gradient(x + 2, 3 - y); }));
}

TEST_F(PictureBuffer, CropReadsABitmapThatTheHostHasSelectedElsewhere) {
  const PictureRef picture = Gradient24(7, 5);
  const UniqueDC dc(platform.bitmaps);
  const SelectGuard selected(platform.bitmaps, dc.get(), picture->Handle());
  ASSERT_TRUE(selected);
  SameHandle bitmaps(platform.bitmaps);
  Platform other = PlatformWith(bitmaps, platform);
  for (Platform* services : {&platform, &other}) {
    cPicture24 buffer(*services);
    buffer.CopyFromPicture(picture);
    buffer.Crop(1, 1, 3, 3);
    EXPECT_EQ(Shown(buffer.CopyToPicture()),
              RowsOf(3, 3, [](Long x, Long y) { return Gradient(x + 1, y + 1); }));
  }
}

TEST_F(PictureBuffer, ACopyServiceMayHandBackTheSourceItself) {
  SameHandle bitmaps(platform.bitmaps);
  Platform other = PlatformWith(bitmaps, platform);
  const PictureRef picture = Gradient24(6, 5);
  {
    cPicture24 buffer(other);
    buffer.CopyFromPicture(picture);
    EXPECT_TRUE(buffer.Resize(6, 5));
    EXPECT_EQ(Shown(buffer.CopyToPicture()), RowsOf(6, 5, Gradient));
    buffer.Flip();
    buffer.Resize(6, 5);
    EXPECT_EQ(Shown(buffer.CopyToPicture()),
              RowsOf(6, 5, [](Long x, Long y) { return Gradient(x, 4 - y); }));
  }
  EXPECT_EQ(std::count(bitmaps.deleted.begin(), bitmaps.deleted.end(), picture->Handle()), 0);
  EXPECT_EQ(Shown(picture), RowsOf(6, 5, Gradient));
}

TEST_F(PictureBuffer, ResizeToFitKeepsProportions) {
  const struct {
    Long width, height, maxWidth, maxHeight;
    bool enlarge;
    Long newWidth, newHeight;
  } cases[] = {{400, 200, 100, 100, false, 100, 50}, {400, 200, 800, 800, false, 400, 200},
               {400, 200, 800, 800, true, 800, 400}, {400, 200, 300, 300, true, 300, 150},
               {40, 20, 40, 20, true, 40, 20},       {3, 22, 55, 55, true, 7, 55}};
  for (const auto& c : cases) {
    const PixelRows24 shown = After(c.width, c.height, [&](cPicture24& b) {
      b.ResizeToFit(c.maxWidth, c.maxHeight, c.enlarge);
    });
    EXPECT_EQ(shown.width, c.newWidth);
    EXPECT_EQ(shown.height, c.newHeight);
  }
  EXPECT_EQ(After(9, 7, [](cPicture24& b) { b.Resize(9, 7); }), RowsOf(9, 7, Gradient));
}

TEST_F(PictureBuffer, ImpossibleSizesAreNumberedErrorsAndLeaveItEmpty) {
  using enum ErrorNumber;
  const struct {
    Long width, height;
    ErrorNumber error;
  } cases[] = {{0, 5, SubscriptOutOfRange}, {5, -1, SubscriptOutOfRange}, {kMax, kMax, Overflow},
               {kMin, 5, Overflow},         {715827883, 1, Overflow},     {715827882, 1, Overflow},
               {40000, 40000, OutOfMemory}, {1, kMax, OutOfMemory}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
    cPicture24 buffer(platform);
    const PictureRef picture = Gradient24(3, 2);
    buffer.CopyFromPicture(picture);
    EXPECT_EQ(ErrorOf([&] { buffer.Resize(c.width, c.height); }), c.error);
    EXPECT_EQ(buffer.Width(), 0);
    buffer.CopyFromPicture(picture);
    EXPECT_EQ(ErrorOf([&] { buffer.Crop(0, 0, c.width, c.height); }), c.error);
    EXPECT_EQ(buffer.CopyToPicture(), nullptr);
  }
  cPicture24 buffer(platform);
  for (const auto& [width, height] : {std::pair<Long, Long>{0, 10}, {10, 0}, {0, 0}, {-5, 10}}) {
    buffer.CopyFromPicture(Gradient24(3, 2));
    EXPECT_EQ(ErrorOf([&, w = width, h = height] { buffer.ResizeToFit(w, h, true); }),
              SubscriptOutOfRange);
  }
}

TEST_F(PictureBuffer, ProgressRisesByRowsHalvesToEven) {
  std::vector<Integer> seen;
  cPicture24 buffer(platform, [&](Integer percent) { seen.push_back(percent); });
  buffer.CopyFromPicture(Gradient24(2, 201));
  buffer.Rotate();
  ASSERT_EQ(seen.size(), 201u);
  EXPECT_EQ(seen[115], 57);  // 57.49999999999999 in this order of operations
  EXPECT_EQ(seen[200], 100);
  seen.clear();
  buffer.CopyFromPicture(Gradient24(2, 9));
  buffer.Flip();
  EXPECT_EQ(seen, (std::vector<Integer>{0, 12, 25, 38, 50, 62, 75, 88, 100}));
  seen.clear();
  buffer.CopyFromPicture(Gradient24(2, 1));
  buffer.Reverse();
  EXPECT_EQ(seen, std::vector<Integer>{100});
  seen.clear();
  buffer.Resize(4, 4);
  buffer.Crop(0, 0, 2, 2);
  EXPECT_TRUE(seen.empty());
}

TEST_F(PictureBuffer, ProgressHandlersFindItEmptyAndTheOperationsOwnResultStays) {
  cPicture24* inside = nullptr;
  bool visited = false;
  const PictureRef other = Gradient24(9, 9);
  cPicture24 buffer(platform, [&](Integer) {
    if (!std::exchange(visited, true)) {
      EXPECT_EQ(inside->Width(), 0);
    }
    inside->CopyFromPicture(other);
    inside->Crop(0, 0, 2, 2);
  });
  inside = &buffer;
  buffer.CopyFromPicture(Gradient24(3, 2));
  buffer.Rotate();
  EXPECT_EQ(Shown(buffer.CopyToPicture()),
            RowsOf(2, 3, [](Long x, Long y) { return Gradient(y, 1 - x); }));
}

// Each service call of each operation fails once: the error is 7, the source picture is as it was,
// and nothing is left behind.
TEST_F(PictureBuffer, AServiceThatFailsIsError7AndLeaksNothing) {
  const struct {
    const char* what;
    void (*run)(cPicture24&);
  } operations[] = {{"flip", [](cPicture24& b) { b.Flip(); }},
                    {"rotate", [](cPicture24& b) { b.Rotate(); }},
                    {"crop", [](cPicture24& b) { b.Crop(1, 1, 2, 2); }},
                    {"crop twice", [](cPicture24& b) { b.Flip(), b.Crop(1, 1, 2, 2); }},
                    {"resize", [](cPicture24& b) { b.Resize(8, 3); }}};
  for (const auto& operation : operations) {
    SCOPED_TRACE(operation.what);
    const PictureRef picture =
        OneBitPicture(platform, 6, 5, [](Long x, Long y) { return (x * y) % 3 == 0; });
    const PixelRows24 before = Shown(picture);
    const CensusCounts census = m_platform->Census();
    FaultyPlatform faulty(platform);
    for (int call = 2;; ++call) {  // the first asks what the picture is
      faulty.FailCall(call);
      cPicture24 buffer(faulty.Contracts());
      try {
        buffer.CopyFromPicture(picture);
        operation.run(buffer);
        buffer.CopyToPicture();
      } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::OutOfMemory);
      }
      buffer.CopyFromPicture(nullptr);
      EXPECT_EQ(m_platform->Census(), census) << "call " << call;
      EXPECT_EQ(Shown(picture), before);
      if (!faulty.HasFailed()) break;
    }
  }
}

}  // namespace
}  // namespace quillet
