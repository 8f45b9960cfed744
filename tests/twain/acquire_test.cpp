#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "base/runtime_error.h"
#include "embed/stage.h"
#include "tests/support/environment_variable.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_platform.h"
#include "tests/support/pictures.h"
#include "tests/support/platform_with.h"
#include "tests/support/print_census.h"
#include "tests/support/scripted_source_manager.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thread_queue.h"
#include "twain/cTwain.h"

namespace quillet {
namespace {

const std::string kOpen = "OPENDSM OPENDS ";
const std::string kAsk = "GET CAP_UICONTROLLABLE ";
const std::string kLayout = "GET ICAP_PHYSICALWIDTH GET ICAP_PHYSICALHEIGHT SET DAT_IMAGELAYOUT ";
const std::string kResolution75 = "SET ICAP_XRESOLUTION(7,0x4B) SET ICAP_YRESOLUTION(7,0x4B) ";
const std::string kColor = "SET ICAP_PIXELTYPE(4,0x2) SET ICAP_BITDEPTH(4,0x18) ";
const std::string kCount = "SET CAP_XFERCOUNT(1,0x1) ";
const std::string kTransfer = "ENABLEDS PROCESSEVENT GET DAT_IMAGENATIVEXFER ENDXFER DISABLEDS ";
const std::string kClose = "CLOSEDS CLOSEDSM";
const std::string kRoad =
    kOpen + kAsk + kLayout + kResolution75 + kColor + kCount + kTransfer + kClose;

// The road up to that operation, and another end.
std::string RoadTo(const std::string& operation, const std::string& end) {
  const std::string road = kRoad + " ";
  const std::size_t at = std::min(road.find(operation + " "), road.find(operation + "("));
  const std::string way = road.substr(0, road.find(' ', at + operation.size()));
  return end.empty() ? way : way + " " + end;
}

// One cTwain with a scripted source, on a platform that can be made to fail.
class Acquire : public testing::Test {
 protected:
  struct Outcome {
    Long result;
    std::string calls;
    bool hasPicture;
  };

  Outcome Run(Integer resolution = 75, Long colorType = twRGB, bool progress = true,
              bool showInterface = false, const std::string& title = "") {
    const PictureRef before = m_picture;
    const Long result =
        m_twain.Acquire(m_picture, resolution, colorType, progress, showInterface, title);
    return {result, m_sources.TakeCalls(), m_picture != before};
  }

  // Nothing of a conversation is left, whatever became of it.
  void ExpectNothingLeft() {
    m_picture = nullptr;
    EXPECT_EQ(m_stage->Census(), CensusCounts{});
    EXPECT_FALSE(m_sources.wrongShape);
  }

  int FilesLeft() const {
    return static_cast<int>(
        std::distance(std::filesystem::directory_iterator(m_folder.Path("")), {}));
  }

