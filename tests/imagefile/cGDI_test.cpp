#include "imagefile/cGDI.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "embed/stage.h"
#include "tests/support/environment_variable.h"
#include "tests/support/faulty_platform.h"
#include "tests/support/pictures.h"
#include "tests/support/platform_with.h"
#include "tests/support/print_census.h"
#include "tests/support/scripted_codecs.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

const std::string kBmp = "{557cf400-1a04-11d3-9a73-0000f81ef32e}";
const std::string kTiff = "{557cf405-1a04-11d3-9a73-0000f81ef32e}";

std::string Quality(int value) {
  return "1:{1D5BE4B5-FA4A-452D-9CDD-5DB35105E7EB}*1:4=" + std::to_string(value);
}

std::string SaveFlag(int value) {
  return "1:{292266FC-AC40-47BF-8CFC-A85B89A655DE}*1:4=" + std::to_string(value);
}

class ImageFiles : public testing::Test {
 protected:
  ~ImageFiles() override {
    m_gdi.PuthBitmap(BitmapHandle::None);
    m_picture.reset();
    EXPECT_EQ(m_codecs.LiveImages(), 0);
    EXPECT_EQ(m_codecs.Starts(), 0);
    EXPECT_EQ(m_stage->Census(), CensusCounts{});
  }
  static std::string Content(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  Long Status(CodecStatus status) { return static_cast<Long>(status); }

  const std::unique_ptr<Stage> m_stage = MakeStage();
  Platform& m_platform = m_stage->Contracts();
  ScriptedCodecs m_codecs{m_platform};
  FaultyPlatform m_faulty{m_platform};
  Platform m_contracts = PlatformWith(m_codecs, m_faulty.Contracts());
  PictureRef m_picture = PictureOf(m_platform, 5, 4, Gradient);
  cGDI m_gdi{m_contracts};
  TemporaryFolder m_folder;
  const std::string m_file = m_folder.Path("file");
};

using Save = ImageFiles;

TEST_F(Save, TakesTheEncoderOfItsTypeAndTheQualityForEveryFormat) {
  m_gdi.PutBitmapPicture(m_picture);
  const struct {
    Long fileType;
    std::string encoder;
  } cases[] = {
      {0, kBmp},
      {1, "{557cf401-1a04-11D3-9A73-0000f81ef32e}"},
      {2, "{557cf402-1a04-11d3-9a73-0000f81ef32e}"},
      {3, kTiff},
      {4, "{557cf406-1a04-11d3-9a73-0000f81ef32e}"},
      {5, kBmp},
      {-1, kBmp},
      {0x10001, kBmp},
  };
  for (const auto& [fileType, encoder] : cases) {
    for (const Byte compression : {Byte{0}, Byte{9}}) {
      EXPECT_EQ(m_gdi.SaveImage(m_file, fileType, 75, compression), 0);
      EXPECT_EQ(m_codecs.TakeCalls(), "Startup FromHBITMAP Save(1," + m_file + "," + encoder + "," +
                                          Quality(75) + ") Dispose(1) Shutdown")
          << fileType;
    }
  }
}

TEST_F(Save, EndsAtTheFirstStepThatFailsAndAnswersItsStatus) {
  m_gdi.PutBitmapPicture(m_picture);
  const std::string save = "Save(1," + m_file + "," + kBmp + "," + Quality(255) + ")";
  const struct {
    const char* step;
    std::string calls;
  } cases[] = {
      {"Startup", "Startup"},
      {"FromHBITMAP", "Startup FromHBITMAP Shutdown"},
      {"Save", "Startup FromHBITMAP " + save + " Dispose(1) Shutdown"},
  };
  for (const auto& [step, calls] : cases) {
    ScriptedCodecs codecs(m_platform);
    codecs.Answer(step, CodecStatus::Win32Error);
    Platform contracts = PlatformWith(codecs, m_contracts);
    cGDI gdi(contracts);
    gdi.PutBitmapPicture(m_picture);
    EXPECT_EQ(gdi.SaveImage(m_file, 0, 255, 0), Status(CodecStatus::Win32Error));
    EXPECT_EQ(codecs.TakeCalls(), calls);
    EXPECT_EQ(codecs.LiveImages() + codecs.Starts(), 0);
    EXPECT_FALSE(fs::exists(m_file));
  }
}

TEST_F(Save, WithoutABitmapTouchesNoFile) {
  m_folder.Write("file", std::vector<Byte>{'o', 'l', 'd'});
  for (const PictureRef& picture :
       {PictureRef(), m_platform.pictures.EmptyPicture(), IconPicture(m_platform)}) {
    m_gdi.PutBitmapPicture(picture);
    EXPECT_EQ(m_gdi.SaveImage(m_file, 0, 70, 0), Status(CodecStatus::InvalidParameter));
    EXPECT_EQ(m_codecs.TakeCalls(), "Startup FromHBITMAP Shutdown");
    EXPECT_EQ(Content(m_file), "old");
  }
}

using Load = ImageFiles;

TEST_F(Load, MakesAPictureThatOwnsTheBitmap) {
  m_folder.Write("file", {});
  const PictureRef loaded = m_gdi.LoadImage(m_file);
  EXPECT_EQ(m_codecs.TakeCalls(),
            "Startup FromFile(" + m_file + ") ToHBITMAP(1,0) Dispose(1) Shutdown");
  ASSERT_TRUE(loaded);
  EXPECT_EQ(PixelsOf(m_contracts, loaded),
            RowsOf(ScriptedCodecs::kReadWidth, ScriptedCodecs::kReadHeight, Gradient));
  EXPECT_EQ(m_gdi.Width(), ScriptedCodecs::kReadWidth);
}

TEST_F(Load, GivesNothingWhenAStepFails) {
  m_folder.Write("file", {});
  const std::string decoded = "Startup FromFile(" + m_file + ")";
  EXPECT_FALSE(m_gdi.LoadImage(m_folder.Path("none")));
  EXPECT_EQ(m_codecs.TakeCalls(), "Startup FromFile(" + m_folder.Path("none") + ") Shutdown");

  m_faulty.FailCall("OleCreatePictureIndirect", 1);
  EXPECT_FALSE(m_gdi.LoadImage(m_file));
  EXPECT_EQ(m_codecs.TakeCalls(), decoded + " ToHBITMAP(1,0) Dispose(1) Shutdown");
  EXPECT_EQ(m_gdi.Width(), 0);

  m_codecs.Answer("ToHBITMAP", CodecStatus::OutOfMemory);
  EXPECT_FALSE(m_gdi.LoadImage(m_file));
  EXPECT_EQ(m_codecs.TakeCalls(), decoded + " ToHBITMAP(1,0) Dispose(1) Shutdown");
  m_codecs.Answer("Startup", CodecStatus::GenericError);
  EXPECT_FALSE(m_gdi.LoadImage(m_file));
  EXPECT_EQ(m_codecs.TakeCalls(), "Startup");
}

class SaveAdd : public ImageFiles {
 protected:
  SaveAdd() {
    m_folder.Write("file", std::vector<Byte>{'o', 'l', 'd'});
    fs::create_directory(m_temporaryFolder);
    m_gdi.PutBitmapPicture(m_picture);
  }
  // Names and contents of the files in the temporary folder.
  std::vector<std::pair<std::string, std::string>> Temporaries() const {
    std::vector<std::pair<std::string, std::string>> all;
    for (const auto& entry : fs::directory_iterator(m_temporaryFolder))
      all.emplace_back(entry.path().filename().string(), Content(entry.path().string()));
    return all;
  }
  // What is left behind is one file whose name begins as it should.
  void ExpectLeft(const std::string& content) {
    const auto left = Temporaries();
    ASSERT_EQ(left.size(), 1u);
    EXPECT_TRUE(left[0].first.starts_with("tmp")) << left[0].first;
    EXPECT_EQ(left[0].second, content);
    fs::remove(m_temporaryFolder + "/" + left[0].first);
  }

