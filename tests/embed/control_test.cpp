#include "embed/control.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>

#include "embed/stage.h"
#include "platform/contracts/property_bag.h"
#include "tests/support/error_of.h"
#include "tests/support/pictures.h"
#include "tests/support/print_census.h"

namespace quillet {
namespace {

struct HostControl : testing::Test {
  std::unique_ptr<Stage> stage = MakeStage();
  std::unique_ptr<ControlWindow> window = stage->OpenWindow(100, 100);
  std::optional<Control> control{std::in_place, stage->Contracts(), window->ControlsSurface()};
};

TEST_F(HostControl, ReadsWritesAndCallsByNameWithPlainValues) {
  control->Put("quality", 33);
  EXPECT_EQ(control->Get("Quality"), Variant(Integer{33}));
  control->Put("FileType", twTIFF);
  EXPECT_EQ(control->Get("FileType"), Variant(Long{twTIFF}));
  control->Put("filename", "a.tif");
  EXPECT_EQ(control->Get("filename"), Variant(std::string("a.tif")));
  control->Put("Scrollable", false);
  EXPECT_EQ(control->Get("Scrollable"), Variant(false));

  const PictureRef picture = PictureOf(stage->Contracts(), 30, 20, Gradient);
  control->Put("Picture", picture);
  EXPECT_EQ(control->Get("Picture"), Variant(ObjectRef(picture)));
  control->Call("Resize", 15, 10.0);
  EXPECT_EQ(control->Get("BitmapWidth"), Variant(Long{15}));
  EXPECT_EQ(control->Call("Compare", picture), Variant(false));
  control->Call("Fit");
  EXPECT_EQ(ErrorOf([&] { control->Put("BitmapWidth", 1); }), ErrorNumber::MemberNotSupported);
  EXPECT_EQ(ErrorOf([&] { control->Get("Width"); }), ErrorNumber::MemberNotSupported);
}

TEST_F(HostControl, HandsItsSettingsOverThroughABag) {
  struct Bag : PropertyBag {
    std::map<std::string, Variant> values;
    Variant ReadProperty(const std::string& key, const Variant& defaultValue) override {
      const auto found = values.find(key);
      return found == values.end() ? defaultValue : found->second;
    }
    void WriteProperty(const std::string& key, const Variant& value, const Variant&) override {
      values[key] = value;
    }
  } bag;
  control->Put("Resolution", 300);
  control->Put("ToolTipText", "a tip");
  control->WriteProperties(bag);
  control.emplace(stage->Contracts(), window->ControlsSurface());
  control->ReadProperties(bag);
  EXPECT_EQ(control->Get("Resolution"), Variant(Integer{300}));
  EXPECT_EQ(control->Get("ToolTipText"), Variant(std::string("a tip")));
}

// The object that owns the control and listens to it may be one, and may go at any moment.
TEST_F(HostControl, MayBeLetGoOfByItsOwnSinkAndByTheEndOfThatSink) {
  struct Sink : EventSink {
    explicit Sink(std::optional<Control>& held) : control(held) {}
    ~Sink() override { control.reset(); }
    void Invoke(Event event, std::span<Variant>) override {
      if (event == Event::Progress) control.reset();
    }
    std::optional<Control>& control;
  };
  control->Put("Picture", PictureOf(stage->Contracts(), 30, 20, Gradient));
  control->Connect(std::make_shared<Sink>(control));
  control->Call("Flip");
  EXPECT_FALSE(control);

  control.emplace(stage->Contracts(), window->ControlsSurface());
  const int cookie = control->Connect(std::make_shared<Sink>(control));
  EXPECT_TRUE(control->Disconnect(cookie));
  EXPECT_FALSE(control);
  window.reset();
  EXPECT_EQ(stage->Census(), CensusCounts{});
}

}  // namespace
}  // namespace quillet
