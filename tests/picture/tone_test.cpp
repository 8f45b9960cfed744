// The tone operations, filters and comparison of the picture buffer.

#include <gtest/gtest.h>

#include <functional>

#include "embed/stage.h"
#include "picture/cPicture24.h"
#include "picture/lightness.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_platform.h"
#include "tests/support/literal_tone.h"
#include "tests/support/pictures.h"

namespace quillet {
namespace {

using Operation = std::function<void(cPicture24&)>;

class Tone : public testing::Test {
 protected:
  PictureRef Picture(const PixelRows24& rows) {
    return PictureOf(m_platform->Contracts(), rows.width, rows.height,
                     [&](Long x, Long y) { return rows.At(x, y); });
  }
  PixelRows24 After(const PixelRows24& rows, const Operation& operation,
                    const Kernels& kernels = BestKernels()) {
    cPicture24 buffer(m_platform->Contracts(), {}, kernels);
    buffer.CopyFromPicture(Picture(rows));
    operation(buffer);
    return PixelsOf(m_platform->Contracts(), buffer.CopyToPicture());
  }
  // One pixel, in a picture large enough for every operation to reach it.
  Pixel After(Pixel pixel, const Operation& operation) {
    return After(RowsOf(2, 2, [=](Long, Long) { return pixel; }), operation).At(0, 0);
  }

