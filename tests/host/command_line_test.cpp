#include "host/command_line.h"

#include <gtest/gtest.h>

#include <sstream>

namespace quillet {
namespace {

CommandLine Parse(std::vector<std::string> arguments, const std::string& input = "") {
  std::istringstream in(input);
  return ParseCommandLine(arguments, in);
}

std::string StepsOf(const CommandLine& commandLine) {
  std::string text;
  for (const Step& step : commandLine.steps) text += "[" + step.text + "]";
  return text;
}

TEST(CommandLine, TakesOptionsAnywhereAmongTheSteps) {
  const CommandLine line =
      Parse({"Flip", "--view", "32x20", "--events", "Quality=5", "--on=click=Flip", "--leaks"});
  EXPECT_TRUE(line.errors.empty());
  EXPECT_EQ(line.view.width, 32);
  EXPECT_EQ(line.view.height, 20);
  EXPECT_TRUE(line.events && line.leaks);
  EXPECT_FALSE(line.byRef || line.keepGoing || line.help);
  EXPECT_EQ(StepsOf(line), "[Flip][Quality=5]");
  ASSERT_EQ(line.eventSteps.size(), 1u);
  EXPECT_EQ(line.eventSteps[0].event, Event::Click);
  EXPECT_EQ(line.eventSteps[0].step.text, "Flip");
}

TEST(CommandLine, RunsTheStepsOfAFileWhereItsOptionStands) {
  const CommandLine line =
      Parse({"Flip", "--steps", "-", "Rotate"},
            "\xEF\xBB\xBF# a comment\n\n  \t\r\n  Reverse\r\n#\nToolTipText= x ");
  EXPECT_TRUE(line.errors.empty());
  EXPECT_EQ(StepsOf(line), "[Flip][Reverse][ToolTipText= x ][Rotate]");
}

TEST(CommandLine, FindsEveryErrorAndWhereItStands) {
  const CommandLine line =
      Parse({"Nonsense", "--bogus", "--events=1", "--view", "8", "--on", "Flip", "--on",
             "Boom=Flip", "--on", "Click=Nonsense", "--steps", "-", "--steps", "/nowhere/steps",
             "Picture=@none", "Flip", "--view"},
            "Flip\nhDC=1\n");
  const char* const beginnings[] = {
      "Nonsense: ",       "--bogus: ",      "--events=1: ",
      "--view: ",         "--on: ",         "--on: ",
      "Click=Nonsense: ", "-:2: hDC=1: ",   "--steps: cannot read /nowhere/steps: No such file",
      "--view: ",         "Picture=@none: "};
  ASSERT_EQ(line.errors.size(), std::size(beginnings));
  for (std::size_t i = 0; i < line.errors.size(); ++i)
    EXPECT_TRUE(line.errors[i].starts_with(beginnings[i])) << line.errors[i];
}

TEST(CommandLine, APictureMayBeKeptByAnyStepThatRuns) {
  EXPECT_TRUE(Parse({"Picture=@A", "--on", "Click=@keep:a"}).errors.empty());
  EXPECT_FALSE(Parse({"@keep:a", "Compare:@b"}).errors.empty());
  EXPECT_TRUE(Parse({"filename=@b", "Scan:@b"}).errors.empty());
}

TEST(CommandLine, DescribesTheScannerAndItsFaults) {
  const CommandLine line =
      Parse({"--source", "feeder", "--page=a.bmp", "--fault",
             "dat_capability/MSG_SET/icap_xresolution=twrc_failure",
             "--fault=DAT_IDENTITY/MSG_OPENDS=TWRC_CANCEL", "--no-manager", "--trace"});
  EXPECT_TRUE(line.errors.empty());
  EXPECT_EQ(line.source, "feeder");
  EXPECT_EQ(line.page, "a.bmp");
  EXPECT_TRUE(line.noManager && line.trace);
  ASSERT_EQ(line.faults.size(), 2u);
  EXPECT_EQ(line.faults[0].capability, ICAP_XRESOLUTION);
  EXPECT_EQ(line.faults[0].returnCode, TWRC_FAILURE);
  EXPECT_EQ(line.faults[1].argumentType, DAT_IDENTITY);
  EXPECT_EQ(line.faults[1].message, MSG_OPENDS);
  EXPECT_FALSE(line.faults[1].capability);
  for (const char* fault :
       {"", "DAT_IDENTITY=TWRC_CANCEL", "DAT_IDENTITY/MSG_OPENDS", "DAT_NONE/MSG_SET=TWRC_CANCEL",
        "DAT_IDENTITY/MSG_SET=3", "DAT_IDENTITY/MSG_SET/CAP_XFERCOUNT=TWRC_CANCEL",
        "DAT_CAPABILITY/MSG_SET/=TWRC_CANCEL"})
    EXPECT_EQ(Parse({"--fault", fault}).errors.size(), 1u) << fault;
  EXPECT_FALSE(Parse({"--page", ""}).errors.empty());
}

TEST(CommandLine, AControlInAFileIsKnownFromOutsideOnly) {
  EXPECT_EQ(Parse({"--ocx", "a.ocx", "Flip"}).ocx, "a.ocx");
  EXPECT_TRUE(Parse({"--registered", "Flip"}).registered);
  const CommandLine line = Parse({"--ocx=a.ocx", "--registered", "--trace", "--fault",
                                  "DAT_IDENTITY/MSG_OPENDS=TWRC_FAILURE", "about", "@web", "--on",
                                  "Click=@ok", "--ocx", ""});
  const char* const beginnings[] = {
      "--ocx: ", "--registered: ", "--trace: ", "--fault: ", "about: ", "@web: ", "@ok: "};
  ASSERT_EQ(line.errors.size(), std::size(beginnings));
  for (std::size_t i = 0; i < line.errors.size(); ++i)
    EXPECT_TRUE(line.errors[i].starts_with(beginnings[i])) << line.errors[i];
  EXPECT_TRUE(Parse({"--trace", "About", "@ok"}).errors.empty());
}

TEST(CommandLine, NothingToDoIsWrongUsage) {
  EXPECT_FALSE(Parse({}).errors.empty());
  EXPECT_TRUE(Parse({"--leaks"}).errors.empty());
  EXPECT_FALSE(Parse({"--steps", "/"}).errors.empty());
}

}  // namespace
}  // namespace quillet
