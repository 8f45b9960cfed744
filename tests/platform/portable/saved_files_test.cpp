// What stood in a file before is there after every save that fails.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <stdexcept>

#include "imagefile/cGDI.h"
#include "platform/portable/portable_platform.h"
#include "tests/support/codec_driver.h"
#include "tests/support/environment_variable.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

constexpr Long kInvalidParameter = 2;
constexpr Long kWin32Error = 7;
constexpr Long kFileNotFound = 10;
constexpr Long kAccessDenied = 12;
constexpr Long kDiskFull = 61;

// The superuser may write anywhere: what is refused to others is tried as one of them.
class AsAnybody {
 public:
  AsAnybody() {
    constexpr uid_t kNobody = 65534;
    if (m_before == 0 && seteuid(kNobody) != 0) throw std::runtime_error("still the superuser");
  }
  AsAnybody(const AsAnybody&) = delete;
  AsAnybody& operator=(const AsAnybody&) = delete;
  ~AsAnybody() {
    if (geteuid() != m_before && seteuid(m_before) != 0) std::abort();
  }

 private:
  uid_t m_before = geteuid();
};

class SavedFiles : public testing::Test {
 protected:
  SavedFiles() {
    fs::create_directory(m_temporaries);
    fs::create_directory(m_folder.Path("folder"));
    m_gdi.PutBitmapPicture(m_picture);
  }

  // Names and contents below the folder, but for what SaveAdd leaves behind.
  std::map<std::string, std::vector<Byte>> Files() const {
    std::map<std::string, std::vector<Byte>> all;
    for (const auto& entry : fs::recursive_directory_iterator(m_folder.Path(""))) {
      const std::string name = entry.path().string();
      if (entry.is_regular_file() && !name.starts_with(m_temporaries)) all[name] = FileBytes(name);
    }
    return all;
  }
  // Every type, and a further page where a file of one is there already.
  void ExpectRefused(const std::string& name, Long saved, Long added) {
    const auto before = Files();
    for (const IMAGE_TYPE type : {twBITMAP, twJPEG, twGIF, twTIFF, twPNG}) {
      EXPECT_EQ(m_gdi.SaveImage(name, type, 75, 0), saved) << name << ' ' << type;
      EXPECT_EQ(Files(), before) << name << ' ' << type;
    }
    EXPECT_EQ(m_gdi.SaveAddImage(name), added) << name;
    EXPECT_EQ(Files(), before) << name;
  }

  TemporaryFolder m_folder;
  const std::string m_temporaries = m_folder.Path("temporaries");
  const EnvironmentVariable m_variable{"TMPDIR", m_temporaries};
  PortablePlatform m_platform;
  PictureRef m_picture = PictureOf(m_platform.Contracts(), 300, 200, [](Long x, Long y) {
    return Pixel{static_cast<Byte>(x * y), static_cast<Byte>(x ^ y), static_cast<Byte>(x * 7 + y)};
  });
  cGDI m_gdi{m_platform.Contracts()};
};

TEST_F(SavedFiles, StayWhereNothingCanBeWritten) {
  const std::string page = m_folder.Path("page.tif");
  ASSERT_EQ(m_gdi.SaveImage(page, twTIFF, 75, 0), 0);
  ExpectRefused("", kInvalidParameter, kInvalidParameter);
  ExpectRefused(m_folder.Path("folder"), kWin32Error, kWin32Error);
  ExpectRefused(m_folder.Path("folder/"), kWin32Error, kWin32Error);
  ExpectRefused(m_folder.Path("none/page.tif"), kFileNotFound, kFileNotFound);
  ExpectRefused(page + "/page.tif", kFileNotFound, kFileNotFound);
  ExpectRefused(m_folder.Path(std::string(300, 'n')), kWin32Error, kWin32Error);
  ExpectRefused("/dev/null", kWin32Error, kWin32Error);
  chmod(page.c_str(), 0444);
  ExpectRefused(page, kAccessDenied, 70);
}

TEST_F(SavedFiles, StayInAReadOnlyFolder) {
  const std::string folder = m_folder.Path("folder");
  const std::string page = folder + "/page.tif";
  ASSERT_EQ(m_gdi.SaveImage(page, twTIFF, 75, 0), 0);
  chmod(m_folder.Path("").c_str(), 0755);
  chmod(m_temporaries.c_str(), 0777);
  chmod(page.c_str(), 0666);
  chmod(folder.c_str(), 0555);
  {
    const AsAnybody user;
    ExpectRefused(page, kAccessDenied, 70);
    EXPECT_EQ(m_gdi.SaveImage(folder + "/new.png", twPNG, 75, 0), kAccessDenied);
  }
  chmod(folder.c_str(), 0755);
  EXPECT_EQ(Files().size(), 1u);
}

// Wherever the room ends: before the first byte, among the pixels, at the very end.
TEST_F(SavedFiles, StayWhenTheDiskFillsUp) {
  for (const IMAGE_TYPE type : {twBITMAP, twJPEG, twGIF, twTIFF, twPNG}) {
    const std::string name = m_folder.Path(std::to_string(type));
    ASSERT_EQ(m_gdi.SaveImage(name, type, 75, 0), 0);
    const std::uintmax_t size = fs::file_size(name);
    WriteBytes(name, {'o', 'l', 'd'});
    const auto before = Files();
    for (const std::uintmax_t room : {std::uintmax_t{0}, std::uintmax_t{5}, size / 2, size - 1}) {
      const FileSizeLimit limit(room);
      EXPECT_EQ(m_gdi.SaveImage(name, type, 75, 0), kWin32Error) << type << ' ' << room;
      EXPECT_EQ(m_gdi.SaveImage(name + "new", type, 75, 0), kWin32Error) << type << ' ' << room;
    }
    EXPECT_EQ(Files(), before) << type;
  }
}

TEST_F(SavedFiles, StayWhenThereIsNoRoomForAnotherPage) {
  const std::string page = m_folder.Path("page.tif");
  ASSERT_EQ(m_gdi.SaveImage(page, twTIFF, 75, 0), 0);
  const std::uintmax_t size = fs::file_size(page);
  const auto before = Files();
  for (const std::uintmax_t room :
       {std::uintmax_t{0}, size / 2, size, size * 3 / 2, size * 2 - 9}) {
    const FileSizeLimit limit(room);
    const Long status = m_gdi.SaveAddImage(page);
    EXPECT_TRUE(status == kWin32Error || status == kDiskFull) << status << ", room " << room;
    EXPECT_EQ(Files(), before) << room;
  }
  EXPECT_EQ(m_gdi.SaveAddImage(page), 0);
}

TEST_F(SavedFiles, KeepPermissionsAndNamesOfAnyScript) {
  for (const IMAGE_TYPE type : {twBITMAP, twJPEG, twGIF, twTIFF, twPNG}) {
    const std::string name = m_folder.Path("Größe 名 " + std::to_string(type));
    WriteBytes(name, {'o'});
    chmod(name.c_str(), 0640);
    EXPECT_EQ(m_gdi.SaveImage(name, type, 75, 0), 0);
    EXPECT_EQ(m_gdi.SaveAddImage(name), 0);
    EXPECT_EQ(fs::status(name).permissions(), fs::perms{0640});
    const PictureRef loaded = m_gdi.LoadImage(name);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(m_gdi.Width(), 300);
    m_gdi.PutBitmapPicture(m_picture);
  }
}

}  // namespace
}  // namespace quillet