  TemporaryFolder m_folder;
  EnvironmentVariable m_temporaryFolder{kTemporaryFolder, m_folder.Path("")};
  std::unique_ptr<Stage> m_stage = MakeStage();
  Platform& m_platform = m_stage->Contracts();
  std::unique_ptr<ThreadQueue> m_queue = QueueOf(*m_stage);
  ScriptedSourceManager m_sources{*m_stage};
  std::unique_ptr<SourceManager> m_manager = AsPrograms(m_sources);
  FaultyPlatform m_faulty{m_platform};
  Platform m_contracts = PlatformWith(*m_manager, m_faulty.Contracts());
  cTwain m_twain{m_contracts};
  PictureRef m_picture = m_platform.pictures.EmptyPicture();
};

TEST_F(Acquire, GoesTheWholeRoadAndLeavesThePictureAlone) {
  m_sources.image = PackedBitmap(2, 1, 24, 8);
  const Byte pixels[] = {1, 2, 3, 4, 5, 6, 0, 0};
  std::memcpy(m_sources.image.data() + 40, pixels, sizeof pixels);
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.calls, kRoad);
  EXPECT_EQ(outcome.result, 0);
  const PixelRows24 rows = PixelsOf(m_platform, m_picture);
  ASSERT_EQ(rows.width, 2);
  EXPECT_EQ(rows.At(0, 0), (Pixel{1, 2, 3}));
  EXPECT_EQ(rows.At(1, 0), (Pixel{4, 5, 6}));
  EXPECT_EQ(m_sources.layout.Frame.Right.Whole, 8);
  EXPECT_EQ(m_sources.layout.Frame.Right.Frac, 32768);
  EXPECT_EQ(m_sources.layout.Frame.Bottom.Whole, 11);
  EXPECT_EQ(m_sources.layout.Frame.Left.Whole, 0);
  EXPECT_EQ(m_sources.userInterface.ModalUI, 1);
  EXPECT_EQ(FilesLeft(), 0);
  ExpectNothingLeft();
}

TEST_F(Acquire, EveryRefusalEndsInOrder) {
  const std::string rest = kTransfer + kClose;
  const struct {
    const char* operation;
    TW_UINT16 answer;
    std::string end;
    Long result;
    bool hasPicture;
  } cases[] = {
      {"OPENDSM", TWRC_FAILURE, "", 1, false},
      {"OPENDS", TWRC_FAILURE, "CLOSEDSM", 1, false},
      {"GET CAP_UICONTROLLABLE", TWRC_FAILURE, rest, 0, true},
      {"GET ICAP_PHYSICALWIDTH", TWRC_FAILURE, kClose, 1, false},
      {"GET ICAP_PHYSICALHEIGHT", TWRC_FAILURE, kClose, 1, false},
      {"SET DAT_IMAGELAYOUT", TWRC_FAILURE, kClose, 1, false},
      {"SET DAT_IMAGELAYOUT", TWRC_CHECKSTATUS, kResolution75 + kColor + kCount + rest, 0, true},
      {"SET ICAP_XRESOLUTION", TWRC_FAILURE, kClose, 1, false},
      {"SET ICAP_XRESOLUTION", TWRC_CHECKSTATUS, kClose, 1, false},
      {"SET ICAP_YRESOLUTION", TWRC_FAILURE, kClose, 1, false},
      {"SET ICAP_PIXELTYPE", TWRC_FAILURE, kClose, 1, false},
      {"SET ICAP_BITDEPTH", TWRC_FAILURE, kCount + rest, 0, true},
      {"SET CAP_XFERCOUNT", TWRC_FAILURE, kClose, 1, false},
      {"ENABLEDS", TWRC_FAILURE, kClose, 1, false},
      {"ENABLEDS", TWRC_CANCEL, kClose, 1, false},
      {"GET DAT_IMAGENATIVEXFER", TWRC_FAILURE, "ENDXFER DISABLEDS " + kClose, 1, false},
      {"GET DAT_IMAGENATIVEXFER", TWRC_CANCEL, "ENDXFER DISABLEDS " + kClose, 1, false},
      {"GET DAT_IMAGENATIVEXFER", TWRC_XFERDONE, "ENDXFER DISABLEDS " + kClose, 1, false},
      {"ENDXFER", TWRC_FAILURE, "DISABLEDS " + kClose, 1, false},
      {"DISABLEDS", TWRC_FAILURE, kClose, 1, true},
      {"CLOSEDS", TWRC_FAILURE, "CLOSEDSM", 0, true},
      {"CLOSEDSM", TWRC_FAILURE, "", 1, true},
  };
  m_picture = nullptr;
  for (const auto& refused : cases) {
    SCOPED_TRACE(std::string(refused.operation) + " " + std::to_string(refused.answer));
    ScriptedSourceManager sources(*m_stage);
    const auto manager = AsPrograms(sources);
    sources.Answer(refused.operation, refused.answer);
    Platform contracts = PlatformWith(*manager, m_platform);
    cTwain twain(contracts);
    PictureRef picture;
    EXPECT_EQ(twain.Acquire(picture, 75, twRGB, true, false, ""), refused.result);
    EXPECT_EQ(sources.TakeCalls(), RoadTo(refused.operation, refused.end));
    EXPECT_EQ(picture != nullptr, refused.hasPicture);
    picture = nullptr;
    EXPECT_EQ(m_stage->Census(), CensusCounts{});
    EXPECT_FALSE(sources.wrongShape);
    EXPECT_EQ(FilesLeft(), 0);
    m_queue->Drain();
  }
}

TEST_F(Acquire, EveryFailureOfThePlatformEndsInOrder) {
  const std::string unread = kOpen + kAsk + kTransfer + kClose;
  const struct {
    const char* service;
    int use;
    std::string calls;
    Long result;
    bool hasPicture;
    int filesLeft;
  } cases[] = {
      {"CreateWindowExA", 1, "", 1, false, 0},
      {"DestroyWindow", 1, kRoad, 1, true, 0},
      {"GlobalLock", 1, unread, 0, true, 0},
      {"GlobalLock", 2, RoadTo("GET ICAP_PHYSICALWIDTH", kClose), 1, false, 0},
      {"GlobalAlloc", 1, RoadTo("GET ICAP_PHYSICALHEIGHT", "SET DAT_IMAGELAYOUT " + kClose), 1,
       false, 0},
      {"GlobalAlloc", 5, RoadTo("SET ICAP_BITDEPTH", kClose), 1, false, 0},
      {"GlobalLock", 9, kRoad, 1, false, 0},
      {"GetTempFileNameA", 1, kRoad, 1, false, 0},
      {"WriteFile", 1, kRoad, 1, false, 1},
      {"LoadPicture", 1, kRoad, 1, false, 1},
      {"DeleteFile", 1, kRoad, 0, true, 1},
  };
  int filesBefore = 0;
  for (const auto& failed : cases) {
    SCOPED_TRACE(std::string(failed.service) + " " + std::to_string(failed.use));
    m_faulty.FailCall(failed.service, failed.use);
    const Outcome outcome = Run();
    EXPECT_TRUE(m_faulty.HasFailed());
    EXPECT_EQ(outcome.result, failed.result);
    EXPECT_EQ(outcome.calls, failed.calls);
    EXPECT_EQ(outcome.hasPicture, failed.hasPicture);
    EXPECT_EQ(FilesLeft() - filesBefore, failed.filesLeft);
    filesBefore = FilesLeft();
    ExpectNothingLeft();
  }
}

TEST_F(Acquire, AsksForWhatTheCallSays) {
  const struct {
    Integer resolution;
    Long colorType;
    bool progress, interface;
    std::string calls;
  } cases[] = {
      {300, twGrayScale, true, true,
       kAsk + kLayout +
           "SET ICAP_XRESOLUTION(7,0x12C) SET ICAP_YRESOLUTION(7,0x12C) "
           "SET ICAP_PIXELTYPE(4,0x1) " +
           kCount},
      {75, twBlackWhite, false, false,
       "SET CAP_INDICATORS(6,0x0) " + kAsk + kLayout + kResolution75 +
           "SET ICAP_PIXELTYPE(4,0x0) " + kCount},
      {-1, 0x10007, true, false,
       kAsk + kLayout +
           "SET ICAP_XRESOLUTION(7,0xFFFF) SET ICAP_YRESOLUTION(7,0xFFFF) "
           "SET ICAP_PIXELTYPE(4,0x7) " +
           kCount},
  };
  for (const auto& asked : cases) {
    const Outcome outcome = Run(asked.resolution, asked.colorType, asked.progress, asked.interface);
    EXPECT_EQ(outcome.calls, kOpen + asked.calls + kTransfer + kClose);
    EXPECT_EQ(m_sources.userInterface.ShowUI, asked.interface ? 1 : 0);
    EXPECT_EQ(m_sources.userInterface.ModalUI, 1);
  }
}

TEST_F(Acquire, AnInterfaceThatIsNotSaidToBeControllableIsLeftAlone) {
  const std::vector<Byte> answers[] = {
      {6, 0, 0, 0, 0, 0},  // no
      {6, 0, 2, 0, 0, 0},  // neither yes nor no
      {6, 0, 1, 0, 0},     // cut short
      {},                  // no container
  };
  for (const auto& answer : answers) {
    m_sources.AnswerContainer("CAP_UICONTROLLABLE", answer);
    const Outcome outcome = Run(75, twRGB, false);
    EXPECT_EQ(outcome.calls, kOpen + "SET CAP_INDICATORS(6,0x0) " + kAsk + kTransfer + kClose);
    EXPECT_EQ(outcome.result, 0);
  }
  // Only the low word counts, and the container's name does not.
  m_sources.AnswerContainer("CAP_UICONTROLLABLE", {6, 0, 1, 0, 9, 9}, TWON_RANGE);
  EXPECT_EQ(Run().calls, kRoad);
  ExpectNothingLeft();
}

TEST_F(Acquire, ASizeThatIsNotPositiveSetsNoLayout) {
  const struct {
    std::vector<Byte> width;
    bool isSet;
  } cases[] = {
      {{7, 0, 0, 0, 0, 0}, false},
      {{7, 0, 0xFF, 0xFF, 0xFF, 0xFF}, false},  // just below zero
      {{7, 0, 0, 0, 1, 0}, true},               // just above
  };
  for (const auto& [width, isSet] : cases) {
    m_sources.AnswerContainer("ICAP_PHYSICALWIDTH", width);
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.calls.find("SET DAT_IMAGELAYOUT") != std::string::npos, isSet);
    EXPECT_EQ(outcome.result, 0);
  }
}

