#include <gtest/gtest.h>

#include <vector>

#include "tests/support/bmp_file.h"
#include "tests/support/environment_variable.h"
#include "tests/support/run_command.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

// The scanner as the command's user meets it, with a state folder of its own.
class ScanCommand : public testing::Test {
 protected:
  TemporaryFolder folder;
  EnvironmentVariable state{"XDG_STATE_HOME", folder.Path("state")};
  EnvironmentVariable temporaryFolder{kTemporaryFolder, folder.Path("")};
};

TEST_F(ScanCommand, TracesTheWholeRoad) {
  const Outcome outcome =
      Quillet({"--trace", "--leaks", "ShowProgress=False", "Resolution=50", "Scan:Title"});
  EXPECT_EQ(outcome.out, R"(DG_CONTROL DAT_PARENT MSG_OPENDSM "Title" -> TWRC_SUCCESS
DG_CONTROL DAT_IDENTITY MSG_OPENDS -> TWRC_SUCCESS "Flatbed"
DG_CONTROL DAT_CAPABILITY MSG_SET CAP_INDICATORS BOOL False -> TWRC_SUCCESS
DG_CONTROL DAT_CAPABILITY MSG_GET CAP_UICONTROLLABLE -> TWRC_SUCCESS BOOL True
DG_CONTROL DAT_CAPABILITY MSG_GET ICAP_PHYSICALWIDTH -> TWRC_SUCCESS FIX32 8.2677
DG_CONTROL DAT_CAPABILITY MSG_GET ICAP_PHYSICALHEIGHT -> TWRC_SUCCESS FIX32 11.6929
DG_IMAGE DAT_IMAGELAYOUT MSG_SET 0.0 0.0 8.2677 11.6929 -> TWRC_SUCCESS
DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_XRESOLUTION FIX32 50.0 -> TWRC_SUCCESS
DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_YRESOLUTION FIX32 50.0 -> TWRC_SUCCESS
DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_PIXELTYPE UINT16 2 -> TWRC_SUCCESS
DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_BITDEPTH UINT16 24 -> TWRC_SUCCESS
DG_CONTROL DAT_CAPABILITY MSG_SET CAP_XFERCOUNT INT16 1 -> TWRC_SUCCESS
DG_CONTROL DAT_USERINTERFACE MSG_ENABLEDS ShowUI 0 ModalUI 1 -> TWRC_SUCCESS
DG_CONTROL DAT_EVENT MSG_PROCESSEVENT 0xC1A0 -> TWRC_DSEVENT MSG_XFERREADY
DG_IMAGE DAT_IMAGENATIVEXFER MSG_GET -> TWRC_XFERDONE 413x585 24 bits
DG_CONTROL DAT_PENDINGXFERS MSG_ENDXFER -> TWRC_SUCCESS Count 0
DG_CONTROL DAT_USERINTERFACE MSG_DISABLEDS ShowUI 0 ModalUI 1 -> TWRC_SUCCESS
DG_CONTROL DAT_IDENTITY MSG_CLOSEDS "Flatbed" -> TWRC_SUCCESS
DG_CONTROL DAT_PARENT MSG_CLOSEDSM -> TWRC_SUCCESS
leaks: none
)");
}

TEST_F(ScanCommand, TheUserActsOnDialogsAsWasSaid) {
  const Outcome outcome = Quillet({"ShowInterface=True", "Scan", "Picture", "@source:scan", "Scan",
                                   "Picture", "@source:cancel", "Scan", "Picture", "--leaks"});
  EXPECT_EQ(outcome.out, "0x0\n620x877\n620x877\nleaks: none\n");
}

TEST_F(ScanCommand, AChosenSourceIsTheNextRunsToo) {
  EXPECT_EQ(Quillet({"@choose:panel", "SelectSource", "Scan", "Picture"}).out, "827x1169\n");
  EXPECT_EQ(Quillet({"SelectSource", "Scan", "Picture"}).out, "827x1169\n");
  EXPECT_EQ(Quillet({"--source", "Flatbed", "Scan", "Picture"}).out, "620x877\n");
  EXPECT_EQ(Quillet({"Scan", "Picture"}).out, "827x1169\n");
}

TEST_F(ScanCommand, ASourceThatIsNotThereIsWrongUsage) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--source", "Nobody", "Quality"}, {"@choose:Nobody", "Quality"}}) {
    const Outcome outcome = Quillet(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments[0];
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find("there is no source Nobody"), std::string::npos) << outcome.err;
  }
}

