#include "platform/portable/portable_source_manager.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "platform/contracts/bitmap_services.h"
#include "platform/portable/portable_messages.h"
#include "platform/portable/portable_platform.h"
#include "tests/support/print_census.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

// An application that talks to the manager.
class SourceManagerTest : public testing::Test {
 protected:
  SourceManagerTest() { std::strcpy(m_application.ProductName, "Test"); }
  ~SourceManagerTest() override { m_platform.Queue().DestroyWindow(m_window); }

  TW_UINT16 Manager(TW_UINT16 argumentType, TW_UINT16 message, void* data) {
    return m_platform.Sources().DSM_Entry(&m_application, nullptr, DG_CONTROL, argumentType,
                                          message, data);
  }
  TW_UINT16 Source(TW_UINT32 group, TW_UINT16 argumentType, TW_UINT16 message, void* data) {
    return m_platform.Sources().DSM_Entry(&m_application, &m_source, group, argumentType, message,
                                          data);
  }
  TW_UINT16 OpenManager() { return Manager(DAT_PARENT, MSG_OPENDSM, &m_window); }
  TW_UINT16 CloseManager() { return Manager(DAT_PARENT, MSG_CLOSEDSM, &m_window); }
  TW_UINT16 OpenSource(const char* name = "") {
    m_source = {};
    std::strcpy(m_source.ProductName, name);
    return Manager(DAT_IDENTITY, MSG_OPENDS, &m_source);
  }
  TW_UINT16 CloseSource() { return Manager(DAT_IDENTITY, MSG_CLOSEDS, &m_source); }
  TW_UINT16 Enable(bool showUI = false) {
    m_userInterface = {static_cast<TW_BOOL>(showUI), 1, m_window};
    return Source(DG_CONTROL, DAT_USERINTERFACE, MSG_ENABLEDS, &m_userInterface);
  }
  TW_UINT16 Disable() {
    return Source(DG_CONTROL, DAT_USERINTERFACE, MSG_DISABLEDS, &m_userInterface);
  }
  // Pumps until the source has something to say.
  TW_UINT16 Await() {
    MSG message;
    while (m_platform.Queue().GetMessageA(message) > 0) {
      TW_EVENT event{&message, MSG_NULL};
      Source(DG_CONTROL, DAT_EVENT, MSG_PROCESSEVENT, &event);
      if (event.TWMessage != MSG_NULL) return event.TWMessage;
      m_platform.Queue().DispatchMessageA(message);
    }
    return MSG_NULL;
  }
  TW_UINT16 Transfer(GlobalHandle& image) {
    return Source(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, &image);
  }
  TW_UINT16 Pending(TW_UINT16 message) {
    return Source(DG_CONTROL, DAT_PENDINGXFERS, message, &m_pending);
  }
  // Why the last operation failed: of the manager, of the source.
  TW_UINT16 ManagersReason() {
    TW_STATUS status{};
    EXPECT_EQ(Manager(DAT_STATUS, MSG_GET, &status), TWRC_SUCCESS);
    return status.ConditionCode;
  }
  TW_UINT16 Reason() {
    TW_STATUS status{};
    EXPECT_EQ(Source(DG_CONTROL, DAT_STATUS, MSG_GET, &status), TWRC_SUCCESS);
    return status.ConditionCode;
  }

