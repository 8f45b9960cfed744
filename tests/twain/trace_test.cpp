#include "twain/trace.h"

#include <gtest/gtest.h>

#include <cstring>

#include "embed/stage.h"
#include "twain/protocol_names.h"

namespace quillet {
namespace {

// Answers every operation with the same code, after it did something to the data.
class OneAnswer : public SourceManager {
 public:
  TW_UINT16 DSM_Entry(TW_IDENTITY*, TW_IDENTITY*, TW_UINT32, TW_UINT16, TW_UINT16,
                      void* pData) override {
    if (act) act(pData);
    return answer;
  }
  std::string AnsiText(const std::string& text, std::size_t) const override { return text; }

  TW_UINT16 answer = TWRC_SUCCESS;
  std::function<void(void*)> act;
};

class Trace : public testing::Test {
 protected:
  std::string Call(TW_UINT32 group, TW_UINT16 argumentType, TW_UINT16 message, void* data) {
    TW_IDENTITY application{};
    m_trace.DSM_Entry(&application, nullptr, group, argumentType, message, data);
    return m_line;
  }
  GlobalHandle Block(const std::vector<Byte>& bytes) {
    const GlobalHandle block = m_memory.GlobalAlloc(bytes.size());
    const GlobalLockGuard lock(m_memory, block);
    std::memcpy(lock.get(), bytes.data(), bytes.size());
    return block;
  }
  // The line of a GET that is answered with that container.
  std::string Get(TW_UINT16 cap, TW_UINT16 containerType, const std::vector<Byte>& bytes) {
    TW_CAPABILITY capability{cap, containerType, Block(bytes)};
    return Call(DG_CONTROL, DAT_CAPABILITY, MSG_GET, &capability);
  }

  std::unique_ptr<Stage> m_stage = MakeStage();
  GlobalMemory& m_memory = m_stage->Contracts().memory;
  OneAnswer m_manager;
  std::string m_line;
  TracingSourceManager m_trace{m_manager, m_memory, [&](const std::string& l) { m_line = l; }};
};

TEST_F(Trace, SaysWhatIsSentAndWhatComesBack) {
  TW_CAPABILITY resolution{ICAP_XRESOLUTION, TWON_ONEVALUE, Block({7, 0, 75, 0, 0, 0x80})};
  EXPECT_EQ(Call(DG_CONTROL, DAT_CAPABILITY, MSG_SET, &resolution),
            "DG_CONTROL DAT_CAPABILITY MSG_SET ICAP_XRESOLUTION FIX32 75.5 -> TWRC_SUCCESS");
  EXPECT_EQ(Get(CAP_UICONTROLLABLE, TWON_ONEVALUE, {6, 0, 1, 0, 0, 0}),
            "DG_CONTROL DAT_CAPABILITY MSG_GET CAP_UICONTROLLABLE -> TWRC_SUCCESS BOOL True");
  EXPECT_TRUE(
      Get(ICAP_PIXELTYPE, TWON_ENUMERATION, {4, 0, 2, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0})
          .ends_with("TWRC_SUCCESS UINT16 one of 0 2 at index 1"));
  EXPECT_TRUE(Get(ICAP_XRESOLUTION, TWON_RANGE, {7, 0, 50,  0, 0, 0, 0xB0, 4, 0, 0, 1, 0,  //
                                                 0, 0, 100, 0, 0, 0, 75,   0, 0, 0})
                  .ends_with("FIX32 from 50.0 to 1200.0 step 1.0 now 75.0"));
  TW_IMAGELAYOUT layout{{{0, 0}, {0, 0}, {8, 0x4480}, {11, 0}}, 0, 0, 0};
  m_manager.answer = TWRC_CHECKSTATUS;
  EXPECT_EQ(Call(DG_IMAGE, DAT_IMAGELAYOUT, MSG_SET, &layout),
            "DG_IMAGE DAT_IMAGELAYOUT MSG_SET 0.0 0.0 8.2676 11.0 -> TWRC_CHECKSTATUS");
  TW_STATUS status{TWCC_SEQERROR, 0};
  EXPECT_EQ(Call(DG_CONTROL, DAT_STATUS, MSG_GET, &status),
            "DG_CONTROL DAT_STATUS MSG_GET -> TWRC_CHECKSTATUS TWCC_SEQERROR");
}

TEST_F(Trace, TrustsNoContainer) {
  EXPECT_TRUE(
      Get(0x8001, TWON_ONEVALUE, {7, 0, 1}).ends_with("0x8001 -> TWRC_SUCCESS (cut short)"));
  EXPECT_TRUE(Get(0x8001, TWON_RANGE, {7, 0, 1}).ends_with("(cut short)"));
  EXPECT_TRUE(
      Get(0x8001, TWON_ARRAY, {4, 0, 0xFF, 0xFF, 0xFF, 0xFF, 5, 0}).ends_with("UINT16 5 ..."));
  EXPECT_TRUE(Get(0x8001, 99, {4, 0}).ends_with("container 99"));
  TW_CAPABILITY none{ICAP_XRESOLUTION, TWON_ONEVALUE, GlobalHandle::None};
  EXPECT_TRUE(Call(DG_CONTROL, DAT_CAPABILITY, MSG_GET, &none).ends_with("(no container)"));
  GlobalHandle image = Block({1, 2, 3});
  m_manager.answer = TWRC_XFERDONE;
  EXPECT_EQ(Call(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, &image),
            "DG_IMAGE DAT_IMAGENATIVEXFER MSG_GET -> TWRC_XFERDONE (cut short)");
  EXPECT_EQ(Call(7, 0x777, 0x8888, nullptr), "0x0007 0x0777 0x8888 -> TWRC_XFERDONE");
}

TEST_F(Trace, KeepsANameOfAnyCharactersOnOneLine) {
  TW_IDENTITY source{};
  std::strcpy(source.ProductName, "a\nb\r\"c\"\\");
  EXPECT_EQ(Call(DG_CONTROL, DAT_IDENTITY, MSG_CLOSEDS, &source),
            R"(DG_CONTROL DAT_IDENTITY MSG_CLOSEDS "a\nb\r\"c\"\\" -> TWRC_SUCCESS)");
}

TEST(ProtocolNames, AreFoundInAnyCase) {
  EXPECT_EQ(ProtocolValue(ProtocolConstant::Message, "msg_enableds"), MSG_ENABLEDS);
  EXPECT_EQ(ProtocolValue(ProtocolConstant::ReturnCode, "TWRC_CANCEL"), TWRC_CANCEL);
  EXPECT_FALSE(ProtocolValue(ProtocolConstant::Message, "TWRC_CANCEL"));
}

}  // namespace
}  // namespace quillet
