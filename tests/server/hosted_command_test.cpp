#include <gtest/gtest.h>

#include "host/win32_ocx_sinks.h"
#include "platform/win32/text.h"
#include "tests/server/control_library.h"
#include "tests/support/bmp_file.h"
#include "tests/support/run_command.h"
#include "tests/support/temporary_folder.h"

// The command as the host of quillet.ocx. That its steps do there what they do with the core, the
// acceptance scripts show.

namespace quillet {
namespace {

class HostedCommand : public ::testing::Test {
 protected:
  HostedCommand() {
    BmpFile file{.width = 60, .height = 40};
    file.PackPixels([](Long x, Long y) { return static_cast<std::uint32_t>(x * 7 + y * 31); });
    m_picture = "Picture=" + m_folder.Write("page.bmp", file.Bytes());
  }

  Outcome Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--leaks", "--view", "30x30", "--ocx"});
    arguments.insert(arguments.begin() + 4, Utf8(OcxPath()));
    return Quillet(arguments);
  }

  TemporaryFolder m_folder;
  std::string m_picture;
};

TEST_F(HostedCommand, LetsGoOfTheControlInsideItsEvents) {
  const struct {
    const char* event;
    std::vector<std::string> steps;
  } kCases[] = {
      {"Progress", {m_picture, "Flip"}},
      {"Paint", {m_picture}},
      {"Resize", {m_picture, "@resize:50x60"}},
      {"Scroll", {m_picture, "@scroll:v,5"}},
      {"Click", {m_picture, "@mouse:click,5,5"}},
      {"DblClick", {m_picture, "@mouse:dblclick,5,5"}},
      {"MouseDown", {m_picture, "@mouse:down,5,5"}},
      {"MouseMove", {m_picture, "@mouse:move,5,5"}},
      {"MouseUp", {m_picture, "@mouse:click,5,5"}},
      {"KeyDown", {m_picture, "@key:down,65"}},
      {"KeyPress", {m_picture, "@key:press,65"}},
      {"KeyUp", {m_picture, "@key:up,65"}},
  };
  for (const auto& [event, steps] : kCases) {
    std::vector<std::string> arguments = {"--events", "--on", std::string(event) + "=@close"};
    arguments.insert(arguments.end(), steps.begin(), steps.end());
    arguments.push_back("Quality");
    const Outcome outcome = Run(arguments);
    EXPECT_NE(outcome.out.find(std::string("event ") + event), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.err.find("the control is gone"), std::string::npos) << event;
    EXPECT_NE(outcome.out.find("leaks: none\n"), std::string::npos) << event << outcome.out;
  }
}

TEST_F(HostedCommand, SettingsThatDoNotFitLeaveAControlThatCanBeUsed) {
  const std::string settings = m_folder.Path("settings.txt");
  const std::string text = "Quality = 90\nResolution = \"x\"\n";
  m_folder.Write("settings.txt", std::vector<Byte>(text.begin(), text.end()));
  const Outcome outcome = Run({"--keep-going", "@load-properties:" + settings, "Resolution",
                               "@close", "@save-properties:" + settings});
  EXPECT_EQ(outcome.out, "75\nleaks: none\n");
  EXPECT_NE(outcome.err.find("run-time error 13: Type mismatch"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("the control is gone"), std::string::npos) << outcome.err;
}

TEST_F(HostedCommand, TheBorderComesOnTopOfTheSmallestInsideToo) {
  const Outcome outcome =
      Quillet({"--ocx", Utf8(OcxPath()), "--view", "0x0", "@resize:50x40", "@layout"});
  EXPECT_TRUE(outcome.out.starts_with("picTwain 0 0 750 600 50x40\n")) << outcome.out;
}

TEST_F(HostedCommand, TellsWhatCannotBeHosted) {
  const struct {
    std::string file, reason;
  } kCases[] = {
      {m_folder.Path("none.ocx"), "there is no such file"},
      {m_folder.Path(""), "there is no such file"},
      {m_folder.Path("page.bmp"), "cannot be loaded by a "},
      {"kernel32.dll", "there is no such file"},
      {Utf8(OcxPath()) + "\\..\\..\\tests\\second_copy.dll", "holds no control"},
      {"C:\\windows\\system32\\atl.dll", "holds no control"},  // but other classes
  };
  for (const auto& [file, reason] : kCases) {
    const Outcome outcome = Quillet({"--ocx", file, "Quality"});
    EXPECT_TRUE(outcome.err.starts_with("quillet: --ocx " + file + ": " + reason)) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.status, 2);
  }
}

class Changing : public EventSink {
 public:
  void Invoke(Event, std::span<Variant> arguments) override {
    for (Variant& argument : arguments) argument = VariantToInteger(argument) + 100;
  }
};

TEST(OcxEventSink, GivesBackWhatTheHostLeavesInByReferenceArguments) {
  const auto sink = MakeCounted<OcxEventSink>(std::make_shared<Changing>());
  SHORT button = 1, shift = 2;
  FLOAT x = 3, y = 4;
  VARIANTARG arguments[4] = {};  // last to first
  arguments[0].vt = arguments[1].vt = VT_BYREF | VT_R4;
  arguments[0].pfltVal = &y;
  arguments[1].pfltVal = &x;
  arguments[2].vt = arguments[3].vt = VT_BYREF | VT_I2;
  arguments[2].piVal = &shift;
  arguments[3].piVal = &button;
  const auto raise = [&](Event event, UINT count) {
    DISPPARAMS parameters{arguments, nullptr, count, 0};
    return sink->Invoke(static_cast<DISPID>(event), IID_NULL, 0, DISPATCH_METHOD, &parameters,
                        nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(raise(Event::MouseDown, 4), S_OK);
  EXPECT_EQ(button, 101);
  EXPECT_EQ(shift, 102);
  EXPECT_EQ(x, 103.0f);
  EXPECT_EQ(y, 104.0f);
  EXPECT_EQ(raise(Event::MouseDown, 3), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(raise(Event{99}, 0), DISP_E_MEMBERNOTFOUND);
}

}  // namespace
}  // namespace quillet