  TW_UINT16 Set(TW_UINT16 cap, TW_UINT16 itemType, TW_UINT32 item) {
    const TW_ONEVALUE value{itemType, item};
    const UniqueGlobal block(m_memory, m_memory.GlobalAlloc(sizeof value));
    {
      const GlobalLockGuard lock(m_memory, block.get());
      std::memcpy(lock.get(), &value, sizeof value);
    }
    TW_CAPABILITY capability{cap, TWON_ONEVALUE, block.get()};
    return Source(DG_CONTROL, DAT_CAPABILITY, MSG_SET, &capability);
  }
  // What a container holds, its type in front as two bytes; empty when refused.
  std::vector<Byte> Get(TW_UINT16 cap, TW_UINT16 message = MSG_GET) {
    TW_CAPABILITY capability{cap, TWON_ONEVALUE, GlobalHandle::None};
    if (Source(DG_CONTROL, DAT_CAPABILITY, message, &capability) != TWRC_SUCCESS) return {};
    const UniqueGlobal block(m_memory, capability.hContainer);
    const GlobalLockGuard lock(m_memory, block.get());
    const auto* const bytes = static_cast<const Byte*>(lock.get());
    std::vector<Byte> result{static_cast<Byte>(capability.ConType), 0};
    result.insert(result.end(), bytes, bytes + m_memory.GlobalSize(block.get()));
    return result;
  }
  TW_UINT16 SetFrame(double left, double top, double right, double bottom) {
    TW_IMAGELAYOUT layout{{ToFix32(left), ToFix32(top), ToFix32(right), ToFix32(bottom)}, 0, 0, 0};
    return Source(DG_IMAGE, DAT_IMAGELAYOUT, MSG_SET, &layout);
  }
  // Scans; the image's header.
  BITMAPINFOHEADER Scan() {
    BITMAPINFOHEADER header;
    EXPECT_EQ(Enable(), TWRC_SUCCESS);
    EXPECT_EQ(Await(), MSG_XFERREADY);
    UniqueGlobal image(m_memory, GlobalHandle::None);
    EXPECT_EQ(Transfer(image.out()), TWRC_XFERDONE);
    const GlobalLockGuard lock(m_memory, image.get());
    std::memcpy(&header, lock.get(), sizeof header);
    EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);
    EXPECT_EQ(Disable(), TWRC_SUCCESS);
    return header;
  }

  PortablePlatform m_platform;
  GlobalMemory& m_memory = m_platform.Contracts().memory;
  WindowHandle m_window = m_platform.Queue().CreateWindowExA("", "", 0, 0, 0, 0);
  TW_IDENTITY m_application{};
  TW_IDENTITY m_source{};
  TW_USERINTERFACE m_userInterface{};
  TW_PENDINGXFERS m_pending{};
};

TEST_F(SourceManagerTest, CallsOutOfStateAreRefusedAndSayWhy) {
  const auto outOfSequence = [&](TW_UINT16 answer) {
    return answer == TWRC_FAILURE && Reason() == TWCC_SEQERROR;
  };
  GlobalHandle image = GlobalHandle::None;
  EXPECT_EQ(CloseManager(), TWRC_FAILURE);
  EXPECT_EQ(ManagersReason(), TWCC_SEQERROR);
  EXPECT_EQ(ManagersReason(), TWCC_SUCCESS) << "a reason is told once";
  EXPECT_EQ(OpenSource(), TWRC_FAILURE);
  EXPECT_EQ(ManagersReason(), TWCC_SEQERROR);

  EXPECT_EQ(OpenManager(), TWRC_SUCCESS);
  EXPECT_NE(TW_UINT32{m_application.Id}, 0u);
  EXPECT_EQ(OpenManager(), TWRC_FAILURE);
  EXPECT_EQ(ManagersReason(), TWCC_SEQERROR);
  EXPECT_EQ(CloseSource(), TWRC_FAILURE);
  EXPECT_EQ(ManagersReason(), TWCC_SEQERROR);

  EXPECT_EQ(OpenSource(), TWRC_SUCCESS);  // state 4
  EXPECT_TRUE(outOfSequence(Disable()));
  EXPECT_TRUE(outOfSequence(Transfer(image)));
  EXPECT_TRUE(outOfSequence(Pending(MSG_ENDXFER)));
  MSG message;
  TW_EVENT event{&message, MSG_NULL};
  EXPECT_TRUE(outOfSequence(Source(DG_CONTROL, DAT_EVENT, MSG_PROCESSEVENT, &event)));

  EXPECT_EQ(Enable(), TWRC_SUCCESS);  // state 5
  EXPECT_TRUE(outOfSequence(Enable()));
  EXPECT_TRUE(outOfSequence(Set(CAP_XFERCOUNT, TWTY_INT16, 1)));
  EXPECT_TRUE(outOfSequence(SetFrame(0, 0, 1, 1)));
  EXPECT_TRUE(outOfSequence(Transfer(image)));
  EXPECT_EQ(CloseSource(), TWRC_FAILURE);
  EXPECT_EQ(CloseManager(), TWRC_FAILURE);
  EXPECT_EQ(ManagersReason(), TWCC_SEQERROR);

  EXPECT_EQ(Await(), MSG_XFERREADY);  // state 6
  EXPECT_TRUE(outOfSequence(Disable()));
  EXPECT_EQ(Transfer(image), TWRC_XFERDONE);  // state 7
  EXPECT_TRUE(outOfSequence(Transfer(image)));
  EXPECT_TRUE(outOfSequence(Pending(MSG_RESET)));
  EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);  // state 5
  EXPECT_EQ(m_pending.Count, 0);
  EXPECT_TRUE(outOfSequence(Pending(MSG_ENDXFER)));
  EXPECT_EQ(Disable(), TWRC_SUCCESS);
  EXPECT_EQ(CloseSource(), TWRC_SUCCESS);
  EXPECT_EQ(CloseManager(), TWRC_SUCCESS);
  EXPECT_TRUE(m_memory.GlobalFree(image)) << "the image is the application's";
  EXPECT_EQ(m_platform.Census().globalBlocks, 0);
}

