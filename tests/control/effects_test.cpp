// Tone, filters and comparison as a host calls them.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"
#include "tests/support/literal_tone.h"

namespace quillet {
namespace {

struct Effect {
  const char* name;
  std::vector<Variant> arguments;
  std::function<PixelRows24(PixelRows24)> literal;
  Long rowsLeftOut;
};

const std::vector<Effect>& Effects() {
  static const std::vector<Effect> effects{
      {"Invert", {}, [](PixelRows24 r) { return literal::Invert(r, true, true, true); }, 0},
      {"GrayScale", {}, literal::GrayScale, 0},
      {"BlackWhite", {}, literal::BlackWhite, 0},
      {"Sharpen", {}, [](PixelRows24 r) { return literal::Sharpen(r, 0.5f); }, 1},
      {"SharpenMore", {}, [](PixelRows24 r) { return literal::Sharpen(r, 0.8f); }, 1},
      {"Blur", {}, literal::Blur, 2},
      {"Contrast", {Integer{3}}, [](PixelRows24 r) { return literal::Contrast(r, 3); }, 1},
      {"Fade", {std::string("99")}, [](PixelRows24 r) { return literal::Fade(r, 99); }, 0},
      {"Lighten", {Long{-20}}, [](PixelRows24 r) { return literal::Lighten(r, -20); }, 0}};
  return effects;
}

Variant CallEffect(HostedControl& hosted, const Effect& effect) {
  std::vector<Variant> arguments = effect.arguments;
  return Invoke(*hosted.control, NumberOf(effect.name), Access::Method, arguments);
}

TEST(Effects, ChangeThePictureAndTheScreenWithProgressForEachRow) {
  for (const Effect& effect : Effects()) {
    SCOPED_TRACE(effect.name);
    HostedControl hosted(100, 100);
    hosted.Assign(70, 50);
    hosted.TakeLog();
    CallEffect(hosted, effect);
    const PixelRows24 expected = effect.literal(RowsOf(70, 50, Gradient));
    EXPECT_EQ(PixelsOf(hosted.platform.Contracts(), hosted.Picture()), expected);
    EXPECT_EQ(hosted.Screen().At(33, 44), expected.At(33, 44));
    const auto log = hosted.TakeLog();
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const std::string& line) { return line.starts_with("Progress"); }),
              50 - effect.rowsLeftOut);
  }
}

TEST(Effects, RunThroughWithoutAPicture) {
  for (const Effect& effect : Effects()) {
    SCOPED_TRACE(effect.name);
    HostedControl hosted(100, 100);
    CallEffect(hosted, effect);
    EXPECT_EQ(hosted.Picture(), nullptr);
    EXPECT_TRUE(hosted.TakeLog().empty());
  }
}

TEST(Effects, MayBeDisturbedByASinkThatUsesTheControl) {
  for (const Effect& effect : Effects()) {
    SCOPED_TRACE(effect.name);
    HostedControl hosted(100, 100);
    hosted.Assign(40, 30);
    bool isInside = false;
    hosted.onEvent = [&](Event event, std::span<Variant>) {
      if (event != Event::Progress || std::exchange(isInside, true)) return;
      EXPECT_FALSE(VariantToBoolean(hosted.Call("Compare", ObjectRef())));
      CallEffect(hosted, effect);
      hosted.Call("Rotate");
      hosted.Assign(300, 3);
      isInside = false;
    };
    CallEffect(hosted, effect);
    EXPECT_EQ(PixelsOf(hosted.platform.Contracts(), hosted.Picture()),
              effect.literal(RowsOf(40, 30, Gradient)));
  }
}

TEST(Effects, AFadeThatFailsKeepsPictureAndScreen) {
  HostedControl hosted(100, 100);
  hosted.Assign(30, 20);
  const PictureRef picture = hosted.Picture();
  const PixelRows24 screen = hosted.Screen();
  for (const Long level : {300, -1, 2147483647}) {
    EXPECT_EQ(ErrorOf([&] { hosted.Call("Fade", level); }), ErrorNumber::Overflow);
    EXPECT_TRUE(SameObject(hosted.Picture(), picture));
    EXPECT_EQ(hosted.Screen(), screen);
  }
  EXPECT_EQ(ErrorOf([&] { hosted.Call("Contrast", Long{70000}); }), ErrorNumber::Overflow);
  EXPECT_TRUE(SameObject(hosted.Picture(), picture));
}

TEST(Effects, CompareAnswersQuietlyAndGivesTheObjectBack) {
  HostedControl hosted(100, 100);
  hosted.Assign(30, 20);
  const PictureRef current = hosted.Picture();
  const PixelRows24 screen = hosted.Screen();
  hosted.TakeLog();
  const Platform& platform = hosted.platform.Contracts();
  const ObjectRef foreign = std::make_shared<Object>();
  const struct {
    ObjectRef object;
    bool isEqual;
  } cases[] = {{current, true},
               {PictureOf(platform, 30, 20, Gradient), true},
               {PictureOf(platform, 20, 30, Gradient), false},
               {IconPicture(platform), false},
               {foreign, false},
               {nullptr, false}};
  for (const auto& c : cases) {
    Variant argument = c.object;
    EXPECT_EQ(VariantToBoolean(
                  Invoke(*hosted.control, NumberOf("Compare"), Access::Method, {&argument, 1})),
              c.isEqual);
    EXPECT_TRUE(SameObject(VariantToObject(argument), c.object));
  }
  EXPECT_TRUE(SameObject(hosted.Picture(), current));
  EXPECT_EQ(hosted.Screen(), screen);
  hosted.PutPicture(nullptr);
  EXPECT_FALSE(VariantToBoolean(hosted.Call("Compare", ObjectRef(current))));
}

}  // namespace
}  // namespace quillet
