#include "host/command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <vector>

#include "control/dispatch.h"
#include "tests/support/bmp_file.h"
#include "tests/support/run_command.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

// The path of a new 24-bit BMP file of that size.
std::string PictureFile(const TemporaryFolder& folder, Long width, Long height) {
  BmpFile file{.width = width, .height = height};
  file.PackPixels([](Long x, Long y) { return static_cast<std::uint32_t>(x * 7 + y * 31); });
  return folder.Write("picture.bmp", file.Bytes());
}

// Empty when there is no such file.
std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Command, PrintsWhatIsReadAndNothingElse) {
  const Outcome outcome =
      Quillet({"Quality=90", "Quality", "enabled", "Picture", "Picture=", "Picture", "MouseIcon",
               "FileType=twtiff", "FileType", "BackColor=&H80000005", "BackColor", "Refresh",
               "ToolTipText=a\nb\\", "ToolTipText"});
  EXPECT_EQ(outcome.out, "90\nTrue\n0x0\nNothing\nNothing\n3\n-2147483643\na\\nb\\\\\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Command, AModalWindowTakesTheMouseFromTheBox) {
  const Outcome outcome = Quillet({"--view", "100x100", "--events", "@mouse:down,5,5", "About",
                                   "@mouse:up,5,5", "@ok", "@mouse:move,500,500"});
  EXPECT_NE(outcome.out.find("MouseDown"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.out.find("MouseUp"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.out.find("MouseMove"), std::string::npos) << outcome.out;
}

TEST(Command, StepsGoOnInsideTheAboutWindowUntilItIsClosed) {
  const Outcome outcome =
      Quillet({"About", "@web", "Quality=90", "@web", "About", "@ok", "Quality", "About"});
  EXPECT_EQ(outcome.out,
            "opens https://quillet.example.com\nopens https://quillet.example.com\n90\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);

  const Outcome failed = Quillet({"About", "Quality=x", "Quality"});
  EXPECT_EQ(failed.err,
            "quillet: Quality=x: run-time error 13: Type mismatch (\"x\" where an Integer is "
            "expected)\n");
  EXPECT_EQ(failed.out, "");
  EXPECT_EQ(failed.status, 1);
  EXPECT_EQ(Quillet({"@ok"}).err, "quillet: @ok: no form is open\n");
}

TEST(Command, SettingsPassFromRunToRunInAPropertyFile) {
  const TemporaryFolder folder;
  const std::string file = folder.Path("settings.txt");
  const Outcome saved = Quillet(
      {"Quality=90", "filename=a.tif", "Enabled=False", "Picture=", "@save-properties:" + file});
  EXPECT_EQ(saved.err, "");
  const Outcome loaded = Quillet(
      {"@load-properties:" + file, "Quality", "Resolution", "filename", "Enabled", "BitmapWidth"});
  EXPECT_EQ(loaded.out, "90\n75\na.tif\nFalse\n0\n");

  const struct {
    std::string text, error;
  } cases[] = {{"Quality = \"abc\"", "run-time error 13: "},
               {"Quality = 70000", "run-time error 6: "},
               {"Enabled = False\nQuality", file + ", line 2: it is written KEY = VALUE"}};
  for (const auto& [text, error] : cases) {
    folder.Write("settings.txt", std::vector<Byte>(text.begin(), text.end()));
    const Outcome refused = Quillet({"@load-properties:" + file, "Quality"});
    EXPECT_NE(refused.err.find(error), std::string::npos) << refused.err;
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
  }
  EXPECT_EQ(Quillet({"Flip", "@load-properties:" + file}).status, 2);
  EXPECT_EQ(Quillet({"--on", "Click=@load-properties:" + file, "Flip"}).status, 2);
}

TEST(Command, AFailedStepEndsTheRunUnlessItIsToKeepGoing) {
  const std::string error = "quillet: Quality=70000: run-time error 6: Overflow\n";
  const Outcome ended = Quillet({"Quality=70000", "Quality"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err, error);
  const Outcome kept = Quillet({"Quality=70000", "--keep-going", "Quality"});
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(kept.out, "70\n");
  EXPECT_EQ(kept.err, error);
}

TEST(Command, ErrorsCarryTheNumbersThatHostsKnow) {
  const TemporaryFolder folder;
  const std::string text = folder.Write("text", std::vector<Byte>(100, 'x'));
  const struct {
    std::string step;
    const char* number;
  } cases[] = {
      {"Quality=abc", "13"},      {"Fit:twRGB", "13"},        {"BorderStyle=7", "380"},
      {"Crop:1,2,3", "450"},      {"Zoom:", "450"},           {"Flip:", "450"},
      {"Picture=none.bmp", "53"}, {"Picture=" + text, "481"},
  };
  for (const auto& [step, number] : cases) {
    const Outcome outcome = Quillet({step});
    EXPECT_EQ(outcome.status, 1) << step;
    EXPECT_TRUE(outcome.err.starts_with("quillet: " + step + ": run-time error " + number + ": "))
        << outcome.err;
  }
}

TEST(Command, WrongUsageIsFoundBeforeAnythingRuns) {
  const TemporaryFolder folder;
  const std::string snapshot = folder.Path("a.png");
  const Outcome outcome = Quillet({"@snapshot:" + snapshot, "Nonsense", "--bogus"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("quillet: Nonsense: "), std::string::npos);
  EXPECT_NE(outcome.err.find("quillet: --bogus: "), std::string::npos);
  EXPECT_EQ(Content(snapshot), "");
}

TEST(Command, TellsEventsAndNotificationsAsTheyCome) {
  const TemporaryFolder folder;
  const std::string picture = PictureFile(folder, 3, 2);
  const Outcome outcome = Quillet(
      {"--events", "filename=x", "AutoRedraw=False", "Picture=" + picture, "Flip", "filename"});
  EXPECT_EQ(outcome.out,
            "event Paint\nnotify Filename\nnotify AutoRedraw\nnotify Picture\n"
            "event Progress 0\nevent Progress 100\nx\n");
}

TEST(Command, AStepInsideAnEventRunsThereButNotInsideItsOwnEvents) {
  const TemporaryFolder folder;
  const std::string picture = PictureFile(folder, 3, 2);
  const Outcome outcome = Quillet({"Picture=" + picture, "--on", "Progress=Flip", "--on",
                                   "Progress=Quality", "Flip", "Resolution"});
  // Each of the outer two rows flips once more, and the second step sees those rows too.
  EXPECT_EQ(outcome.out, "70\n70\n70\n70\n70\n70\n75\n");
}

TEST(Command, AFailureInsideAnEventEndsTheRunAfterTheStepThatRaisedIt) {
  const TemporaryFolder folder;
  const std::string picture = PictureFile(folder, 3, 2);
  const Outcome outcome =
      Quillet({"Picture=" + picture, "--on", "Progress=Quality=x", "Flip", "Resolution"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err.find("quillet: Quality=x: run-time error 13: "), 0u);
  EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1);
}

TEST(Command, TheHostMayCloseTheWindowInsideAnEvent) {
  const TemporaryFolder folder;
  const std::string picture = PictureFile(folder, 200, 150);
  const struct {
    const char* event;
    std::vector<std::string> causes;
  } cases[] = {{"Progress", {"Flip"}},
               {"Resize", {"@resize:90x90"}},
               {"Scroll", {"@scroll:h,20"}},
               {"Click", {"@mouse:click,5,5"}},
               {"DblClick", {"@mouse:dblclick,5,5"}},
               {"KeyDown", {"@key:down,40"}},
               {"MouseMove", {"@mouse:move,5,5"}}};
  for (const auto& c : cases) {
    std::vector<std::string> arguments{"--leaks", "--view", "100x100", "Picture=" + picture,
                                       "@keep:p"};
    arguments.insert(arguments.end(), c.causes.begin(), c.causes.end());
    arguments.insert(arguments.end(), {"--on", std::string(c.event).append("=@close")});
    const Outcome outcome = Quillet(arguments);
    EXPECT_EQ(outcome.out, "leaks: none\n") << c.event;
    EXPECT_EQ(outcome.status, 0) << c.event << outcome.err;
  }
  const Outcome gone = Quillet({"@close", "--keep-going", "Quality", "@layout"});
  EXPECT_EQ(gone.status, 1);
  EXPECT_EQ(gone.err,
            "quillet: Quality: the control is gone\nquillet: @layout: the control is gone\n");
}

TEST(Command, AKeptPictureStaysWhatItWas) {
  const TemporaryFolder folder;
  const std::string picture = PictureFile(folder, 5, 2);
  const Outcome outcome = Quillet({"Picture=" + picture, "@keep:Before", "Rotate", "Picture",
                                   "Picture=@before", "Picture", "--leaks"});
  EXPECT_EQ(outcome.out, "2x5\n5x2\nleaks: none\n");
  EXPECT_EQ(outcome.status, 0);
  const Outcome tooEarly = Quillet({"Picture=@a", "@keep:a"});
  EXPECT_EQ(tooEarly.status, 1);
  EXPECT_EQ(tooEarly.err, "quillet: Picture=@a: nothing is kept as a yet\n");
}

TEST(Command, ScrollBarsAndLayoutFollowTheHand) {
  const TemporaryFolder folder;
  const std::string picture = PictureFile(folder, 200, 50);
  const Outcome outcome =
      Quillet({"--view", "100x80", "Picture=" + picture, "@layout", "@scroll:h,30", "@page:h,+",
               "@arrow:h,-", "@layout", "@resize:300x80", "@layout"});
  EXPECT_EQ(outcome.out,
            "picTwain 0 0 1500 945 100x63\n"
            "HScroll1 0 945 1530 255 True 0 100 0\n"
            "VScroll1 1500 0 0 975 False 0 -13 0\n"
            "picTwain 0 0 1500 945 100x63\n"
            "HScroll1 0 945 1530 255 True 0 100 90\n"
            "VScroll1 1500 0 0 975 False 0 -13 0\n"
            "picTwain 0 0 4500 1200 300x80\n"
            "HScroll1 0 1200 4530 255 False 0 -100 0\n"
            "VScroll1 4500 0 0 1230 False 0 -30 0\n");
}

TEST(Command, ASnapshotIsThePngOfTheWholeControl) {
  const TemporaryFolder folder;
  const std::string file = folder.Path("a.png");
  const Outcome outcome = Quillet({"--view", "60x300", "@snapshot:" + file});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  const std::string png = Content(file);
  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
  // Inside and 4 pixels of border.
  EXPECT_EQ(png.substr(16, 8), std::string("\0\0\0\x40\0\0\x01\x30", 8));

  const Outcome unwritable = Quillet({"@snapshot:/nowhere/a.png"});
  EXPECT_EQ(unwritable.status, 1);
  EXPECT_EQ(unwritable.err,
            "quillet: @snapshot:/nowhere/a.png: cannot write /nowhere/a.png: "
            "No such file or directory\n");
}

TEST(Command, LeavesNothingBehind) {
  const TemporaryFolder folder;
  const std::string picture = PictureFile(folder, 200, 150);
  const Outcome outcome =
      Quillet({"--leaks", "--view", "50x50", "Picture=" + picture, "MouseIcon=" + picture,
               "@keep:a", "--on", "Scroll=@keep:b", "@scroll:v,20", "Zoom:50", "Fit", "Zoom:0"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "leaks: none\n");
}

TEST(Command, SaysByItsStatusThatNothingWasSaved) {
  const TemporaryFolder folder;
  const std::string file = "filename=" + folder.Path("a.png");
  for (const char* const step : {"Save", "SaveAdd:"}) {
    const Outcome outcome = Quillet({file, step, "Quality"});
    EXPECT_EQ(outcome.status, 3) << step;
    EXPECT_TRUE(outcome.out.ends_with("\n70\n")) << outcome.out;
    EXPECT_NE(outcome.out, "0\n70\n");
    EXPECT_EQ(Quillet({file, step, "Quality=x"}).status, 1) << step;
  }
}

TEST(Command, AnswersWithoutRunningAnything) {
  const Outcome help = Quillet({"--help", "--bogus", "Nonsense"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.out.find("Usage: quillet"), 0u);
  EXPECT_EQ(Quillet({"--version", "Quality"}).out.find("quillet "), 0u);
  EXPECT_EQ(Quillet({"--version", "--bogus"}).status, 2);

  const std::string table = Quillet({"--members", "Quality"}).out;
  EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(table, '\n')), Members().size() + 2);
  EXPECT_NE(table.find("| 0x60030028 | Fit "), std::string::npos);
  EXPECT_NE(table.find(" [iType As FIT_TYPE = 1] "), std::string::npos);
  EXPECT_NE(table.find(" ByRef ComparePic As Picture -> Boolean "), std::string::npos);
}

}  // namespace
}  // namespace quillet
