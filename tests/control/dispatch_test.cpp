#include "control/dispatch.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"

namespace quillet {
namespace {

using enum ErrorNumber;

TEST(Dispatch, TheTableHoldsTheWholeInterface) {
  std::map<Access, int> count;
  std::set<std::pair<Long, Access>> accessors;
  std::map<Long, std::string> names;
  for (const Member& member : Members()) {
    ++count[member.access];
    EXPECT_TRUE(accessors.insert({member.number, member.access}).second) << member.name;
    EXPECT_EQ(names.try_emplace(member.number, member.name).first->second, member.name);
  }
  EXPECT_EQ(count[Access::Get], 21);
  EXPECT_EQ(count[Access::Put] + count[Access::PutRef], 17);
  EXPECT_EQ(count[Access::Method], 27);
  EXPECT_EQ(names[0x68030000], "Scrollable");
  EXPECT_EQ(names[0x68030003], "filename");
  EXPECT_EQ(names[0x68030014], "Quality");
  EXPECT_EQ(names[0x60030015], "About");
  EXPECT_EQ(names[0x60030029], "Zoom");
  EXPECT_EQ(names[0x6003002F], "ShowLoad");
}

TEST(Dispatch, NamesAreFoundInAnyCase) {
  EXPECT_EQ(NumberOf("bitmapwidth"), 0x68030009);
  EXPECT_EQ(NumberOf("FILENAME"), 0x68030003);
  EXPECT_EQ(ErrorOf([] { NumberOf("Bitmap"); }), MemberNotSupported);
  EXPECT_EQ(ErrorOf([] { NumberOf(""); }), MemberNotSupported);
}

TEST(Dispatch, CallsThatDoNotFitAreNumberedErrors) {
  HostedControl hosted(100, 100);
  const auto call = [&](const char* name, Access access, std::vector<Variant> arguments) {
    return ErrorOf([&] { Invoke(*hosted.control, NumberOf(name), access, arguments); });
  };
  EXPECT_EQ(call("BitmapWidth", Access::Put, {Long{1}}), MemberNotSupported);
  EXPECT_EQ(call("Picture", Access::Put, {ObjectRef()}), MemberNotSupported);
  EXPECT_EQ(call("Flip", Access::Get, {}), MemberNotSupported);
  EXPECT_EQ(call("Flip", Access::Method, {Long{1}}), WrongNumberOfArguments);
  EXPECT_EQ(call("Zoom", Access::Method, {}), WrongNumberOfArguments);
  EXPECT_EQ(call("Resize", Access::Method, {Long{1}}), WrongNumberOfArguments);
  EXPECT_EQ(call("Resize", Access::Method, {Omitted{}, Long{1}}), WrongNumberOfArguments);
  EXPECT_EQ(call("Quality", Access::Put, {}), WrongNumberOfArguments);
  EXPECT_EQ(call("Zoom", Access::Method, {Long{70000}}), Overflow);
  EXPECT_EQ(call("Quality", Access::Put, {std::string("70000")}), Overflow);
  EXPECT_EQ(call("Quality", Access::Put, {std::string("abc")}), TypeMismatch);
  EXPECT_EQ(call("Picture", Access::PutRef, {std::string("x")}), TypeMismatch);
  EXPECT_EQ(call("Picture", Access::PutRef, {std::make_shared<Object>()}), TypeMismatch);
  EXPECT_EQ(ErrorOf([&] { Invoke(*hosted.control, 99, Access::Method, {}); }), MemberNotSupported);
  EXPECT_TRUE(hosted.TakeLog().empty());
}

TEST(Dispatch, OptionalArgumentsMayBeLeftOut) {
  HostedControl hosted(100, 100);
  hosted.Assign(50, 25);
  hosted.Call("Fit");
  const PixelRows24 fitted = hosted.Screen();
  hosted.Call("Fit", Long{0});
  EXPECT_NE(hosted.Screen(), fitted);
  hosted.Call("Fit", Omitted{});
  EXPECT_EQ(hosted.Screen(), fitted);
}

TEST(Properties, ANewControlHasItsInitialValues) {
  HostedControl hosted(100, 100);
  const std::map<std::string, std::string> expected = {{"Quality", "70"},
                                                       {"Compression", "0"},
                                                       {"FileType", "0"},
                                                       {"BorderStyle", "1"},
                                                       {"BackColor", "-2147483643"},
                                                       {"Enabled", "True"},
                                                       {"MousePointer", "0"},
                                                       {"BitmapWidth", "0"},
                                                       {"BitmapHeight", "0"},
                                                       {"AutoRedraw", "True"},
                                                       {"ToolTipText", ""},
                                                       {"ColorType", "2"},
                                                       {"Resolution", "75"},
                                                       {"filename", ""},
                                                       {"ShowProgress", "True"},
                                                       {"ShowInterface", "False"},
                                                       {"Scrollable", "True"}};
  for (const auto& [name, value] : expected)
    EXPECT_EQ(VariantToString(hosted.Get(name.c_str())), value) << name;
  EXPECT_EQ(hosted.Get("MouseIcon"), Variant(ObjectRef()));
  EXPECT_NE(hosted.Number("hDC"), 0);
  EXPECT_NE(hosted.Number("hwnd"), 0);
  ASSERT_NE(hosted.Picture(), nullptr);
  EXPECT_EQ(hosted.Picture()->Handle(), BitmapHandle::None);
}

TEST(Properties, WritesAreKeptAndNotifiedWhetherTheyChangeAnythingOrNot) {
  HostedControl hosted(100, 100);
  const struct {
    const char* name;
    const char* value;
    const char* notified;
  } cases[] = {{"Quality", "-5", "Quality"},
               {"Compression", "300", "Compression"},
               {"FileType", "9", "FileType"},
               {"BorderStyle", "0", "BorderStyle"},
               {"BackColor", "255", "BackColor"},
               {"Enabled", "False", "Enabled"},
               {"MousePointer", "99", "MousePointer"},
               {"AutoRedraw", "False", "AutoRedraw"},
               {"ToolTipText", "a \xC3\xA9 tip", "ToolTipText"},
               {"ColorType", "-7", "ColorType"},
               {"Resolution", "-1", "Resolution"},
               {"FileName", "x.bmp", "Filename"},
               {"ShowProgress", "False", "ShowProgress"},
               {"ShowInterface", "True", "ShowInterface"},
               {"Scrollable", "False", "Scrollable"}};
  for (const auto& c : cases) {
    for (int time = 0; time < 2; ++time) {
      hosted.Put(c.name, std::string(c.value));
      EXPECT_EQ(VariantToString(hosted.Get(c.name)), c.value);
      EXPECT_EQ(hosted.TakeLog(), std::vector<std::string>{std::string("notify ") + c.notified});
    }
  }
}

TEST(Properties, ValuesThatTheSurfaceRefusesAreNeitherKeptNorNotified) {
  HostedControl hosted(100, 100);
  for (const auto& [name, value] : {std::pair{"BorderStyle", 2},
                                    {"BorderStyle", -1},
                                    {"MousePointer", 16},
                                    {"MousePointer", -1}}) {
    const Long before = hosted.Number(name);
    EXPECT_EQ(ErrorOf([&, n = name, v = value] { hosted.Put(n, Long{v}); }), InvalidPropertyValue);
    EXPECT_EQ(hosted.Number(name), before);
  }
  EXPECT_TRUE(hosted.TakeLog().empty());
}

TEST(Properties, ColoursComeInEverySign) {
  HostedControl hosted(10, 10);
  for (const char* text : {"&H80000005", "2147483653", "-2147483643", "0x80000005"}) {
    hosted.Put("BackColor", Long{0});
    hosted.Put("BackColor", std::string(text));
    EXPECT_EQ(hosted.Number("BackColor"), -2147483643);
  }
}

TEST(Properties, APictureReadTwiceIsTheSameObjectUntilAnOperation) {
  HostedControl hosted(100, 100);
  hosted.Assign(9, 5);
  const PictureRef first = hosted.Picture();
  EXPECT_TRUE(SameObject(first, hosted.Picture()));
  hosted.Call("Flip");
  EXPECT_FALSE(SameObject(first, hosted.Picture()));
  EXPECT_EQ(PixelsOf(hosted.platform.Contracts(), first), RowsOf(9, 5, Gradient));
  hosted.PutPicture(hosted.Picture());
  hosted.PutPicture(hosted.Picture());
  EXPECT_EQ(hosted.Number("BitmapHeight"), 5);
}

// A site that refuses: the value was stored before.
TEST(Properties, AFailedNotificationReachesTheHostAfterTheValueIsStored) {
  class Refusing : public Site {
    void PropertyChanged(std::string_view) override { throw RunTimeError(InvalidProcedureCall); }
  };
  const auto stage = MakeStage();
  const auto window = stage->OpenWindow(50, 50);
  const auto control =
      TWAIN::Create(stage->Contracts(), window->ControlsSurface(), std::make_shared<Refusing>());
  EXPECT_EQ(ErrorOf([&] { control->PutQuality(33); }), InvalidProcedureCall);
  EXPECT_EQ(control->Quality(), 33);
  const PictureRef picture = PictureOf(stage->Contracts(), 3, 3, Gradient);
  EXPECT_EQ(ErrorOf([&] { control->PutRefPicture(picture); }), InvalidProcedureCall);
  EXPECT_TRUE(SameObject(control->CurrentPicture(), picture));
}

}  // namespace
}  // namespace quillet
