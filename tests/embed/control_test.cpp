#include "embed/control.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "embed/stage.h"
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
