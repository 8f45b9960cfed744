#include <gtest/gtest.h>

#include <fstream>
#include <utility>

#include "base/runtime_error.h"
#include "embed/portable_stage.h"
#include "platform/portable/portable_messages.h"
#include "platform/portable/portable_source_manager.h"
#include "platform/portable/simulated_user.h"
#include "tests/support/environment_variable.h"
#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"
#include "tests/support/print_census.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

// A control with the simulated sources on a small page.
class Scan : public testing::Test {
 protected:
  Scan() { host.Put("Resolution", Integer{50}); }

  CensusCounts Idle() const {
    CensusCounts census = host.platform.Census();
    census.bitmaps = census.pictures = 0;
    return census;
  }
  std::string Size() {
    return std::to_string(host.Number("BitmapWidth")) + "x" +
           std::to_string(host.Number("BitmapHeight"));
  }
  // Runs once while the scan's message loop runs: the box has something to paint.
  void InsideTheLoop(std::function<void()> action) {
    host.Put("BackColor", Long{0x123456});
    host.TakeLog();
    host.onEvent = [done = false, action = std::move(action)](Event, std::span<Variant>) mutable {
      if (!std::exchange(done, true)) action();
    };
  }

  TemporaryFolder folder;
  EnvironmentVariable temporaryFolder{kTemporaryFolder, folder.Path("")};
  PortableStage* stage = new PortableStage;  // owned by the control's host
  HostedControl host{300, 200, {}, std::unique_ptr<Stage>(stage)};
};

TEST_F(Scan, ShowsThePageAtItsOwnSizeAndNotifiesNothing) {
  host.Assign(30, 20);
  host.Call("Fit", Long{twFITINTO});
  const CensusCounts before = Idle();
  host.TakeLog();
  host.Call("Scan");
  EXPECT_EQ(Size(), "413x585");
  EXPECT_EQ(host.Layout(), "283x183 hv");
  for (const std::string& line : host.TakeLog()) EXPECT_FALSE(line.starts_with("notify")) << line;
  host.Call("Rotate");
  EXPECT_EQ(host.Layout(), "283x183 hv") << "the fit is forgotten";
  EXPECT_EQ(Idle(), before);
}

TEST_F(Scan, OfWhichNothingComesShowsTheOldPictureUnzoomed) {
  host.Assign(30, 20);
  host.Call("Zoom", Integer{400});
  const PictureRef picture = host.Picture();
  host.Put("ShowInterface", true);
  host.Call("Scan", std::string("Cancelled by the user"));
  EXPECT_EQ(host.Picture(), picture);
  EXPECT_EQ(host.Screen().At(29, 19), Gradient(29, 19));
}

TEST_F(Scan, WithoutAManagerRaisesItsErrorAfterTheZoomIsForgotten) {
  host.Assign(30, 20);
  host.Call("Zoom", Integer{200});
  stage->Layer().Sources().Uninstall();
  const CensusCounts before = Idle();
  EXPECT_EQ(ErrorOf([&] { host.Call("Scan"); }), ErrorNumber::FileNotFound);
  EXPECT_EQ(ErrorOf([&] { host.Call("SelectSource"); }), ErrorNumber::FileNotFound);
  EXPECT_EQ(Idle(), before);
  host.Call("Flip");
  EXPECT_EQ(host.Screen().At(0, 0), Gradient(0, 19)) << "shown at its own size";
}

TEST_F(Scan, TakesTheSourceThatWasChosen) {
  stage->Layer().User().WillChoose("Panel");
  host.Call("SelectSource");
  host.Call("Scan");
  EXPECT_EQ(Size(), "827x1169");
  host.Call("SelectSource", std::string("Cancelled"));
  host.Call("Scan");
  EXPECT_EQ(Size(), "827x1169");
}

TEST_F(Scan, AllowsNoSecondOneInside) {
  bool ran = false;
  InsideTheLoop([&] {
    host.Put("Resolution", Integer{100});
    host.Call("Scan");
    host.Call("SelectSource");
    ran = true;
  });
  host.Call("Scan");
  EXPECT_TRUE(ran);
  EXPECT_EQ(Size(), "413x585") << "the one that ran was not disturbed";
  host.Call("Scan");
  EXPECT_EQ(Size(), "827x1169");
}

TEST_F(Scan, ReplacesAPictureAssignedInsideIt) {
  PictureRef inside;
  InsideTheLoop([&] {
    host.Assign(5, 5);
    host.Call("Rotate");
    inside = host.Picture();
  });
  host.Call("Scan");
  ASSERT_TRUE(inside);
  EXPECT_EQ(Size(), "413x585");
  EXPECT_EQ(PixelsOf(host.platform.Contracts(), inside).width, 5);
}

TEST_F(Scan, EndsInOrderWhenTheHostLetsGoOfTheControl) {
  bool ran = false;
  InsideTheLoop([&] {
    host.control.reset();
    ran = true;
  });
  host.Call("Scan");
  EXPECT_TRUE(ran);
  EXPECT_EQ(host.control, nullptr);
  host.window.reset();
  EXPECT_EQ(host.platform.Census(), CensusCounts{});
}

TEST_F(Scan, EndsInOrderWhenItsWindowIsClosedInside) {
  InsideTheLoop([&] { host.window.reset(); });
  EXPECT_EQ(ErrorOf([&] { host.Call("Scan"); }), ErrorNumber::InvalidPropertyValue)
      << "there is nothing to show it on";
  EXPECT_EQ(Size(), "413x585");
  host.control.reset();
  EXPECT_EQ(host.platform.Census(), CensusCounts{});
}

TEST_F(Scan, LeavesAQuitInsideItTaken) {
  InsideTheLoop([&] { stage->Layer().Queue().PostQuitMessage(0); });
  host.Call("Scan");
  EXPECT_EQ(Size(), "0x0") << "no image was ready";
  host.Call("Scan");
  EXPECT_EQ(Size(), "413x585");
}

// Resident memory in pages; 0 where that cannot be told.
long ResidentPages() {
  std::ifstream file("/proc/self/statm");
  long size = 0, resident = 0;
  file >> size >> resident;
  return resident;
}

TEST_F(Scan, AThousandTimesLeavesMemoryAndHandlesWhereTheyWere) {
  host.Put("ColorType", Long{twBlackWhite});
  stage->Layer().Sources().Glass().PutPage(Dib::Zeroed({.width = 1, .height = 1, .depth = 24}));
  const auto scan = [&](int times) {
    for (int i = 0; i < times; ++i) host.Call("Scan");
  };
  scan(50);
  const CensusCounts census = host.platform.Census();
  [[maybe_unused]] const long before = ResidentPages();
  scan(950);
  EXPECT_EQ(host.platform.Census(), census);
#ifndef __SANITIZE_ADDRESS__  // which keeps freed memory for a while
  constexpr long kAFewPages = 500;
  EXPECT_LT(ResidentPages() - before, kAFewPages);
#endif
}

}  // namespace
}  // namespace quillet
