#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/runtime_error.h"
#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"
#include "tests/support/icon_file.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

using enum ErrorNumber;

constexpr const char* kKeys[] = {"BackColor",    "Enabled",       "MouseIcon",   "MousePointer",
                                 "ToolTipText",  "ColorType",     "Resolution",  "Filename",
                                 "ShowProgress", "ShowInterface", "AutoRedraw",  "BorderStyle",
                                 "Scrollable",   "Quality",       "Compression", "FileType"};

// A bag that keeps every value as it came, and logs the order of the calls.
class MemoryBag : public PropertyBag {
 public:
  Variant ReadProperty(const std::string& key, const Variant& defaultValue) override {
    order.push_back(key);
    defaults.insert_or_assign(key, defaultValue);
    if (onCall) onCall();
    if (key == failing) throw RunTimeError(PathFileAccess);
    const auto found = values.find(key);
    return found == values.end() ? defaultValue : found->second;
  }
  void WriteProperty(const std::string& key, const Variant& value,
                     const Variant& defaultValue) override {
    order.push_back(key);
    defaults.insert_or_assign(key, defaultValue);
    if (onCall) onCall();
    if (key == failing) throw RunTimeError(PathFileAccess);
    values.insert_or_assign(key, value);
  }

  std::map<std::string, Variant> values, defaults;
  std::vector<std::string> order;
  std::string failing;
  std::function<void()> onCall;
};

class Persistence : public testing::Test {
 protected:
  PictureRef Icon() {
    return host.contracts.pictures.LoadPicture(
        folder.Write("hand.ico", IconFile({OpaqueIcon(16, 16, {1, 2, 3})})));
  }

  TemporaryFolder folder;
  HostedControl host{200, 100};
  MemoryBag bag;
};

TEST_F(Persistence, EveryKeyIsWrittenAndReadInOrderWithItsDefault) {
  host.control->WriteProperties(bag);
  const std::vector<std::string> keys(std::begin(kKeys), std::end(kKeys));
  EXPECT_EQ(bag.order, keys);
  const std::map<std::string, Variant> defaults = {{"BackColor", static_cast<Long>(0x80000005u)},
                                                   {"Enabled", true},
                                                   {"MouseIcon", ObjectRef()},
                                                   {"MousePointer", Integer{0}},
                                                   {"ToolTipText", std::string()},
                                                   {"ColorType", Long{2}},
                                                   {"Resolution", Integer{75}},
                                                   {"Filename", std::string()},
                                                   {"ShowProgress", true},
                                                   {"ShowInterface", false},
                                                   {"AutoRedraw", true},
                                                   {"BorderStyle", Integer{1}},
                                                   {"Scrollable", true},
                                                   {"Quality", Integer{70}},
                                                   {"Compression", Integer{0}},
                                                   {"FileType", Integer{0}}};
  EXPECT_EQ(bag.defaults, defaults);
  // A new instance is all defaults; only the file type's value has another width.
  auto values = defaults;
  values["FileType"] = Long{0};
  EXPECT_EQ(bag.values, values);

  MemoryBag empty;
  host.control->ReadProperties(empty);
  EXPECT_EQ(empty.order, keys);
  EXPECT_EQ(empty.defaults, defaults);
  MemoryBag again;
  host.control->WriteProperties(again);
  EXPECT_EQ(again.values, values);
}

TEST_F(Persistence, AnotherControlComesBackWithEverySettingAndWithoutThePicture) {
  const PictureRef icon = Icon();
  host.Assign(300, 300);
  host.Put("BackColor", Long{0x123456});
  host.Put("Enabled", false);
  host.control->PutRefMouseIcon(icon);
  host.Put("MousePointer", Integer{99});
  host.Put("ToolTipText", std::string("scan"));
  host.Put("ColorType", Long{7});
  host.Put("Resolution", Integer{300});
  host.Put("filename", std::string("page.tif"));
  host.Put("ShowProgress", false);
  host.Put("ShowInterface", true);
  host.Put("AutoRedraw", false);
  host.Put("BorderStyle", Integer{0});
  host.Put("Scrollable", false);
  host.Put("Quality", Integer{90});
  host.Put("Compression", Integer{3});
  host.Put("FileType", Long{9});
  host.TakeLog();
  host.control->WriteProperties(bag);
  EXPECT_TRUE(host.TakeLog().empty());
  EXPECT_EQ(bag.values["Filename"], Variant(std::string("page.tif")));

  auto window = host.platform.OpenWindow(200, 100);
  const auto other = TWAIN::Create(host.contracts, window->ControlsSurface(), nullptr);
  other->ReadProperties(bag);
  MemoryBag restored;
  other->WriteProperties(restored);
  EXPECT_EQ(restored.values, bag.values);
  EXPECT_TRUE(SameObject(other->MouseIcon(), icon));
  EXPECT_EQ(other->ColorType(), static_cast<IMAGE_COLORTYPE>(7));
  EXPECT_EQ(other->FileType(), static_cast<IMAGE_TYPE>(9));
  EXPECT_EQ(other->BitmapWidth(), 0);
}