TEST_F(ScanCommand, EverySourceDoesWhatTheListSays) {
  const std::string list = Quillet({"--list-sources"}).out;
  for (const char* name : {"Flatbed", "Panel", "Camera", "Feeder"}) {
    EXPECT_NE(list.find(name), std::string::npos);
    const Outcome outcome = Quillet({"--source", name, "Scan", "Picture", "--leaks"});
    EXPECT_NE(outcome.out.find("x"), std::string::npos) << name;
    EXPECT_EQ(outcome.out.find("0x0"), std::string::npos) << name;
    EXPECT_NE(outcome.out.find("leaks: none"), std::string::npos) << name;
  }
  EXPECT_EQ(Quillet({"--source", "Assistant", "Scan", "Picture"}).out, "0x0\n");
  EXPECT_EQ(Quillet({"--source", "Assistant", "@source:scan", "Scan", "Picture"}).out, "620x877\n");
}

TEST_F(ScanCommand, FaultsAnswerAndLeaveNothing) {
  const struct {
    const char* fault;
    const char* picture;
  } cases[] = {
      {"DAT_CAPABILITY/MSG_SET/ICAP_YRESOLUTION=TWRC_FAILURE", "0x0"},
      {"DAT_CAPABILITY/MSG_SET/ICAP_BITDEPTH=TWRC_FAILURE", "620x877"},
      {"DAT_CAPABILITY/MSG_GET=TWRC_SUCCESS", "827x1169"},  // a container that is not there
      {"DAT_USERINTERFACE/MSG_DISABLEDS=TWRC_FAILURE", "620x877"},
      {"DAT_USERINTERFACE/MSG_ENABLEDS=TWRC_SUCCESS", "0x0"},
      {"DAT_IMAGENATIVEXFER/MSG_GET=TWRC_XFERDONE", "0x0"},
      {"DAT_PARENT/MSG_CLOSEDSM=TWRC_FAILURE", "620x877"},
  };
  for (const auto& [fault, picture] : cases) {
    // Twice: the first conversation does not stand in the way of the second.
    const Outcome outcome =
        Quillet({"--fault", fault, "Scan", "Picture", "Scan", "Picture", "--leaks"});
    EXPECT_EQ(outcome.out, std::string(picture) + "\n" + picture + "\n" + "leaks: none\n") << fault;
    EXPECT_EQ(outcome.status, 0) << fault;
  }
}

TEST_F(ScanCommand, WithoutAManagerTheCallFails) {
  const Outcome outcome = Quillet({"--no-manager", "--trace", "--leaks", "Scan"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(outcome.err.starts_with("quillet: Scan: run-time error 53: "));
  EXPECT_EQ(outcome.out,
            "DG_CONTROL DAT_PARENT MSG_OPENDSM \"Corvane Twain ActiveX\" -> run-time error 53\n"
            "leaks: none\n");
}

TEST_F(ScanCommand, APageFromAFileLiesOnTheGlass) {
  BmpFile file{.width = 30, .height = 20, .xPelsPerMeter = 1969, .yPelsPerMeter = 1969};
  file.PackPixels([](Long x, Long y) { return static_cast<std::uint32_t>(x * 7 + y * 31); });
  const std::string page = folder.Write("page.bmp", file.Bytes());
  const Outcome outcome = Quillet({"--page", page, "Resolution=50", "Scan", "Picture", "--leaks"});
  EXPECT_EQ(outcome.out, "413x585\nleaks: none\n") << outcome.err;

  const Outcome missing = Quillet({"--page", folder.Path("none.bmp"), "Scan"});
  EXPECT_EQ(missing.status, 2);
  EXPECT_NE(missing.err.find("run-time error 53"), std::string::npos);
  EXPECT_EQ(missing.out, "");
}

TEST_F(ScanCommand, TheHostGoesOnPaintingAndStepsRunInsideTheLoop) {
  const Outcome outcome =
      Quillet({"--events", "--trace", "Resolution=50", "--on", "KeyPress=BackColor=0", "--on",
               "KeyPress=Scan", "--on", "Paint=Resolution", "@key:press,65", "Picture"});
  const std::size_t enabled = outcome.out.find("MSG_ENABLEDS");
  const std::size_t ready = outcome.out.find("MSG_XFERREADY");
  ASSERT_NE(ready, std::string::npos);
  const std::string inside = outcome.out.substr(enabled, ready - enabled);
  EXPECT_NE(inside.find("event Paint\n50\n"), std::string::npos) << outcome.out;
}

}  // namespace
}  // namespace quillet