TEST_F(SourceManagerTest, OperationsThatAreNoneAreRefused) {
  WindowHandle noWindow{0x999};
  EXPECT_EQ(Manager(DAT_PARENT, MSG_OPENDSM, &noWindow), TWRC_FAILURE);
  EXPECT_EQ(Manager(DAT_PARENT, MSG_OPENDSM, nullptr), TWRC_FAILURE);
  OpenManager();
  EXPECT_EQ(OpenSource("Nobody"), TWRC_FAILURE);
  EXPECT_EQ(ManagersReason(), TWCC_NODS);
  EXPECT_EQ(Manager(DAT_CAPABILITY, MSG_GET, &m_source), TWRC_FAILURE);
  EXPECT_EQ(ManagersReason(), TWCC_BADPROTOCOL);
  OpenSource();
  EXPECT_EQ(Source(DG_IMAGE, DAT_CAPABILITY, MSG_GET, &m_pending), TWRC_FAILURE);
  EXPECT_EQ(Reason(), TWCC_BADPROTOCOL);
  m_source.Id += 100;
  EXPECT_EQ(Pending(MSG_GET), TWRC_FAILURE);
  EXPECT_EQ(Reason(), TWCC_BADDEST);
}

TEST_F(SourceManagerTest, ListsItsSourcesAndKnowsTheDefault) {
  OpenManager();
  std::string names;
  TW_IDENTITY identity{};
  for (TW_UINT16 message = MSG_GETFIRST; Manager(DAT_IDENTITY, message, &identity) == TWRC_SUCCESS;
       message = MSG_GETNEXT)
    names += std::string(identity.ProductName) + " ";
  EXPECT_EQ(names, "Flatbed Panel Camera Feeder Assistant ");
  EXPECT_EQ(Manager(DAT_IDENTITY, MSG_GETDEFAULT, &identity), TWRC_SUCCESS);
  EXPECT_STREQ(identity.ProductName, "Flatbed");
  EXPECT_EQ(OpenSource("camera"), TWRC_SUCCESS);
  EXPECT_STREQ(m_source.ProductName, "Camera");
}

TEST_F(SourceManagerTest, ASourceServesOneApplicationAtATime) {
  OpenManager();
  OpenSource();
  const TW_IDENTITY application = std::exchange(m_application, {});
  const WindowHandle window =
      std::exchange(m_window, m_platform.Queue().CreateWindowExA("", "", 0, 0, 0, 0));
  OpenManager();
  EXPECT_EQ(OpenSource(), TWRC_FAILURE);
  EXPECT_EQ(ManagersReason(), TWCC_MAXCONNECTIONS);
  EXPECT_EQ(OpenSource("Feeder"), TWRC_SUCCESS);
  // An application whose window is gone gives its source back.
  m_platform.Queue().DestroyWindow(window);
  CloseManager();
  m_application = application;
  m_application.Id = 0;
  EXPECT_EQ(OpenManager(), TWRC_SUCCESS);
  EXPECT_EQ(OpenSource(), TWRC_SUCCESS);
}