  const std::unique_ptr<Stage> m_platform = MakeStage();
};

TEST_F(Tone, EveryOperationIsTheLiteralOneAtEverySizeWithEveryInstructionSet) {
  const struct {
    const char* name;
    Operation operation;
    std::function<PixelRows24(PixelRows24)> literal;
  } operations[] = {
      {"invert", [](cPicture24& b) { b.Invert(true, false, true); },
       [](PixelRows24 r) { return literal::Invert(std::move(r), true, false, true); }},
      {"gray", [](cPicture24& b) { b.GrayScale(); }, literal::GrayScale},
      {"black white", [](cPicture24& b) { b.BlackWhite(); }, literal::BlackWhite},
      {"contrast", [](cPicture24& b) { b.Contrast(2); },
       [](PixelRows24 r) { return literal::Contrast(std::move(r), 2); }},
      {"contrast beyond", [](cPicture24& b) { b.Contrast(-32768); },
       [](PixelRows24 r) { return literal::Contrast(std::move(r), -32768); }},
      {"fade", [](cPicture24& b) { b.Fade(100); },
       [](PixelRows24 r) { return literal::Fade(std::move(r), 100); }},
      {"lighten", [](cPicture24& b) { b.Lighten(40); },
       [](PixelRows24 r) { return literal::Lighten(std::move(r), 40); }},
      {"sharpen", [](cPicture24& b) { b.Sharpen(0.5f); },
       [](PixelRows24 r) { return literal::Sharpen(std::move(r), 0.5f); }},
      {"sharpen more", [](cPicture24& b) { b.Sharpen(0.8f); },
       [](PixelRows24 r) { return literal::Sharpen(std::move(r), 0.8f); }},
      {"sharpen by another amount", [](cPicture24& b) { b.Sharpen(-1.3f); },
       [](PixelRows24 r) { return literal::Sharpen(std::move(r), -1.3f); }},
      {"blur", [](cPicture24& b) { b.Blur(); }, literal::Blur}};
  for (const auto& [name, operation, literal] : operations) {
    SCOPED_TRACE(name);
    for (Long width = 1; width <= 67; ++width) {
      for (Long height = 1; height <= 5; ++height) {
        const PixelRows24 rows = RowsOf(width, height, Gradient);
        const PixelRows24 expected = literal(rows);
        for (const auto set :
             {InstructionSet::Scalar, InstructionSet::Sse2, InstructionSet::Avx2}) {
          if (!KernelsFor(set)) continue;
          ASSERT_EQ(After(rows, operation, *KernelsFor(set)), expected)
              << width << "x" << height << ", set " << static_cast<int>(set);
        }
      }
    }
  }
}

TEST_F(Tone, SingleColorsBecomeWhatTheyShould) {
  const auto gray = [](cPicture24& b) { b.GrayScale(); };
  const auto blackWhite = [](cPicture24& b) { b.BlackWhite(); };
  const auto contrast = [](Integer value) { return [=](cPicture24& b) { b.Contrast(value); }; };
  const auto fade = [](Long value) { return [=](cPicture24& b) { b.Fade(value); }; };
  const auto lighten = [](Long value) { return [=](cPicture24& b) { b.Lighten(value); }; };
  const struct {
    const char* what;
    Pixel before;
    Operation operation;
    Pixel after;
  } cases[] = {
      {"red to grey", {0, 0, 255}, gray, {57, 57, 57}},
      {"green to grey", {0, 255, 0}, gray, {180, 180, 180}},
      {"blue to grey", {255, 0, 0}, gray, {18, 18, 18}},
      {"white stays grey", {255, 255, 255}, gray, {255, 255, 255}},
      {"just dark", {191, 191, 191}, blackWhite, {0, 0, 0}},
      {"one channel light", {0, 0, 192}, blackWhite, {255, 255, 255}},
      {"contrast 0", {0, 200, 128}, contrast(0), {128, 128, 128}},
      {"contrast 1", {0, 200, 128}, contrast(1), {0, 200, 128}},
      {"contrast -1", {0, 255, 128}, contrast(-1), {255, 1, 128}},
      {"contrast beyond 16 bits", {0, 127, 129}, contrast(32767), {0, 0, 255}},
      {"contrast far below", {0, 129, 128}, contrast(-32768), {255, 0, 128}},
      {"fade 255", {1, 128, 255}, fade(255), {1, 128, 255}},
      {"fade 0", {1, 128, 255}, fade(0), {0, 0, 0}},
      {"fade beyond 255 as far as it goes", {217, 0, 100}, fade(300), {255, 0, 118}},
      {"fade below 0 as far as it goes", {127, 0, 1}, fade(-1), {0, 0, 0}},
      {"black fades by anything", {0, 0, 0}, fade(2147483647), {0, 0, 0}},
      {"lighten 0", {1, 128, 255}, lighten(0), {1, 128, 255}},
      {"lighten 50, half-way above", {3, 3, 3}, lighten(50), {5, 5, 5}},
      {"lighten -50, half-way above", {1, 1, 1}, lighten(-50), {1, 1, 1}},
      {"lighten 100 from the middle up", {0, 0, 255}, lighten(100), {255, 255, 255}},
      {"lighten -100", {1, 128, 255}, lighten(-100), {0, 0, 0}},
      {"lighten below -100", {1, 128, 255}, lighten(-250), {0, 0, 0}},
      {"grey stays grey", {90, 90, 90}, lighten(30), {117, 117, 117}},
  };
  for (const auto& c : cases) EXPECT_EQ(After(c.before, c.operation), c.after) << c.what;
}

TEST_F(Tone, InvertTakesTheChosenChannelsOnlyAndTwiceGivesThePictureBack) {
  const Pixel before{10, 20, 30};
  EXPECT_EQ(After(before, [](cPicture24& b) { b.Invert(true, false, false); }),
            (Pixel{10, 20, 225}));
  EXPECT_EQ(After(before, [](cPicture24& b) { b.Invert(false, true, false); }),
            (Pixel{10, 235, 30}));
  EXPECT_EQ(After(before, [](cPicture24& b) { b.Invert(false, false, true); }),
            (Pixel{245, 20, 30}));
  const PixelRows24 rows = RowsOf(37, 5, Gradient);
  const auto twice = [](cPicture24& b) { b.Invert(true, true, true), b.Invert(true, true, true); };
  EXPECT_EQ(After(rows, twice), rows);
}

TEST_F(Tone, FiltersRoundHalvesToEvenAndClamp) {
  const struct {
    Byte pixel, diagonal, expected;
  } cases[] = {{10, 9, 10}, {11, 10, 12}, {0, 255, 0}, {255, 0, 255}};
  for (const auto& c : cases) {
    const PixelRows24 rows = RowsOf(2, 2, [&](Long x, Long) {
      const Byte value = x == 0 ? c.pixel : c.diagonal;
      return Pixel{value, value, value};
    });
    EXPECT_EQ(After(rows, [](cPicture24& b) { b.Sharpen(0.5f); }).At(0, 0).green, c.expected);
  }
  cPicture24 buffer(m_platform->Contracts());
  buffer.CopyFromPicture(Picture(RowsOf(2, 2, Gradient)));
  EXPECT_EQ(ErrorOf([&] { buffer.Sharpen(1e9f); }), ErrorNumber::Overflow);
}

TEST_F(Tone, BlurReadsTheUpperLeftNeighbourBlurredAndTheOthersAsTheyWere) {
  const PixelRows24 rows = RowsOf(4, 4, [](Long x, Long y) {
    const bool isLit = (x == 1 && y == 1) || (x == 0 && y == 1);
    return isLit ? Pixel{250, 250, 250} : Pixel{};
  });
  const PixelRows24 blurred = After(rows, [](cPicture24& b) { b.Blur(); });
  EXPECT_EQ(blurred.At(1, 1).red, 50);  // a fifth of itself
  EXPECT_EQ(blurred.At(2, 2).red, 10);  // a fifth of that
  EXPECT_EQ(blurred.At(1, 2).red, 50);  // of the border, which stays
  EXPECT_EQ(blurred.At(0, 1).red, 250);
}

TEST_F(Tone, ProgressComesForTheRowsThatAreWorkedOn) {
  const struct {
    const char* what;
    Operation operation;
    std::vector<Integer> percents;  // of six rows
  } cases[] = {{"all", [](cPicture24& b) { b.GrayScale(); }, {0, 20, 40, 60, 80, 100}},
               {"all but the last", [](cPicture24& b) { b.Contrast(3); }, {0, 20, 40, 60, 80}},
               {"all but the last", [](cPicture24& b) { b.Sharpen(0.8f); }, {0, 20, 40, 60, 80}},
               {"those between", [](cPicture24& b) { b.Blur(); }, {20, 40, 60, 80}},
               {"no channel", [](cPicture24& b) { b.Invert(false, false, false); }, {}}};
  for (const Long width : {1, 2, 30}) {
    for (const auto& c : cases) {
      std::vector<Integer> seen;
      cPicture24 buffer(m_platform->Contracts(), [&](Integer percent) { seen.push_back(percent); });
      c.operation(buffer);
      EXPECT_TRUE(seen.empty()) << "an empty buffer";
      buffer.CopyFromPicture(Picture(RowsOf(width, 6, Gradient)));
      c.operation(buffer);
      EXPECT_EQ(seen, c.percents) << c.what << " of width " << width;
    }
  }
}

TEST_F(Tone, FadeStopsAtTheFirstPixelThatLeavesTheRange) {
  const struct {
    Long level;
    Byte fits, leaves;
  } cases[] = {{300, 217, 218}, {-1, 127, 128}, {2147483647, 0, 1}, {-2147483647 - 1, 0, 255}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.level);
    std::vector<Integer> seen;
    cPicture24 buffer(m_platform->Contracts(), [&](Integer percent) { seen.push_back(percent); });
    // Green of pixel (2, 1) does not fit.
    const PixelRows24 before = RowsOf(4, 3, [&](Long x, Long y) {
      return Pixel{c.fits, x == 2 && y == 1 ? c.leaves : c.fits, c.fits};
    });
    buffer.CopyFromPicture(Picture(before));
    EXPECT_EQ(ErrorOf([&] { buffer.Fade(c.level); }), ErrorNumber::Overflow);
    EXPECT_EQ(seen, std::vector<Integer>{0});
    const auto faded = static_cast<Byte>(c.level == 300 ? 255 : 0);
    EXPECT_EQ(PixelsOf(m_platform->Contracts(), buffer.CopyToPicture()),
              RowsOf(4, 3, [&](Long x, Long y) {
                const bool isDone = y == 0 || (y == 1 && x < 2);
                return isDone ? Pixel{faded, faded, faded} : before.At(x, y);
              }));
  }
}

TEST_F(Tone, HuesCountFromRedInSixthsAndComeBack) {
  const struct {
    Long red, green, blue;
    Single hue;
  } cases[] = {{255, 0, 0, 0}, {255, 255, 0, 1},  {0, 255, 0, 2},    {0, 255, 255, 3},
               {0, 0, 255, 4}, {255, 0, 255, -1}, {128, 128, 128, 0}};
  for (const auto& c : cases) {
    const HSL color = RGBToHSL(c.red, c.green, c.blue);
    EXPECT_EQ(color.hue, c.hue);
    const RGB back = HSLToRGB(color.hue, color.saturation, color.lightness);
    EXPECT_EQ(back.red, c.red);
    EXPECT_EQ(back.green, c.green);
    EXPECT_EQ(back.blue, c.blue);
  }
  for (int color = 0; color < 1 << 24; color += 509) {
    const Long red = color & 255, green = color >> 8 & 255, blue = color >> 16;
    const HSL hsl = RGBToHSL(red, green, blue);
    const RGB back = HSLToRGB(hsl.hue, hsl.saturation, hsl.lightness);
    ASSERT_TRUE(back.red == red && back.green == green && back.blue == blue) << color;
  }
}

class Comparison : public Tone {
 protected:
  bool Equal(const ObjectRef& a, const ObjectRef& b) {
    cPicture24 buffer(m_platform->Contracts());
    buffer.CopyFromPicture(std::dynamic_pointer_cast<quillet::Picture>(a));
    return buffer.Compare(b);
  }
};

TEST_F(Comparison, WhatIsNoBitmapEqualsNothing) {
  const PictureRef bitmap = Picture(RowsOf(3, 2, Gradient));
  const PictureRef icon = IconPicture(m_platform->Contracts());
  const PictureRef empty = m_platform->Contracts().pictures.EmptyPicture();
  const ObjectRef foreign = std::make_shared<Object>();
  for (const ObjectRef& other : {ObjectRef(), foreign, ObjectRef(icon), ObjectRef(empty)}) {
    EXPECT_FALSE(Equal(bitmap, other));
    EXPECT_FALSE(Equal(nullptr, other));
    EXPECT_FALSE(Equal(icon, other));
  }
  EXPECT_FALSE(Equal(nullptr, bitmap));
  EXPECT_TRUE(Equal(bitmap, bitmap));
}

TEST_F(Comparison, PixelsCountAndNothingElse) {
  // Several strips of rows, and a width with alignment bytes.
  const PixelRows24 rows = RowsOf(1001, 150, Gradient);
  const PictureRef picture = Picture(rows);
  EXPECT_TRUE(Equal(picture, Picture(rows)));
  for (const auto& [x, y] : {std::pair<Long, Long>{0, 0}, {1000, 149}, {500, 75}, {1000, 43}}) {
    for (int channel = 0; channel < 3; ++channel) {
      PixelRows24 other = rows;
      other.bytes[rows.Stride() * static_cast<std::size_t>(y) +
                  static_cast<std::size_t>(3 * x + channel)] ^= 1;
      EXPECT_FALSE(Equal(picture, Picture(other))) << x << "," << y;
      EXPECT_FALSE(Equal(Picture(other), picture)) << x << "," << y;
    }
  }
  EXPECT_FALSE(Equal(picture, Picture(RowsOf(1000, 150, Gradient))));
  EXPECT_FALSE(Equal(picture, Picture(RowsOf(1001, 149, Gradient))));
  const auto isWhite = [](Long x, Long y) { return (x + y) % 3 == 0; };
  const auto drawn = OneBitPicture(m_platform->Contracts(), 67, 9, isWhite);
  const auto colored = Picture(RowsOf(67, 9, [&](Long x, Long y) {
    return isWhite(x, y) ? Pixel{255, 255, 255} : Pixel{};
  }));
  EXPECT_TRUE(Equal(drawn, colored));
  EXPECT_TRUE(Equal(colored, drawn));
}

TEST_F(Comparison, BuffersCompareWhateverTheyHold) {
  const PictureRef picture = Picture(RowsOf(9, 7, Gradient));
  cPicture24 read(m_platform->Contracts()), flipped(m_platform->Contracts());
  cPicture24 deferred(m_platform->Contracts()), empty(m_platform->Contracts());
  read.CopyFromPicture(picture);
  read.GetBits();
  flipped.CopyFromPicture(picture);
  flipped.Flip();
  deferred.CopyFromPicture(picture);
  EXPECT_TRUE(read.Compare(deferred));
  EXPECT_TRUE(deferred.Compare(read));
  EXPECT_TRUE(read.Compare(read));
  EXPECT_FALSE(flipped.Compare(deferred));
  flipped.Flip();
  EXPECT_TRUE(flipped.Compare(read));
  EXPECT_FALSE(empty.Compare(empty));
  EXPECT_FALSE(read.Compare(empty));
  EXPECT_FALSE(empty.Compare(read));
}

TEST_F(Comparison, AServiceThatFailsIsError7OrNoBitmapAndLeaksNothing) {
  const PictureRef picture = Picture(RowsOf(9, 7, Gradient));
  const PictureRef same = Picture(RowsOf(9, 7, Gradient));
  const CensusCounts census = m_platform->Census();
  FaultyPlatform faulty(m_platform->Contracts());
  for (int call = 1;; ++call) {
    faulty.FailCall(call);
    try {
      cPicture24 buffer(faulty.Contracts());
      buffer.CopyFromPicture(picture);
      // A picture of which the platform cannot say what it is counts as none; a context that
      // refuses a bitmap is made good by a copy of it.
      EXPECT_TRUE(buffer.Compare(same) || call <= 2 || !faulty.HasFailed()) << call;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::OutOfMemory);
    }
    EXPECT_EQ(m_platform->Census(), census) << call;
    if (!faulty.HasFailed()) break;
  }
}

}  // namespace
}  // namespace quillet
