#include "platform/contracts/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <vector>

#include "embed/stage.h"
#include "host/text.h"
#include "tests/contracts/platform_traits.h"
#include "tests/support/error_of.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

using enum ErrorNumber;

class FilesContract : public testing::Test {
 protected:
  static std::string Content(const std::string& name) {
    std::ifstream file(PathOf(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Write(const std::string& name, const std::vector<std::string>& texts) {
    std::vector<std::span<const Byte>> pieces;
    for (const std::string& text : texts)
      pieces.emplace_back(reinterpret_cast<const Byte*>(text.data()), text.size());
    files.WriteFile(name, pieces);
  }

  std::unique_ptr<Stage> m_platform = MakeStage();
  Files& files = m_platform->Contracts().files;
  TemporaryFolder m_folder;
};

TEST_F(FilesContract, TemporaryFilesAreNewEmptyAndTheOwnersAlone) {
  const std::string first = files.GetTempFileNameA(m_folder.Path(""), "ptw");
  const std::string second = files.GetTempFileNameA(m_folder.Path(""), "ptw");
  EXPECT_NE(first, second);
  EXPECT_TRUE(first.starts_with(m_folder.Path("ptw")));
  EXPECT_EQ(std::filesystem::file_size(first), 0u);
  if (TraitsOfPlatform().filesShowWhoMayRead) {
    const auto permissions = std::filesystem::status(first).permissions();
    EXPECT_EQ(
        permissions & (std::filesystem::perms::group_all | std::filesystem::perms::others_all),
        std::filesystem::perms::none);
  }
  EXPECT_TRUE(files.GetTempPathA().ends_with(TraitsOfPlatform().folderSeparator));
  std::filesystem::create_directory(m_folder.Path("folder"));
  EXPECT_TRUE(std::filesystem::exists(files.GetTempFileNameA(m_folder.Path("folder"), "ptw")));
  EXPECT_FALSE(std::filesystem::is_empty(m_folder.Path("folder")));
}

TEST_F(FilesContract, PathsMayBeLongAndInAnyScript) {
  const std::string shorter = m_folder.Path("Gr\u00F6\u00DFe \u540D");
  std::filesystem::path longer = PathOf(shorter) / std::string(120, 'a');
  longer /= std::string(120, 'b');
  std::error_code refused;  // the library that makes the folder may know no name as long
  std::filesystem::create_directories(longer, refused);
  for (const auto& folder : {PathOf(shorter), longer}) {
    if (folder == longer && refused) continue;
    const std::u8string text = folder.u8string();
    const std::string name = files.GetTempFileNameA({text.begin(), text.end()}, "ptw");
    Write(name, {"content"});
    EXPECT_EQ(Content(name), "content");
    files.CopyFile(name, name + "2");
    EXPECT_EQ(Content(name + "2"), "content");
    files.DeleteFile(name);
    EXPECT_FALSE(std::filesystem::exists(PathOf(name)));
  }
}

TEST_F(FilesContract, PiecesBecomeTheWholeContent) {
  const std::string name = m_folder.Path("file");
  const std::string large(3'000'001, 'x');
  Write(name, {"head", "", large, "tail"});
  EXPECT_EQ(Content(name), "head" + large + "tail");
  std::vector<std::string> many(100);
  for (std::size_t i = 0; i < many.size(); ++i) many[i] = std::to_string(i) + ",";
  Write(name, many);
  EXPECT_EQ(Content(name), std::accumulate(many.begin(), many.end(), std::string()));
  Write(name, {});
  EXPECT_EQ(Content(name), "");
}

TEST_F(FilesContract, ACopyReplacesTheOtherFile) {
  const std::string source = m_folder.Path("source");
  const std::string target = m_folder.Path("t\u00E4rget");
  const std::string large(3'000'001, 'x');
  Write(source, {large});
  files.CopyFile(source, target);
  EXPECT_EQ(Content(target), large);
  Write(source, {"short"});
  files.CopyFile(source, target);
  EXPECT_EQ(Content(target), "short");
  EXPECT_EQ(Content(source), "short");
}

TEST_F(FilesContract, AFailedCopyLeavesTheOldFileAndNothingElse) {
  const std::string source = m_folder.Path("source");
  const std::string target = m_folder.Path("target");
  const std::string folder = m_folder.Path("folder");
  Write(source, {"new"});
  Write(target, {"old"});
  std::filesystem::create_directory(folder);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(m_folder.Path("none"), target); }), FileNotFound);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(m_folder.Path("none/file"), target); }), PathNotFound);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(folder, target); }), PathFileAccess);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, folder); }), PathFileAccess);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, m_folder.Path("none/file")); }), PathNotFound);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, source + "/below"); }), PathNotFound);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, ""); }), PathFileAccess);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile("", target); }), PathFileAccess);
  using std::filesystem::perms;
  const perms readOnly = perms::owner_read | perms::group_read;
  std::filesystem::permissions(target, readOnly);
  EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, target); }), PermissionDenied);
  EXPECT_EQ(ErrorOf([&] { files.DeleteFile(target); }), PermissionDenied);
  EXPECT_EQ(Content(target), "old");
  EXPECT_EQ(std::filesystem::status(target).permissions() & perms::owner_write, perms::none);
  std::ptrdiff_t entries = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(m_folder.Path("")))
    ++entries;
  EXPECT_EQ(entries, 3);
}

TEST_F(FilesContract, ErrorsCarryTheirNumbers) {
  const std::string file = m_folder.Path("file");
  Write(file, {"x"});
  EXPECT_EQ(ErrorOf([&] { Write(m_folder.Path("none/file"), {"x"}); }), PathNotFound);
  EXPECT_EQ(ErrorOf([&] { Write(file + "/below", {"x"}); }), PathNotFound);
  EXPECT_EQ(ErrorOf([&] { Write(m_folder.Path(""), {"x"}); }), PathFileAccess);
  EXPECT_EQ(ErrorOf([&] { Write("", {"x"}); }), PathFileAccess);
  EXPECT_EQ(ErrorOf([&] { files.DeleteFile(m_folder.Path("none")); }), FileNotFound);
  EXPECT_EQ(ErrorOf([&] { files.DeleteFile(m_folder.Path("none/file")); }), PathNotFound);
  EXPECT_EQ(ErrorOf([&] { files.DeleteFile(m_folder.Path("")); }), PathFileAccess);
  EXPECT_EQ(ErrorOf([&] { files.GetTempFileNameA(m_folder.Path("none"), "ptw"); }), PathNotFound);
}

}  // namespace
}  // namespace quillet