TEST_F(Persistence, ReadingMarksNothingButTheMouseIconAndLeavesTheViewAlone) {
  host.Assign(300, 300);
  host.control->Zoom(50);
  const auto screen = host.Screen();
  const auto layout = host.Layout();
  host.TakeLog();
  bag.values = {{"Scrollable", false}, {"Quality", Integer{5}}, {"Enabled", false}};
  host.control->ReadProperties(bag);
  EXPECT_EQ(host.TakeLog(), std::vector<std::string>{"notify MouseIcon"});
  EXPECT_EQ(host.Layout(), layout);
  EXPECT_EQ(host.Screen(), screen);
  EXPECT_EQ(host.Number("Quality"), 5);
}

TEST_F(Persistence, InitialisingTouchesNeitherTheCompressionNorTheSurface) {
  host.Put("Compression", Integer{4});
  host.Put("Quality", Integer{1});
  host.Put("BackColor", Long{0});
  host.Put("BorderStyle", Integer{0});
  host.Put("ToolTipText", std::string("x"));
  host.Put("Enabled", false);
  host.TakeLog();
  host.control->InitProperties();
  EXPECT_TRUE(host.TakeLog().empty());
  EXPECT_EQ(host.Number("Quality"), 70);
  EXPECT_EQ(host.Number("Compression"), 4);
  EXPECT_EQ(host.Number("BackColor"), 0);
  EXPECT_EQ(host.Number("BorderStyle"), 0);
  EXPECT_EQ(host.Number("Enabled"), 0);
  EXPECT_EQ(host.control->ToolTipText(), "x");
}

TEST_F(Persistence, ValuesConvertAsHostsKeepThem) {
  bag.values = {{"Quality", std::string("90")}, {"Resolution", 150.0},
                {"Scrollable", Integer{0}},     {"ShowInterface", std::string("True")},
                {"FileType", Integer{3}},       {"Filename", Long{12}},
                {"BackColor", 4278190080.0},    {"MouseIcon", std::monostate{}}};
  host.control->ReadProperties(bag);
  EXPECT_EQ(host.Number("Quality"), 90);
  EXPECT_EQ(host.Number("Resolution"), 150);
  EXPECT_EQ(host.Number("Scrollable"), 0);
  EXPECT_EQ(host.Number("ShowInterface"), -1);
  EXPECT_EQ(host.Number("FileType"), 3);
  EXPECT_EQ(host.control->filename(), "12");
  EXPECT_EQ(host.control->BackColor(), 0xFF000000u);
}

TEST_F(Persistence, AValueThatDoesNotConvertStopsTheReadingThere) {
  const struct {
    const char* key;
    Variant value;
    ErrorNumber error;
  } cases[] = {{"Resolution", std::string("abc"), TypeMismatch},
               {"Resolution", Long{70000}, Overflow},
               {"Resolution", ObjectRef(std::make_shared<Object>()), TypeMismatch},
               {"Enabled", std::string("perhaps"), TypeMismatch},
               {"MouseIcon", std::string("hand"), TypeMismatch},
               {"MouseIcon", ObjectRef(std::make_shared<Object>()), TypeMismatch},
               {"MousePointer", Integer{50}, InvalidPropertyValue},
               {"FileType", 5e9, Overflow}};
  for (const auto& [key, value, error] : cases) {
    SCOPED_TRACE(key);
    HostedControl fresh(50, 50);
    fresh.Put("Quality", Integer{11});
    fresh.TakeLog();
    MemoryBag given;
    given.values = {{"BackColor", Long{1}}, {"Quality", Integer{22}}};
    given.values.insert_or_assign(key, value);
    EXPECT_EQ(ErrorOf([&] { fresh.control->ReadProperties(given); }), error);
    EXPECT_EQ(given.order.back(), key);
    EXPECT_EQ(fresh.Number("BackColor"), 1);
    EXPECT_EQ(fresh.Number("Resolution"), 75);
    EXPECT_EQ(fresh.Number("Quality"), std::string(key) == "FileType" ? 22 : 11);
  }
}

TEST_F(Persistence, ABagThatFailsStopsReadingAndWritingThere) {
  bag.values["Quality"] = Integer{5};
  bag.failing = "Scrollable";
  EXPECT_EQ(ErrorOf([&] { host.control->ReadProperties(bag); }), PathFileAccess);
  EXPECT_EQ(host.Number("Quality"), 70);
  EXPECT_EQ(ErrorOf([&] { host.control->WriteProperties(bag); }), PathFileAccess);
  EXPECT_EQ(bag.order.back(), "Scrollable");
}

TEST_F(Persistence, TheHostMayLetGoOfTheControlInsideTheBag) {
  TWAIN& control = *host.control;
  bag.onCall = [&] { host.control.reset(); };
  control.ReadProperties(bag);
  EXPECT_EQ(bag.order.size(), std::size(kKeys));
  EXPECT_EQ(host.control, nullptr);
}

}  // namespace
}  // namespace quillet
