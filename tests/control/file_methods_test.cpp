#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

#include "tests/support/environment_variable.h"
#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"
#include "tests/support/platform_with.h"
#include "tests/support/print_census.h"
#include "tests/support/scripted_codecs.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

// A control with a small picture over scripted codecs.
class FileMethods : public testing::Test {
 protected:
  FileMethods() {
    host.Assign(30, 20);
    host.TakeLog();
  }

  static std::string Content(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string FileName() { return VariantToString(host.Get("filename")); }
  Long CallForStatus(const char* name) { return VariantToLong(host.Call(name)); }
  void UserTypes(const std::string& name) { host.window->WillTypeFileName(name, true); }
  void ExpectNoNotification() {
    for (const std::string& line : host.TakeLog()) EXPECT_FALSE(line.starts_with("notify")) << line;
  }
  // Whether a save with this identifier or parameter was among the calls.
  bool SavedWith(const std::string& text) {
    return codecs->TakeCalls().find(text) != std::string::npos;
  }

  TemporaryFolder folder;
  const std::string there = folder.Write("there.tif", std::vector<Byte>{'o', 'l', 'd'});
  EnvironmentVariable temporaryFolder{kTemporaryFolder, folder.Path("")};
  std::optional<ScriptedCodecs> codecs;
  HostedControl host{300, 200, [this](const Platform& all) {
                       codecs.emplace(all);
                       return PlatformWith(*codecs, all);
                     }};
};

TEST_F(FileMethods, SaveTakesTheSettings) {
  const std::string file = folder.Path("page.jpg");
  host.Put("filename", file);
  host.Put("FileType", Long{twGIF});
  const struct {
    Integer quality;
    const char* passed;
  } cases[] = {{75, "=75)"}, {300, "=44)"}, {-1, "=255)"}, {0, "=0)"}};
  for (const auto& [quality, passed] : cases) {
    host.Put("Quality", quality);
    std::string calls;
    for (const Integer compression : {Integer{0}, Integer{1000}}) {
      host.Put("Compression", compression);
      EXPECT_EQ(CallForStatus("Save"), 0);
      const std::string made = codecs->TakeCalls();
      EXPECT_NE(made.find("Save(1," + file + ",{557cf402-"), std::string::npos) << made;
      EXPECT_NE(made.find(passed), std::string::npos) << made;
      EXPECT_TRUE(calls.empty() || calls == made) << made;
      calls = made;
    }
  }
  codecs->Answer("Save", CodecStatus::AccessDenied);
  EXPECT_EQ(CallForStatus("Save"), 12);
}

TEST_F(FileMethods, SaveWithoutAPictureTouchesNothing) {
  host.Put("filename", there);
  for (const PictureRef& none :
       {PictureRef(), host.contracts.pictures.EmptyPicture(), IconPicture(host.contracts)}) {
    host.PutPicture(none);
    EXPECT_EQ(CallForStatus("Save"), 2);
    EXPECT_NE(VariantToLong(host.Call("SaveAdd", there)), 0);
    EXPECT_EQ(Content(there), "old");
  }
}

TEST_F(FileMethods, SaveAddTakesItsArgumentOrElseTheProperty) {
  const std::string other = folder.Write("other.tif", std::vector<Byte>{'o', 'l', 'd'});
  host.Put("filename", other);
  host.Put("FileType", Long{twPNG});
  EXPECT_EQ(VariantToLong(host.Call("SaveAdd", there)), 0);
  EXPECT_TRUE(SavedWith("{557cf405-"));
  EXPECT_EQ(Content(there), "first+page+end");
  EXPECT_EQ(Content(other), "old");
  EXPECT_EQ(VariantToLong(host.Call("SaveAdd", std::string())), 0);
  EXPECT_EQ(Content(other), "first+page+end");
  EXPECT_EQ(FileName(), other);
}

TEST_F(FileMethods, LoadShowsTheFileUnzoomedAndNotifiesNothing) {
  host.Put("filename", there);
  host.Call("Zoom", Integer{400});
  host.TakeLog();
  host.Call("Load");
  ExpectNoNotification();
  EXPECT_EQ(host.Number("BitmapWidth"), ScriptedCodecs::kReadWidth);
  host.Call("Flip");
  host.Call("Flip");
  EXPECT_EQ(host.Screen().At(2, 1), Gradient(2, 1)) << "the zoom is forgotten";
}

TEST_F(FileMethods, LoadThatFailsDropsThePictureWhileTheScreenKeepsIt) {
  host.Call("Zoom", Integer{200});
  const PixelRows24 screen = host.Screen();
  host.Put("filename", folder.Path("none"));
  host.TakeLog();
  host.Call("Load");
  ExpectNoNotification();
  EXPECT_EQ(host.Picture(), nullptr);
  EXPECT_EQ(host.Number("BitmapWidth"), 0);
  EXPECT_EQ(host.Number("BitmapHeight"), 0);
  EXPECT_EQ(host.Screen(), screen);
}

TEST_F(FileMethods, ShowSaveTakesTheFormatFromTheName) {
  const struct {
    const char* name;
    Integer quality;
    IMAGE_TYPE type;
  } cases[] = {
      {"a.JPG", 0, twJPEG},    {"a.jpg", 70, twJPEG},   {"a.gif", 70, twGIF},
      {"a.Tif", 70, twTIFF},   {"a.png", 0, twPNG},     {"a.jpeg", 70, twJPEG},
      {"a.jpeg", 0, twBITMAP}, {"a.tiff", 70, twJPEG},  {"a.bmp", 70, twJPEG},
      {"a.bmp", 0, twBITMAP},  {"a.bmp", -1, twBITMAP}, {"a", 70, twJPEG},
      {"a", 0, twBITMAP},      {"ajpg", 0, twBITMAP},   {"x.jpg.bmp", 0, twBITMAP},
  };
  for (const auto& [name, quality, type] : cases) {
    SCOPED_TRACE(testing::Message() << name << " " << quality);
    host.Put("Quality", quality);
    host.Put("FileType", Long{99});
    host.TakeLog();
    UserTypes(name);
    host.Call("ShowSave", Omitted{}, Omitted{}, folder.Path(""));
    ExpectNoNotification();
    EXPECT_EQ(host.Number("FileType"), type);
    EXPECT_EQ(FileName(), folder.Path(name));
    EXPECT_TRUE(SavedWith(folder.Path(name) + ",{557cf40"));
    EXPECT_EQ(Content(folder.Path(name)), "first");
  }
}

TEST_F(FileMethods, ShowSaveAddAlwaysAppendsToATiff) {
  const std::string picture = folder.Write("there.png", std::vector<Byte>{'o', 'l', 'd'});
  UserTypes("there.png");
  host.Call("ShowSaveAdd", std::string("Title"), folder.Path(""));
  ExpectNoNotification();
  EXPECT_EQ(host.Number("FileType"), twTIFF);
  EXPECT_EQ(FileName(), picture);
  EXPECT_EQ(Content(picture), "first+page+end");
}

TEST_F(FileMethods, ShowLoadTakesTheNameOnly) {
  host.Put("FileType", Long{twGIF});
  host.TakeLog();
  UserTypes("there.tif");
  host.Call("ShowLoad", Omitted{}, Omitted{}, folder.Path(""));
  ExpectNoNotification();
  EXPECT_EQ(FileName(), there);
  EXPECT_EQ(host.Number("FileType"), twGIF);
  EXPECT_EQ(host.Number("BitmapWidth"), ScriptedCodecs::kReadWidth);
}

TEST_F(FileMethods, WhatFailsAfterADialogIsNotReported) {
  codecs->Answer("Startup", CodecStatus::GenericError);
  for (const char* const show : {"ShowSave", "ShowSaveAdd", "ShowLoad"}) {
    UserTypes(there);
    host.Call(show);
    EXPECT_EQ(FileName(), there);
    EXPECT_EQ(codecs->TakeCalls(), "Startup");
    host.Put("filename", std::string());
  }
  EXPECT_EQ(host.Picture(), nullptr);
}

TEST_F(FileMethods, ACancelledDialogChangesNothingButTheFilter) {
  host.Put("filename", std::string("before"));
  host.Put("FileType", Long{twGIF});
  host.TakeLog();
  const PictureRef picture = host.Picture();
  for (const char* const show : {"ShowSave", "ShowLoad"}) {
    Variant arguments[] = {std::string("Any|*"), std::string("a|b"), std::string("c|d")};
    Invoke(*host.control, NumberOf(show), Access::Method, arguments);
    EXPECT_EQ(VariantToString(arguments[0]), std::string("Any\0*\0", 6));
    EXPECT_EQ(VariantToString(arguments[1]), "a|b");
    EXPECT_EQ(VariantToString(arguments[2]), "c|d");
  }
  host.Call("ShowSaveAdd");
  ExpectNoNotification();
  EXPECT_EQ(FileName(), "before");
  EXPECT_EQ(host.Number("FileType"), twGIF);
  EXPECT_EQ(host.Picture(), picture);
  EXPECT_EQ(codecs->TakeCalls(), "");
}

TEST_F(FileMethods, AConvertedFilterComesBackFromACallThatFails) {
  host.Assign(400, 300);
  host.Screen();
  codecs->TakeCalls();
  // The box grows where the bars go, once the file is read; then there is nothing to show it in.
  host.onEvent = [&](Event, std::span<Variant>) {
    if (!codecs->TakeCalls().empty()) host.window.reset();
  };
  UserTypes(there);
  Variant arguments[] = {std::string("Any|*"), std::string(), std::string()};
  EXPECT_EQ(
      ErrorOf([&] { Invoke(*host.control, NumberOf("ShowLoad"), Access::Method, arguments); }),
      ErrorNumber::InvalidPropertyValue);
  EXPECT_EQ(VariantToString(arguments[0]), std::string("Any\0*\0", 6));
}

TEST_F(FileMethods, EventsComeWhileADialogIsOpen) {
  host.Put("BackColor", Long{0x123456});
  host.TakeLog();
  std::string before;
  host.onEvent = [&](Event, std::span<Variant>) { before = codecs->TakeCalls() + "nothing yet"; };
  UserTypes(there);
  host.Call("ShowLoad");
  EXPECT_EQ(before, "nothing yet");
  EXPECT_EQ(host.TakeLog().front(), "Paint");
}

TEST_F(FileMethods, AHostMayCloseItsWindowAndLetGoWhileADialogIsOpen) {
  host.Put("BackColor", Long{0x123456});
  const std::weak_ptr<TWAIN> control = host.control;
  host.onEvent = [&](Event, std::span<Variant>) {
    host.window.reset();
    host.control.reset();
  };
  UserTypes(there);
  TWAIN* const called = host.control.get();
  Invoke(*called, NumberOf("ShowLoad"), Access::Method, {});
  EXPECT_EQ(codecs->TakeCalls(), "") << "the dialog went with its owner";
  EXPECT_TRUE(control.expired());
  EXPECT_EQ(host.platform.Census(), CensusCounts{});
}

}  // namespace
}  // namespace quillet