TEST_F(Acquire, PresentsTheApplication) {
  Run(75, twRGB, true, false, "A title of more than thirty-two characters");
  EXPECT_STREQ(m_sources.application.ProductName, "A title of more than thirty-two ");
  Run();
  const TW_IDENTITY& identity = m_sources.application;
  EXPECT_STREQ(identity.ProductName, "Corvane Twain ActiveX");
  EXPECT_STREQ(identity.ProductFamily, "Fenwright");
  EXPECT_EQ(identity.Version.MajorNum, 1);
  EXPECT_EQ(identity.Version.Language, 13);
  EXPECT_EQ(identity.Version.Country, 1);
  EXPECT_EQ(identity.ProtocolMajor, 1);
  EXPECT_EQ(identity.ProtocolMinor, 9);
  EXPECT_EQ(TW_UINT32{identity.SupportedGroups}, 3u);
  EXPECT_EQ(m_sources.idsAtOpen, (std::vector<TW_UINT32>{0, 0}));
  EXPECT_TRUE(m_sources.parentWasWindow);
}

TEST_F(Acquire, AClosedDialogIsSuccessWithoutAPicture) {
  m_sources.posted = {ScriptedSourceManager::kUnclaimed, ScriptedSourceManager::kCloseRequest};
  const Outcome outcome = Run(75, twRGB, true, true);
  EXPECT_EQ(outcome.result, 0);
  EXPECT_FALSE(outcome.hasPicture);
  EXPECT_TRUE(outcome.calls.ends_with("ENABLEDS PROCESSEVENT PROCESSEVENT DISABLEDS " + kClose));
  m_sources.Answer("DISABLEDS", TWRC_FAILURE);
  EXPECT_EQ(Run().result, 1);
  ExpectNothingLeft();
}