TEST_F(SourceManagerTest, CapabilitiesComeInTheirContainers) {
  OpenManager();
  OpenSource();
  using Bytes = std::vector<Byte>;
  EXPECT_EQ(Get(CAP_UICONTROLLABLE), (Bytes{TWON_ONEVALUE, 0, TWTY_BOOL, 0, 1, 0, 0, 0}));
  EXPECT_EQ(Get(ICAP_PIXELTYPE), (Bytes{TWON_ENUMERATION,
                                        0,
                                        TWTY_UINT16,
                                        0,
                                        3,
                                        0,
                                        0,
                                        0,  //
                                        0,
                                        0,
                                        0,
                                        0,
                                        0,
                                        0,
                                        0,
                                        0,
                                        0,
                                        0,
                                        1,
                                        0,
                                        2,
                                        0}));
  EXPECT_EQ(Get(ICAP_XRESOLUTION),
            (Bytes{TWON_RANGE, 0, TWTY_FIX32, 0, 50,  0, 0, 0, 0xB0, 4, 0, 0, 1, 0, 0, 0,  //
                   100,        0, 0,          0, 100, 0, 0, 0}));
  EXPECT_EQ(Set(ICAP_XRESOLUTION, TWTY_FIX32, 300), TWRC_SUCCESS);
  const Bytes now{TWON_ONEVALUE, 0, TWTY_FIX32, 0, 0x2C, 1, 0, 0};
  EXPECT_EQ(Get(ICAP_XRESOLUTION, MSG_GETCURRENT), now);
  EXPECT_EQ(Get(ICAP_XRESOLUTION, MSG_GETDEFAULT)[4], 100);
  EXPECT_EQ(Get(ICAP_XRESOLUTION, MSG_RESET)[4], 100);
  EXPECT_EQ(Get(CAP_SUPPORTEDCAPS).size(), 2u + 6 + 2 * 12);
  EXPECT_EQ(Get(0x8001), Bytes{});
  EXPECT_EQ(Reason(), TWCC_CAPUNSUPPORTED);
  EXPECT_EQ(m_platform.Census().globalBlocks, 0);
}

TEST_F(SourceManagerTest, CapabilitiesTakeOnlyWhatTheyCanBe) {
  OpenManager();
  OpenSource();
  const struct {
    TW_UINT16 cap, itemType;
    TW_UINT32 item;
    TW_UINT16 answer, reason;
  } cases[] = {
      {ICAP_XRESOLUTION, TWTY_FIX32, 50, TWRC_SUCCESS, TWCC_SUCCESS},
      {ICAP_XRESOLUTION, TWTY_FIX32, 1200, TWRC_SUCCESS, TWCC_SUCCESS},
      {ICAP_XRESOLUTION, TWTY_FIX32, 49, TWRC_FAILURE, TWCC_BADVALUE},
      {ICAP_XRESOLUTION, TWTY_FIX32, 1201, TWRC_FAILURE, TWCC_BADVALUE},
      {ICAP_XRESOLUTION, TWTY_FIX32, 0xFFFF, TWRC_FAILURE, TWCC_BADVALUE},
      {ICAP_XRESOLUTION, TWTY_FIX32, 0x40000064, TWRC_CHECKSTATUS, TWCC_SUCCESS},
      {ICAP_XRESOLUTION, TWTY_UINT16, 100, TWRC_FAILURE, TWCC_BADVALUE},
      {ICAP_PIXELTYPE, TWTY_UINT16, 3, TWRC_FAILURE, TWCC_BADVALUE},
      {ICAP_BITDEPTH, TWTY_UINT16, 24, TWRC_FAILURE, TWCC_BADVALUE},
      {ICAP_PIXELTYPE, TWTY_UINT16, TWPT_RGB, TWRC_SUCCESS, TWCC_SUCCESS},
      {ICAP_BITDEPTH, TWTY_UINT16, 24, TWRC_SUCCESS, TWCC_SUCCESS},
      {ICAP_BITDEPTH, TWTY_UINT16, 8, TWRC_FAILURE, TWCC_BADVALUE},
      {CAP_XFERCOUNT, TWTY_INT16, 1, TWRC_SUCCESS, TWCC_SUCCESS},
      {CAP_XFERCOUNT, TWTY_INT16, 0xFFFF, TWRC_SUCCESS, TWCC_SUCCESS},
      {CAP_XFERCOUNT, TWTY_INT16, 0, TWRC_FAILURE, TWCC_BADVALUE},
      {CAP_INDICATORS, TWTY_BOOL, 0, TWRC_SUCCESS, TWCC_SUCCESS},
      {CAP_INDICATORS, TWTY_BOOL, 2, TWRC_FAILURE, TWCC_BADVALUE},
      {CAP_UICONTROLLABLE, TWTY_BOOL, 0, TWRC_FAILURE, TWCC_CAPBADOPERATION},
      {0x8001, TWTY_BOOL, 0, TWRC_FAILURE, TWCC_CAPUNSUPPORTED},
  };
  for (const auto& [cap, itemType, item, answer, reason] : cases) {
    EXPECT_EQ(Set(cap, itemType, item), answer) << cap << " " << item;
    EXPECT_EQ(Reason(), reason) << cap << " " << item;
  }
  TW_CAPABILITY noContainer{ICAP_XRESOLUTION, TWON_ONEVALUE, GlobalHandle{0x55}};
  EXPECT_EQ(Source(DG_CONTROL, DAT_CAPABILITY, MSG_SET, &noContainer), TWRC_FAILURE);
}

