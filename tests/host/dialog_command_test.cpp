#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/run_command.h"
#include "tests/support/temporary_folder.h"

// File dialogs whose user the steps are.

namespace quillet {
namespace {

// As the command prints it.
std::string Printed(std::string text) {
  for (std::size_t at = 0; (at = text.find('\\', at)) != std::string::npos; at += 2)
    text.insert(at, 1, '\\');
  return text;
}

TEST(DialogCommand, TheUserDoesWhatWasSaid) {
  const TemporaryFolder folder;
  const std::string there = folder.Write("there.tif", {});
  const std::string show = "ShowSave:,," + folder.Path("");
  const struct {
    std::vector<std::string> steps;
    std::string filename, fileType;
  } cases[] = {
      {{show}, "", "0"},
      {{"@cancel", "@answer:x.png", show}, "", "0"},
      {{"@answer:x, y=z.png", show}, folder.Path("x, y=z.png"), "4"},
      {{"@answer-no:there.tif", show}, "", "0"},
      {{"@answer-no:there.tif", "@answer:x.gif", show}, folder.Path("x.gif"), "2"},
      {{"@answer:" + there, "ShowSaveAdd"}, there, "3"},
      {{"@answer:none", "ShowLoad"}, "", "0"},
      {{"@answer:none", "@answer:" + there, "ShowLoad"}, there, "0"},
  };
  for (const auto& dialog : cases) {
    std::vector<std::string> steps = dialog.steps;
    steps.insert(steps.end(), {"filename", "FileType"});
    const Outcome outcome = Quillet(steps);
    EXPECT_EQ(outcome.out, Printed(dialog.filename) + "\n" + dialog.fileType + "\n") << steps[0];
    EXPECT_EQ(outcome.status, 0) << outcome.err;
  }
}

TEST(DialogCommand, AFilterComesBackAsTheDialogHadIt) {
  for (const char* const step : {"ShowSave:Images|*.jpg;*.png", "ShowLoad:Images|*.jpg;*.png|"})
    EXPECT_EQ(Quillet({"--byref", "@cancel", step}).out,
              "sFilter -> \"Images\\0*.jpg;*.png\\0\"\n");
  EXPECT_EQ(
      Quillet({"--byref", "ShowSave", "ShowLoad:,Title", "ShowSaveAdd:Title", "filename"}).out,
      "\n");
}

}  // namespace
}  // namespace quillet
