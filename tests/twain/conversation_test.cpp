// What passes between cTwain and a source, and what the picture is made by way of.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "embed/stage.h"
#include "tests/support/environment_variable.h"
#include "tests/support/faulty_platform.h"
#include "tests/support/platform_with.h"
#include "tests/support/print_census.h"
#include "tests/support/scripted_source_manager.h"
#include "tests/support/temporary_folder.h"
#include "twain/cTwain.h"

namespace quillet {
namespace {

class Conversation : public testing::Test {
 protected:
  Long Acquire() { return m_twain.Acquire(m_picture, 75, twRGB, true, false, ""); }

  // The files in the temporary folder.
  std::vector<std::filesystem::path> FilesLeft() const {
    const std::filesystem::directory_iterator files(m_folder.Path(""));
    return {begin(files), end(files)};
  }

  TemporaryFolder m_folder;
  EnvironmentVariable m_temporaryFolder{kTemporaryFolder, m_folder.Path("")};
  std::unique_ptr<Stage> m_stage = MakeStage();
  ScriptedSourceManager m_sources{*m_stage};
  std::unique_ptr<SourceManager> m_manager = AsPrograms(m_sources);
  FaultyPlatform m_faulty{m_stage->Contracts()};
  Platform m_contracts = PlatformWith(*m_manager, m_faulty.Contracts());
  cTwain m_twain{m_contracts};
  PictureRef m_picture;
};

template <typename T>
bool IsZero(const void* data) {
  const auto* const bytes = static_cast<const Byte*>(data);
  return std::all_of(bytes, bytes + sizeof(T), [](Byte byte) { return byte == 0; });
}

TEST_F(Conversation, RecordsAreEmptyUntilTheSourceFillsThem) {
  int asked = 0;
  m_sources.Do("OPENDS", [&](void* pData) {
    EXPECT_TRUE(IsZero<TW_IDENTITY>(pData)) << "not the one of the call before";
    std::memset(pData, 'x', sizeof(TW_IDENTITY));
    ++asked;
    return TWRC_SUCCESS;
  });
  m_sources.Do("GET DAT_IMAGENATIVEXFER", [&](void* pData) {
    EXPECT_TRUE(IsZero<GlobalHandle>(pData));
    ++asked;
    return TWRC_CANCEL;
  });
  m_sources.Do("ENDXFER", [&](void* pData) {
    EXPECT_TRUE(IsZero<TW_PENDINGXFERS>(pData));
    ++asked;
    return TWRC_SUCCESS;
  });
  EXPECT_EQ(Acquire(), 1);
  EXPECT_EQ(Acquire(), 1);
  EXPECT_EQ(asked, 6);
}

TEST_F(Conversation, AnImageThatComesWithARefusalIsFreed) {
  for (const TW_UINT16 answer : {TWRC_CANCEL, TWRC_FAILURE, TWRC_SUCCESS}) {
    m_sources.Do("GET DAT_IMAGENATIVEXFER", [&](void* pData) {
      const GlobalHandle image = m_contracts.memory.GlobalAlloc(48);
      std::memcpy(pData, &image, sizeof image);
      return answer;
    });
    EXPECT_EQ(Acquire(), 1);
    EXPECT_EQ(m_picture, nullptr);
    EXPECT_EQ(m_stage->Census(), CensusCounts{});
  }
}

TEST_F(Conversation, TheTemporaryFileIsTheImageBehindABmpFileHeader) {
  const struct {
    Long width, height;
    int depth;
    std::size_t following;
    std::vector<Byte> header;
  } cases[] = {
      {100, 10, 24, 3000, {'B', 'M', 0xEE, 0x0B, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0}},
      {4, 1, 8, 1028, {'B', 'M', 0x3A, 0x04, 0, 0, 0, 0, 0, 0, 0x36, 0x04, 0, 0}},
      {1, 2, 1, 16, {'B', 'M', 70, 0, 0, 0, 0, 0, 0, 0, 62, 0, 0, 0}},
  };
  for (const auto& [width, height, depth, following, header] : cases) {
    m_sources.image = PackedBitmap(width, height, depth, following);
    for (std::size_t i = 40; i < m_sources.image.size(); ++i)
      m_sources.image[i] = static_cast<Byte>(7 * i);
    m_faulty.FailCall("LoadPicture", 1);
    EXPECT_EQ(Acquire(), 1);
    const auto left = FilesLeft();
    ASSERT_EQ(left.size(), 1u) << "the loader that rejects it leaves it";
    EXPECT_TRUE(left[0].filename().string().starts_with("ptw"));
    std::vector<Byte> expected = header;
    expected.insert(expected.end(), m_sources.image.begin(), m_sources.image.end());
    {
      std::ifstream file(left[0], std::ios::binary);
      const std::vector<Byte> bytes{std::istreambuf_iterator<char>(file), {}};
      EXPECT_EQ(bytes, expected) << depth;
    }
    std::filesystem::remove(left[0]);
  }
}

TEST_F(Conversation, AWindowThatIsRefusedStopsASourceSelectionToo) {
  m_faulty.FailCall("CreateWindowExA", 1);
  EXPECT_EQ(m_twain.SelectDataSource(""), 1);
  EXPECT_EQ(m_sources.TakeCalls(), "");
  m_faulty.FailCall("DestroyWindow", 1);
  EXPECT_EQ(m_twain.SelectDataSource(""), 1);
  EXPECT_EQ(m_sources.TakeCalls(), "OPENDSM OPENDS USERSELECT CLOSEDS CLOSEDSM");
  EXPECT_EQ(m_stage->Census(), CensusCounts{});
}

}  // namespace
}  // namespace quillet
