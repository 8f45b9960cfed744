#include "platform/portable/portable_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/environment_variable.h"
#include "tests/support/error_of.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

TEST(PortableFiles, TheTemporaryFolderIsTheUsersOwnChoice) {
  PortableFiles files;
  {
    const EnvironmentVariable folder("TMPDIR", "/some/where");
    EXPECT_EQ(files.GetTempPathA(), "/some/where/");
  }
  const EnvironmentVariable none("TMPDIR", "");
  EXPECT_EQ(files.GetTempPathA(), "/tmp/");
}

TEST(PortableFiles, AFullDiskIsToldApart) {
  PortableFiles files;
  const Byte byte = 1;
  const std::span<const Byte> piece(&byte, 1);
  EXPECT_EQ(ErrorOf([&] { files.WriteFile("/dev/full", {&piece, 1}); }), ErrorNumber::DiskFull);
}

}  // namespace
}  // namespace quillet