TEST_F(Acquire, AQuitEndsTheLoopIsTakenAndTheTransferIsTried) {
  m_sources.posted = {};
  m_queue->PostQuit(3);
  m_sources.Answer("GET DAT_IMAGENATIVEXFER", TWRC_FAILURE);
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.result, 1);
  EXPECT_TRUE(
      outcome.calls.ends_with("ENABLEDS GET DAT_IMAGENATIVEXFER ENDXFER DISABLEDS " + kClose));
  EXPECT_EQ(m_queue->Drain(), 0);
  // So does a queue that fails.
  m_faulty.FailCall("GetMessageA", 1);
  EXPECT_TRUE(
      Run().calls.ends_with("ENABLEDS GET DAT_IMAGENATIVEXFER ENDXFER DISABLEDS " + kClose));
  ExpectNothingLeft();
}

TEST_F(Acquire, ADialogThatNobodyAskedForIsWaitedFor) {
  m_sources.Do("ENABLEDS", [&](void* pData) {
    const WindowHandle parent = static_cast<TW_USERINTERFACE*>(pData)->hParent;
    m_queue->Post(parent, ScriptedSourceManager::kImageReady);
    return TWRC_CHECKSTATUS;
  });
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.calls, kRoad);
  EXPECT_EQ(outcome.result, 0);
  EXPECT_TRUE(outcome.hasPicture);
}

TEST_F(Acquire, PendingTransfersAreDiscardedFirst) {
  m_sources.Do("ENDXFER", [](void* pData) {
    static_cast<TW_PENDINGXFERS*>(pData)->Count = 1;
    return TWRC_SUCCESS;
  });
  const Outcome outcome = Run();
  EXPECT_TRUE(outcome.calls.ends_with("ENDXFER RESET DISABLEDS " + kClose));
  EXPECT_EQ(outcome.result, 0);
}

TEST_F(Acquire, MessagesAreDispatchedEvenWhenTheSourceClaimsThem) {
  std::vector<std::uint32_t> seen;
  auto listener = m_queue->Listen([&](std::uint32_t message) { seen.push_back(message); });
  m_sources.Do("ENABLEDS", [&](void* pData) {
    m_queue->Post(listener->Window(), 0x8001);
    m_queue->Post(listener->Window(), 0x8002);
    m_queue->Post(static_cast<TW_USERINTERFACE*>(pData)->hParent,
                  ScriptedSourceManager::kImageReady);
    return TWRC_SUCCESS;
  });
  m_sources.Do("PROCESSEVENT", [](void* pData) {
    auto* const event = static_cast<TW_EVENT*>(pData);
    EXPECT_EQ(event->TWMessage, MSG_NULL);
    if (static_cast<const MSG*>(event->pEvent)->message == ScriptedSourceManager::kImageReady)
      event->TWMessage = MSG_XFERREADY;
    return TWRC_DSEVENT;
  });
  EXPECT_EQ(Run().result, 0);
  EXPECT_EQ(seen, (std::vector<std::uint32_t>{0x8001, 0x8002}));
  listener.reset();
  ExpectNothingLeft();
}