  const std::string m_temporaryFolder = m_folder.Path("temporary");
  const EnvironmentVariable m_variable{kTemporaryFolder, m_temporaryFolder};
};

TEST_F(SaveAdd, WritesPageAfterPageIntoATemporaryFileThatThenReplacesTheOld) {
  EXPECT_EQ(m_gdi.SaveAddImage(m_file), 0);
  std::string calls = m_codecs.TakeCalls();
  const std::size_t name =
      calls.find(fs::path(m_temporaryFolder + "/tmp").make_preferred().string());
  ASSERT_NE(name, std::string::npos);
  calls.replace(name, calls.find(',', name) - name, "TEMPORARY");
  EXPECT_EQ(calls, "Startup FromFile(" + m_file + ") Save(1,TEMPORARY," + kTiff + "," +
                       SaveFlag(18) + ") FromHBITMAP AddImage(1,2," + SaveFlag(23) + ") Add(1," +
                       SaveFlag(20) + ") Dispose(2) Dispose(1) Shutdown");
  EXPECT_EQ(Content(m_file), "first+page+end");
  EXPECT_TRUE(Temporaries().empty());
}

TEST_F(SaveAdd, AFailedStepLeavesTheFileAndTheTemporaryOne) {
  const struct {
    const char* step;
    const char* left;
    const char* lastCalls;
  } cases[] = {
      {"Startup", "", "Startup"},
      {"FromFile", "", ") Shutdown"},
      {"Save", "", ") Dispose(1) Shutdown"},
      {"FromHBITMAP", "first", " FromHBITMAP Dispose(1) Shutdown"},
      {"AddImage", "first", ") Dispose(2) Dispose(1) Shutdown"},
      {"Add", "first+page", ") Dispose(2) Dispose(1) Shutdown"},
  };
  for (const auto& [step, left, lastCalls] : cases) {
    SCOPED_TRACE(step);
    m_codecs.Answer(step, CodecStatus::OutOfMemory);
    EXPECT_EQ(m_gdi.SaveAddImage(m_file), Status(CodecStatus::OutOfMemory));
    m_codecs.Answer(step, CodecStatus::Ok);
    EXPECT_TRUE(m_codecs.TakeCalls().ends_with(lastCalls));
    EXPECT_EQ(Content(m_file), "old");
    ExpectLeft(left);
  }
}

TEST_F(SaveAdd, WithoutPictureOrWithoutFileChangesNothing) {
  m_gdi.PutBitmapPicture(nullptr);
  EXPECT_EQ(m_gdi.SaveAddImage(m_file), Status(CodecStatus::InvalidParameter));
  EXPECT_EQ(Content(m_file), "old");
  ExpectLeft("first");

  m_gdi.PutBitmapPicture(m_picture);
  const std::string none = m_folder.Path("none");
  EXPECT_EQ(m_gdi.SaveAddImage(none), Status(CodecStatus::FileNotFound));
  EXPECT_FALSE(fs::exists(none));
  ExpectLeft("");
}

TEST_F(SaveAdd, AnswersTheNumberOfAFileSystemErrorAfterTheImagesWereReleased) {
  const struct {
    const char* service;
    Long status;
    const char* content;
  } cases[] = {
      {"CopyFile", 61, "old"},
      {"DeleteFile", 70, "first+page+end"},
  };
  for (const auto& [service, status, content] : cases) {
    m_faulty.FailCall(service, 1);
    EXPECT_EQ(m_gdi.SaveAddImage(m_file), status);
    EXPECT_TRUE(m_codecs.TakeCalls().ends_with(" Dispose(2) Dispose(1) Shutdown"));
    EXPECT_EQ(Content(m_file), content);
    ExpectLeft("first+page+end");
  }
  m_faulty.FailCall("GetTempFileNameA", 1);
  EXPECT_EQ(m_gdi.SaveAddImage(m_file), 70);
  EXPECT_EQ(m_codecs.TakeCalls(), "");
}

TEST_F(SaveAdd, AnswersTheErrorOfACopyThatFindsNoMemory) {
  m_faulty.FailCall("memory of CopyFile", 1);
  EXPECT_EQ(m_gdi.SaveAddImage(m_file), 7);
  EXPECT_EQ(Content(m_file), "old");
  ExpectLeft("first+page+end");
}

TEST_F(SaveAdd, AReadOnlyFileIsRefusedAndStays) {
  fs::permissions(m_file, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  EXPECT_EQ(m_gdi.SaveAddImage(m_file), 70);
  EXPECT_EQ(Content(m_file), "old");
  ExpectLeft("first+page+end");
}

TEST_F(SaveAdd, WithoutATemporaryFolderStartsNothing) {
  fs::remove(m_temporaryFolder);
  EXPECT_EQ(m_gdi.SaveAddImage(m_file), 76);
  EXPECT_EQ(m_codecs.TakeCalls(), "");
  fs::create_directory(m_temporaryFolder);
}

}  // namespace
}  // namespace quillet
