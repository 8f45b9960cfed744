#include "platform/portable/portable_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/support/environment_variable.h"
#include "tests/support/error_of.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

TEST(PortableFiles, TheTemporaryFolderIsTheUsersOwnChoice) {
  PortableFiles files;
  {
    const EnvironmentVariable folder(kTemporaryFolder, "/some/where");
    EXPECT_EQ(files.GetTempPathA(), "/some/where/");
  }
  const EnvironmentVariable none(kTemporaryFolder, "");
  EXPECT_EQ(files.GetTempPathA(), "/tmp/");
}

TEST(PortableFiles, AFullDiskIsToldApart) {
  PortableFiles files;
  const Byte byte = 1;
  const std::span<const Byte> piece(&byte, 1);
  EXPECT_EQ(ErrorOf([&] { files.WriteFile("/dev/full", {&piece, 1}); }), ErrorNumber::DiskFull);
}

class ReplacedFile : public testing::Test {
 protected:
  static std::string Content(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  PortableFiles files;
  TemporaryFolder m_folder;
  const std::string m_source = m_folder.Write("source", std::vector<Byte>{'n', 'e', 'w'});
  const std::string m_target = m_folder.Write("target", std::vector<Byte>{'o', 'l', 'd'});
};

TEST_F(ReplacedFile, IsWhatTheLinksEndAt) {
  fs::create_directory(m_folder.Path("deep"));
  fs::create_symlink("../target", m_folder.Path("deep/second"));
  fs::create_symlink("deep/second", m_folder.Path("first"));
  files.CopyFile(m_source, m_folder.Path("first"));
  EXPECT_TRUE(fs::is_symlink(m_folder.Path("first")));
  EXPECT_TRUE(fs::is_symlink(m_folder.Path("deep/second")));
  EXPECT_EQ(Content(m_target), "new");

  fs::create_symlink("not yet", m_folder.Path("dangling"));
  files.CopyFile(m_source, m_folder.Path("dangling"));
  EXPECT_EQ(Content(m_folder.Path("not yet")), "new");
  fs::create_symlink("round", m_folder.Path("round"));
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(m_source, m_folder.Path("round")); }),
            ErrorNumber::PathFileAccess);
}

TEST_F(ReplacedFile, KeepsItsPermissionsAndANewOneHasTheUsual) {
  chmod(m_target.c_str(), 0640);
  const mode_t mask = umask(027);
  files.CopyFile(m_source, m_target);
  files.CopyFile(m_source, m_folder.Path("fresh"));
  umask(mask);
  struct stat status;
  ASSERT_EQ(stat(m_target.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777u, 0640u);
  ASSERT_EQ(stat(m_folder.Path("fresh").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777u, 0640u);
}

TEST_F(ReplacedFile, SurvivesADiskThatFillsUp) {
  m_folder.Write("source", std::vector<Byte>(100'000));
  const auto error = [&] {
    const FileSizeLimit limit(70'000);
    return ErrorOf([&] { files.CopyFile(m_source, m_target); });
  }();
  EXPECT_EQ(error, ErrorNumber::DiskFull);
  EXPECT_EQ(Content(m_target), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.Path("")), {}), 2);
}

TEST_F(ReplacedFile, IsNoDevice) {
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(m_source, "/dev/null"); }), ErrorNumber::PathFileAccess);
}

}  // namespace
}  // namespace quillet