TEST_F(Acquire, ASecondConversationInsideTheLoopIsRefused) {
  std::vector<Long> results;
  auto listener = m_queue->Listen([&](std::uint32_t) {
    PictureRef other;
    results.push_back(m_twain.Acquire(other, 600, twBlackWhite, true, true, "Other"));
    results.push_back(m_twain.SelectDataSource("Other"));
    m_queue->Post(m_sources.userInterface.hParent, ScriptedSourceManager::kImageReady);
  });
  m_sources.posted = {};
  m_queue->Post(listener->Window(), 0x8001);
  const Outcome outcome = Run();
  listener.reset();
  EXPECT_EQ(results, (std::vector<Long>{1, 1}));
  EXPECT_EQ(outcome.calls, kRoad);
  EXPECT_EQ(outcome.result, 0);
  EXPECT_TRUE(outcome.hasPicture);
}

TEST_F(Acquire, AnImageThatLiesIsRefused) {
  const std::vector<Byte> images[] = {
      PackedBitmap(0x7FFFFFFF, 0x7FFFFFFF, 24, 8),
      PackedBitmap(2, 2, 24, 8),
      PackedBitmap(2, INT32_MIN, 24, 8),
      PackedBitmap(2, 1, 0, 8),
      std::vector<Byte>(39),
  };
  for (const auto& image : images) {
    m_sources.image = image;
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.calls, kRoad);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_FALSE(outcome.hasPicture);
    EXPECT_EQ(FilesLeft(), 0);
  }
  ExpectNothingLeft();
}

TEST_F(Acquire, AMissingManagerIsAnErrorThatLeavesNothing) {
  class NoManager : public SourceManager {
   public:
    TW_UINT16 DSM_Entry(TW_IDENTITY*, TW_IDENTITY*, TW_UINT32, TW_UINT16, TW_UINT16,
                        void*) override {
      throw RunTimeError(ErrorNumber::FileNotFound);
    }
    std::string AnsiText(const std::string& text, std::size_t) const override { return text; }
  } none;
  Platform contracts = PlatformWith(none, m_platform);
  cTwain twain(contracts);
  EXPECT_EQ(ErrorOf([&] { twain.Acquire(m_picture, 75, twRGB, true, false, ""); }),
            ErrorNumber::FileNotFound);
  EXPECT_EQ(ErrorOf([&] { twain.SelectDataSource(""); }), ErrorNumber::FileNotFound);
  ExpectNothingLeft();
}

TEST_F(Acquire, ChoosingASourceClosesWhatWasChosen) {
  EXPECT_EQ(m_twain.SelectDataSource("Title"), 0);
  EXPECT_EQ(m_sources.TakeCalls(), kOpen + "USERSELECT " + kClose);
  EXPECT_EQ(TW_UINT32{m_sources.closedSource.Id}, 2u);
  const struct {
    const char* operation;
    TW_UINT16 answer;
    std::string calls;
    Long result;
  } cases[] = {
      {"USERSELECT", TWRC_CANCEL, kOpen + "USERSELECT " + kClose, 1},
      {"OPENDS", TWRC_FAILURE, kOpen + "CLOSEDSM", 1},
      {"CLOSEDS", TWRC_FAILURE, kOpen + "USERSELECT " + kClose, 0},
      {"CLOSEDSM", TWRC_FAILURE, kOpen + "USERSELECT " + kClose, 1},
      {"OPENDSM", TWRC_FAILURE, "OPENDSM", 1},
  };
  for (const auto& refused : cases) {
    ScriptedSourceManager sources(*m_stage);
    const auto manager = AsPrograms(sources);
    sources.Answer(refused.operation, refused.answer);
    Platform contracts = PlatformWith(*manager, m_platform);
    cTwain twain(contracts);
    EXPECT_EQ(twain.SelectDataSource(""), refused.result) << refused.operation;
    EXPECT_EQ(sources.TakeCalls(), refused.calls);
  }
  ExpectNothingLeft();
}

}  // namespace
}  // namespace quillet
