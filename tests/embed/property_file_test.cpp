#include "embed/property_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "base/runtime_error.h"
#include "embed/base64.h"
#include "embed/control.h"
#include "embed/stage.h"
#include "tests/support/error_of.h"
#include "tests/support/icon_file.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

std::string Refusal(const std::string& text) {
  try {
    ParseProperties(text);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(PropertyText, ReadsWhatItWrites) {
  const std::string text =
      "Quality = 90\nLarge = 4294967296\nHalf = -0.5\nHuge = 1.7976931348623157e+308\nEnabled = "
      "False\nAutoRedraw = True\n"
      "Filename = \"C:\\\\a \\\"b\\\"\\n\\r\\0 = # \xC3\xA9\"\nEmpty = \"\"\nIcon = picture\n  "
      "AAEC/w==\n"
      "None = picture\n";
  const std::vector<Property> properties = ParseProperties(text);
  EXPECT_EQ(FormatProperties(properties), text);
  ASSERT_EQ(properties.size(), 10u);
  EXPECT_EQ(std::get<Variant>(properties[0].value), Variant(Long{90}));
  EXPECT_EQ(std::get<Variant>(properties[4].value), Variant(false));
  EXPECT_EQ(std::get<Variant>(properties[6].value),
            Variant(std::string("C:\\a \"b\"\n\r\0 = # \xC3\xA9", 18)));
  EXPECT_EQ(std::get<PictureFile>(properties[8].value).bytes, (std::vector<Byte>{0, 1, 2, 255}));
}

TEST(PropertyText, PassesOverCommentsBlankLinesAndAnEditorsMarks) {
  const auto properties = ParseProperties(
      "\xEF\xBB\xBF# all\r\n\r\n  # indented\r\nA=1\r\nB = picture\r\n\tAAEC\r\n  /w==");
  ASSERT_EQ(properties.size(), 2u);
  EXPECT_EQ(std::get<PictureFile>(properties[1].value).bytes.size(), 4u);
}

TEST(PropertyText, WhatIsMalformedIsRefusedWithItsLine) {
  const struct {
    const char *text, *refusal;
  } cases[] = {
      {"A = 1\nB", "line 2: it is written KEY = VALUE"},
      {"= 1", "line 1: a key is written in letters, digits and _"},
      {"A b = 1", "line 1: a key is written in letters, digits and _"},
      {"A = 1\n\nA = 2", "line 3: A stands there twice"},
      {"A = abc", "line 1: \"abc\" is no number, True, False, quoted text or picture"},
      {"A =", "line 1: \"\" is no number, True, False, quoted text or picture"},
      {"A = 1e999", "line 1: \"1e999\" is no number, True, False, quoted text or picture"},
      {"A = \"x", "line 1: the text's closing quote is missing"},
      {"A = \"x\\", "line 1: a backslash in a text is followed by n, r, 0, \" or another"},
      {"A = \"x\" y", "line 1: something follows the text"},
      {"A = \"\\x\"", "line 1: a backslash in a text is followed by n, r, 0, \" or another"},
      {"A = 1\n  AAEC", "line 2: an indented line belongs to no picture"},
      {"# x\nA = picture\n  AAE", "line 2: the picture is no base64"},
      {"A = picture\n  AA!=\nB = 1", "line 1: the picture is no base64"},
  };
  for (const auto& [text, refusal] : cases) EXPECT_EQ(Refusal(text), refusal) << text;
}

TEST(Base64, IsAsPublished) {
  const struct {
    const char *text, *base64;
  } cases[] = {{"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
               {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="}};
  for (const auto& [text, base64] : cases) {
    const std::string word = text;
    const std::vector<Byte> bytes(word.begin(), word.end());
    EXPECT_EQ(EncodeBase64(bytes), base64);
    EXPECT_EQ(DecodeBase64(base64), bytes);
  }
  for (const char* broken : {"Z", "Zg=", "Zh==", "=g==", "Z===", "Zg==Zg==", "Zm9=", "Zm 9"})
    EXPECT_EQ(DecodeBase64(broken), std::nullopt) << broken;
}

struct PropertyFileTest : testing::Test {
  std::string Content(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string Saved(const Control& saved) {
    PropertyFile file(stage->Contracts());
    saved.WriteProperties(file);
    const std::string name = folder.Path("saved.txt");
    file.Save(name);
    return name;
  }

  TemporaryFolder folder;
  std::unique_ptr<Stage> stage = MakeStage();
  std::unique_ptr<ControlWindow> window = stage->OpenWindow(50, 50);
  std::unique_ptr<ControlWindow> otherWindow = stage->OpenWindow(50, 50);
  Control control{stage->Contracts(), window->ControlsSurface()};
  Control other{stage->Contracts(), otherWindow->ControlsSurface()};
};

TEST_F(PropertyFileTest, HoldsOnlyWhatDiffersFromItsDefault) {
  EXPECT_EQ(Content(Saved(control)).find('='), std::string::npos);
  control.Put("Quality", 90);
  control.Put("FileType", 3);
  const std::string name = Saved(control);
  EXPECT_EQ(Content(name),
            "# Settings of a Quillet control; what is not here has its default.\n"
            "Quality = 90\nFileType = 3\n");
  control.Put("Quality", 70);
  control.Put("FileType", 0);
  EXPECT_EQ(Content(Saved(control)).find('='), std::string::npos);
}

TEST_F(PropertyFileTest, RestoresAnotherControlExactlyWithItsMouseIcon) {
  const std::string icon = folder.Write("hand.ico", IconFile({OpaqueIcon(16, 8, {200, 100, 50})}));
  control.Put("MouseIcon", stage->Contracts().pictures.LoadPicture(icon));
  control.Put("MousePointer", 99);
  control.Put("BackColor", 0x102030);
  control.Put("ToolTipText", "a \"b\"\n");
  control.Put("filename", "C:\\x.tif");
  control.Put("ColorType", 7);
  control.Put("Scrollable", false);
  const std::string saved = Content(Saved(control));
  PropertyFile file(stage->Contracts());
  file.Load(folder.Path("saved.txt"));
  other.ReadProperties(file);
  EXPECT_EQ(Content(Saved(other)), saved);
  EXPECT_EQ(other.Get("ToolTipText"), Variant(std::string("a \"b\"\n")));
  const auto restored = std::dynamic_pointer_cast<Picture>(VariantToObject(other.Get("MouseIcon")));
  ASSERT_TRUE(restored);
  EXPECT_EQ(restored->Kind(), PictureKind::Icon);
}

TEST_F(PropertyFileTest, BitmapsAndEmptyPicturesComeBackToo) {
  const PictureRef picture = PictureOf(stage->Contracts(), 5, 3, Gradient);
  PropertyFile file(stage->Contracts());
  file.WriteProperty("Bitmap", ObjectRef(picture), ObjectRef());
  file.WriteProperty("Empty", ObjectRef(stage->Contracts().pictures.EmptyPicture()), ObjectRef());
  file.WriteProperty("None", ObjectRef(), ObjectRef());
  const auto read = [&](const char* key) {
    return std::dynamic_pointer_cast<Picture>(VariantToObject(file.ReadProperty(key, {})));
  };
  EXPECT_EQ(PixelsOf(stage->Contracts(), read("Bitmap")), PixelsOf(stage->Contracts(), picture));
  EXPECT_EQ(read("Empty")->Kind(), PictureKind::None);
  EXPECT_FALSE(read("None"));
  EXPECT_EQ(
      ErrorOf([&] { file.WriteProperty("X", ObjectRef(std::make_shared<Object>()), ObjectRef()); }),
      ErrorNumber::TypeMismatch);
}

TEST_F(PropertyFileTest, AFileThatCannotBeReadOrReplacedIsAnErrorAndStays) {
  PropertyFile file(stage->Contracts());
  EXPECT_THROW(file.Load(folder.Path("none.txt")), std::runtime_error);
  const std::string bad = folder.Write("bad.txt", std::vector<Byte>{'x', '\n'});
  try {
    file.Load(bad);
    ADD_FAILURE();
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), bad + ", line 1: it is written KEY = VALUE");
  }
  EXPECT_EQ(ErrorOf([&] { file.Save(folder.Path("no/where.txt")); }), ErrorNumber::PathNotFound);
}

TEST_F(PropertyFileTest, APictureThatIsNoneIsTheControlsError) {
  PropertyFile file(stage->Contracts());
  const std::string text = "MouseIcon = picture\n  AAEC\nQuality = 90\n";
  file.Load(folder.Write("icon.txt", std::vector<Byte>(text.begin(), text.end())));
  EXPECT_EQ(ErrorOf([&] { other.ReadProperties(file); }), ErrorNumber::InvalidPicture);
  EXPECT_EQ(other.Get("Quality"), Variant(Integer{70}));
}

}  // namespace
}  // namespace quillet
