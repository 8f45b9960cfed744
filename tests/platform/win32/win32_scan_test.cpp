#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "base/runtime_error.h"
#include "platform/win32/win32_source_manager.h"
#include "tests/support/environment_variable.h"
#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"
#include "tests/support/print_census.h"
#include "tests/support/run_command.h"
#include "tests/support/temporary_folder.h"
#include "tests/windows/program_folder.h"
#include "tests/windows/test_page.h"
#include "tests/windows/wine.h"

namespace quillet {
namespace {

// The system's manager under Wine, where the test source stands in place of the scanners that it
// would look for.
class SystemsManager : public testing::Test {
 protected:
  void SetUp() override {
    if (!IsWine()) GTEST_SKIP() << "the sources of a real machine are its owner's";
  }
  void TearDown() override {
    std::ifstream log(m_folder.Path("log"));
    const std::string complaints{std::istreambuf_iterator<char>(log), {}};
    EXPECT_EQ(complaints, "") << "what the source was asked out of order";
  }

  static Pixel Expected(const TestPage& page, Long x, Long y) {
    if (page.Depth() == 24) return {page.Blue(x, y), page.Green(x, y), page.Red(x, y)};
    const Byte gray = page.Depth() == 8 ? page.Gray(x, y) : page.IsWhite(x, y) ? 255 : 0;
    return {gray, gray, gray};
  }
  static void ExpectPage(HostedControl& host, const TestPage& page) {
    const PixelRows24 rows = PixelsOf(host.contracts, host.Picture());
    EXPECT_EQ(rows, RowsOf(page.Width(), page.Height(),
                           [&](Long x, Long y) { return Expected(page, x, y); }));
  }