TEST_F(SourceManagerTest, ImagesHaveTheKindResolutionAndFrameThatWereAskedFor) {
  OpenManager();
  OpenSource();
  const struct {
    TW_UINT16 pixelType;
    int depth;
    std::uint32_t colors;
  } kinds[] = {{TWPT_BW, 1, 2}, {TWPT_GRAY, 8, 256}, {TWPT_RGB, 24, 0}};
  Set(ICAP_XRESOLUTION, TWTY_FIX32, 100);
  Set(ICAP_YRESOLUTION, TWTY_FIX32, 50);
  for (const auto& kind : kinds) {
    ASSERT_EQ(Set(ICAP_PIXELTYPE, TWTY_UINT16, kind.pixelType), TWRC_SUCCESS);
    const BITMAPINFOHEADER header = Scan();
    EXPECT_EQ(header.biBitCount, kind.depth);
    EXPECT_EQ(header.biClrUsed, kind.colors);
    EXPECT_EQ(header.biWidth, 827);
    EXPECT_EQ(header.biHeight, 585);
    EXPECT_EQ(header.biXPelsPerMeter, 3937);
    EXPECT_EQ(header.biYPelsPerMeter, 1969);
  }
  EXPECT_EQ(SetFrame(1, 2, 3, 3), TWRC_SUCCESS);
  EXPECT_EQ(Scan().biWidth, 200);
  EXPECT_EQ(Scan().biHeight, 50);
  EXPECT_EQ(SetFrame(0, 0, 8.5, 14), TWRC_CHECKSTATUS);
  EXPECT_EQ(Scan().biWidth, 827);
  for (const double left : {-1.0, 3.0, 9.0}) {
    EXPECT_EQ(SetFrame(left, 0, 3, 3), TWRC_FAILURE) << left;
    EXPECT_EQ(Reason(), TWCC_BADVALUE);
  }
}

TEST_F(SourceManagerTest, TheDialogDoesWhatTheUserDoes) {
  OpenManager();
  OpenSource();
  EXPECT_EQ(Enable(true), TWRC_SUCCESS);
  EXPECT_EQ(m_platform.Census().windows, 2);
  m_platform.User().WillPressScan(false);
  m_platform.User().WillPressScan(true);
  EXPECT_EQ(Await(), MSG_CLOSEDSREQ);
  EXPECT_EQ(Await(), MSG_XFERREADY);
  GlobalHandle image = GlobalHandle::None;
  EXPECT_EQ(Transfer(image), TWRC_XFERDONE);
  EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);
  m_memory.GlobalFree(image);
  EXPECT_EQ(Await(), MSG_CLOSEDSREQ) << "nothing said: the user cancels";
  EXPECT_EQ(Disable(), TWRC_SUCCESS);
  EXPECT_EQ(m_platform.Census().windows, 1);
}