  TemporaryFolder m_folder;
  EnvironmentVariable m_log{"QUILLET_TEST_SOURCE_LOG", m_folder.Path("log")};
};

TEST_F(SystemsManager, ScansThePageInEveryColourTypeAndTellsNothing) {
  HostedControl host(300, 200);
  const CensusCounts before = host.platform.Census();
  for (const TW_UINT16 type : {TWPT_RGB, TWPT_GRAY, TWPT_BW}) {
    const TestPage page{type == TWPT_BW ? 75 : 60, type};
    host.Put("Resolution", static_cast<Integer>(page.resolution));
    host.Put("ColorType", Long{type});
    host.TakeLog();
    host.Call("Scan", std::string("A title"));
    ExpectPage(host, page);
    EXPECT_EQ(host.Number("BitmapWidth"), page.Width());
    for (const std::string& line : host.TakeLog()) EXPECT_FALSE(line.starts_with("notify")) << line;
    const PixelRows24 screen = host.Screen();
    EXPECT_EQ(screen.At(37, 41), Expected(page, 37, 41)) << "shown at its own size";
  }
  EXPECT_EQ(host.platform.Census().windows, before.windows);
  EXPECT_EQ(host.platform.Census().globalBlocks, 0);
}

TEST_F(SystemsManager, AnImageIsReadyByWhicheverWayTheSourceSaysSo) {
  for (const char* const way : {"posted", "told", "window", "left"}) {
    SCOPED_TRACE(way);
    const EnvironmentVariable chosen("QUILLET_TEST_SOURCE", way);
    HostedControl host(300, 200);
    host.Put("ShowInterface", true);
    host.Put("Resolution", Integer{50});
    host.Call("Scan");
    ExpectPage(host, {50, TWPT_RGB});
    EXPECT_EQ(::FindWindowW(nullptr, L"Test source"), nullptr);
    EXPECT_EQ(::FindWindowW(nullptr, L"TWAIN_MSG_WINDOW"), nullptr);
  }
}

TEST_F(SystemsManager, AClosedSourceLeavesThePicture) {
  HostedControl host(300, 200);
  host.Assign(30, 20);
  const PictureRef picture = host.Picture();
  const EnvironmentVariable way("QUILLET_TEST_SOURCE", "closed");
  host.Call("Scan");
  EXPECT_EQ(host.Picture(), picture);
}

TEST_F(SystemsManager, TheRoadIsTheOneOfEveryPlatform) {
  const Outcome outcome =
      Quillet({"--trace", "--leaks", "ShowProgress=False", "Resolution=50", "Scan:Title"});
  EXPECT_EQ(outcome.status, 0);
  std::istringstream lines(outcome.out);
  std::string road, line;
  while (std::getline(lines, line))
    if (line.find("MSG_PROCESSEVENT") == std::string::npos ||
        line.find("MSG_XFERREADY") != std::string::npos)
      road += line.substr(0, line.find(" -> ")).substr(0, line.find(" MSG_PROCESSEVENT")) + "\n";
  EXPECT_EQ(road, R"(DG_CONTROL DAT_PARENT MSG_OPENDSM "Title"
DG_CONTROL DAT_IDENTITY MSG_OPENDS
DG_CONTROL DAT_CAPABILITY MSG_SET CAP_INDICATORS BOOL False
DG_CONTROL DAT_CAPABILITY MSG_GET CAP_UICONTROLLABLE
DG_CONTROL DAT_CAPABILITY MSG_GET ICAP_PHYSICALWIDTH
DG_CONTROL DAT_CAPABILITY MSG_GET ICAP_PHYSICALHEIGHT
DG_IMAGE DAT_IMAGELAYOUT MSG_SET 0.0 0.0 4.0 3.0
DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_XRESOLUTION FIX32 50.0
DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_YRESOLUTION FIX32 50.0
DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_PIXELTYPE UINT16 2
DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_BITDEPTH UINT16 24
DG_CONTROL DAT_CAPABILITY MSG_SET CAP_XFERCOUNT INT16 1
DG_CONTROL DAT_USERINTERFACE MSG_ENABLEDS ShowUI 0 ModalUI 1
DG_CONTROL DAT_EVENT
DG_IMAGE DAT_IMAGENATIVEXFER MSG_GET
DG_CONTROL DAT_PENDINGXFERS MSG_ENDXFER
DG_CONTROL DAT_USERINTERFACE MSG_DISABLEDS ShowUI 0 ModalUI 1
DG_CONTROL DAT_IDENTITY MSG_CLOSEDS ""
DG_CONTROL DAT_PARENT MSG_CLOSEDSM
leaks: none
)");
}

TEST(Win32SourceManager, ALibraryThatIsNotThereOrNotOneIsAnErrorOfTheCall) {
  const TemporaryFolder folder;
  const std::string text = folder.Write("text.dll", std::vector<Byte>{'t', 'e', 'x', 't'});
  const struct {
    std::vector<std::wstring> libraries;
    ErrorNumber error;
  } cases[] = {
      {{L"quillet-none.dll"}, ErrorNumber::FileNotFound},
      {{L"quillet-none.dll", L"quillet-neither.dll"}, ErrorNumber::FileNotFound},
      {{std::filesystem::path(text).wstring()}, ErrorNumber::LibraryNotLoaded},
      {{L"version.dll"}, ErrorNumber::LibraryNotLoaded},  // no manager's entry point
  };
  for (const auto& [libraries, error] : cases) {
    Win32SourceManager manager(libraries);
    TW_IDENTITY application{};
    for (int attempt = 0; attempt < 2; ++attempt)
      EXPECT_EQ(ErrorOf([&] {
                  manager.DSM_Entry(&application, nullptr, DG_CONTROL, DAT_PARENT, MSG_OPENDSM,
                                    nullptr);
                }),
                error)
          << libraries.front().size();
  }
}

TEST(Win32SourceManager, AManagerThatUnloadsItselfStays) {
  const std::wstring library = ProgramFolder() + L"test_manager.dll";
  Win32SourceManager manager({library});
  TW_IDENTITY application{};
  const auto call = [&] {
    return manager.DSM_Entry(&application, nullptr, DG_CONTROL, DAT_NULL, MSG_NULL, nullptr);
  };
  const TW_UINT16 before = call();
  for (int i = 0; i < 9; ++i)
    if (const HMODULE module = ::GetModuleHandleW(library.c_str())) ::FreeLibrary(module);
  EXPECT_EQ(call(), before);
}

TEST(Win32SourceManager, TextIsCutAtAWholeCharacterOfTheSystemsCodePage) {
  const Win32SourceManager manager;
  EXPECT_EQ(manager.AnsiText("plain", 32), "plain");
  EXPECT_EQ(manager.AnsiText("plain", 3), "pla");
  const std::string grin = "\xF0\x9F\x98\x80";
  // As a code page without it, or UTF-8, has the character.
  const std::string whole = manager.AnsiText(grin, 32);
  EXPECT_EQ(manager.AnsiText("ab" + grin, 2 + whole.size()), "ab" + whole);
  EXPECT_EQ(manager.AnsiText("ab" + grin, 1 + whole.size()), "ab");
}

}  // namespace
}  // namespace quillet