TEST_F(SourceManagerTest, SourcesHaveTheirManners) {
  OpenManager();
  OpenSource("Panel");
  EXPECT_EQ(Get(CAP_UICONTROLLABLE)[4], 0);
  EXPECT_EQ(Set(ICAP_PIXELTYPE, TWTY_UINT16, TWPT_RGB), TWRC_FAILURE);
  EXPECT_EQ(Scan().biBitCount, 8);
  CloseSource();

  OpenSource("Camera");
  EXPECT_EQ(Get(ICAP_PHYSICALWIDTH)[4], 0);
  EXPECT_EQ(Scan().biWidth, 827);
  CloseSource();

  OpenSource("Assistant");
  EXPECT_EQ(Enable(), TWRC_CHECKSTATUS);
  EXPECT_EQ(Await(), MSG_CLOSEDSREQ);
  Disable();
  CloseSource();

  OpenSource("Feeder");
  Enable();
  EXPECT_EQ(Await(), MSG_XFERREADY);
  EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);  // the first is passed over
  EXPECT_EQ(m_pending.Count, 1);
  EXPECT_EQ(Disable(), TWRC_FAILURE);
  GlobalHandle image = GlobalHandle::None;
  EXPECT_EQ(Transfer(image), TWRC_XFERDONE);
  EXPECT_TRUE(m_memory.GlobalFree(image));
  EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);
  EXPECT_EQ(Disable(), TWRC_SUCCESS);
  EXPECT_EQ(CloseSource(), TWRC_SUCCESS);
}

TEST(SourceChoice, IsRememberedFromProcessToProcess) {
  const TemporaryFolder folder;
  const auto choose = [](PortablePlatform& platform, TW_IDENTITY& chosen) {
    TW_IDENTITY application{};
    WindowHandle window = platform.Queue().CreateWindowExA("", "", 0, 0, 0, 0);
    SourceManager& sources = platform.Sources();
    const auto call = [&](TW_UINT16 argumentType, TW_UINT16 message, void* data) {
      return sources.DSM_Entry(&application, nullptr, DG_CONTROL, argumentType, message, data);
    };
    call(DAT_PARENT, MSG_OPENDSM, &window);
    const TW_UINT16 answer = call(DAT_IDENTITY, MSG_USERSELECT, &chosen);
    if (answer == TWRC_CANCEL) call(DAT_IDENTITY, MSG_GETDEFAULT, &chosen);
    call(DAT_PARENT, MSG_CLOSEDSM, &window);
    platform.Queue().DestroyWindow(window);
    return answer;
  };
  TW_IDENTITY chosen{};
  {
    PortablePlatform platform(folder.Path("state/quillet"));
    EXPECT_EQ(choose(platform, chosen), TWRC_CANCEL);
    EXPECT_STREQ(chosen.ProductName, "Flatbed");
    platform.User().WillChoose("FEEDER");
    EXPECT_EQ(choose(platform, chosen), TWRC_SUCCESS);
    EXPECT_STREQ(chosen.ProductName, "Feeder");
  }
  {
    PortablePlatform platform(folder.Path("state/quillet"));
    choose(platform, chosen);
    EXPECT_STREQ(chosen.ProductName, "Feeder");
  }
  // A folder that cannot be is no error, and neither is a name that nothing has.
  PortablePlatform nowhere(folder.Path("state/quillet/default-source/below"));
  nowhere.User().WillChoose("Camera");
  EXPECT_EQ(choose(nowhere, chosen), TWRC_SUCCESS);
  choose(nowhere, chosen);
  EXPECT_STREQ(chosen.ProductName, "Camera");
  folder.Write("default-source", std::vector<Byte>(3, 'x'));
  PortablePlatform stranger(folder.Path(""));
  choose(stranger, chosen);
  EXPECT_STREQ(chosen.ProductName, "Flatbed");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path("state/quillet")), {}),
            1);
}

TEST(AnsiText, IsCutAtAWholeCharacter) {
  PortablePlatform platform;
  const SourceManager& sources = platform.Sources();
  EXPECT_EQ(sources.AnsiText("abc", 3), "abc");
  EXPECT_EQ(sources.AnsiText("abcd", 3), "abc");
  EXPECT_EQ(sources.AnsiText("ab\xC3\xA9", 4), "ab\xC3\xA9");
  EXPECT_EQ(sources.AnsiText("ab\xC3\xA9", 3), "ab");
  EXPECT_EQ(sources.AnsiText("\xF0\x9F\x96\xA8", 3), "");
}

}  // namespace
}  // namespace quillet
