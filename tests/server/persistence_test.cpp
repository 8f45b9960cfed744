#include <gtest/gtest.h>

#include <cstring>
#include <map>

#include "tests/server/control_library.h"

namespace quillet {
namespace {

constexpr HRESULT kAutomationError = static_cast<HRESULT>(0x800A01B8);

// A container's bag, on the stack of its test.
class Bag : public IPropertyBag {
 public:
  STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
    if (failsAt == name) return E_ACCESSDENIED;
    const auto found = values.find(name);
    return found == values.end() ? E_INVALIDARG : ::VariantCopy(value, &found->second.get());
  }
  STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) override {
    if (failsAt == name) return E_ACCESSDENIED;
    return ::VariantCopy(&values[name].get(), value);
  }

  std::map<std::wstring, Value> values;
  std::wstring failsAt;
};

ComPtr<IPictureDisp> Icon() {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  description.icon.hicon = ::CopyIcon(::LoadIconW(nullptr, IDI_APPLICATION));
  ComPtr<IPictureDisp> picture;
  ::OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE, picture.ReceiveVoid());
  return picture;
}

void ChangeEverything(const ComPtr<::_Twain>& control) {
  const std::pair<const wchar_t*, Value> kValues[] = {
      {L"BackColor", Value(0x112233)},
      {L"Enabled", Value(0)},
      {L"MousePointer", Value(99)},
      {L"ToolTipText", Value(L"a \u20AC")},
      {L"ColorType", Value(7)},
      {L"Resolution", Value(300)},
      {L"filename", Value(L"C:\\x.png")},
      {L"ShowProgress", Value(0)},
      {L"ShowInterface", Value(1)},
      {L"AutoRedraw", Value(0)},
      {L"BorderStyle", Value(0)},
      {L"Scrollable", Value(0)},
      {L"Quality", Value(90)},
      {L"Compression", Value(5)},
      {L"FileType", Value(9)},
  };
  for (const auto& [name, value] : kValues)
    ASSERT_EQ(Put(control.get(), name, value).result, S_OK) << name;
  ASSERT_EQ(PutRef(control.get(), L"MouseIcon", Value(Icon().get())).result, S_OK);
}

// Every setting as text; of the icon, what kind of picture it is.
std::map<std::wstring, std::wstring> Settings(const ComPtr<::_Twain>& control) {
  std::map<std::wstring, std::wstring> settings;
  for (const wchar_t* name :
       {L"BackColor", L"Enabled", L"MousePointer", L"ToolTipText", L"ColorType", L"Resolution",
        L"filename", L"ShowProgress", L"ShowInterface", L"AutoRedraw", L"BorderStyle",
        L"Scrollable", L"Quality", L"Compression", L"FileType"}) {
    CallResult read = Get(control.get(), name);
    ::VariantChangeType(&read.value.get(), &read.value.get(), 0, VT_BSTR);
    settings[name] = read.value.get().bstrVal;
  }
  CallResult icon = Get(control.get(), L"MouseIcon");
  SHORT type = PICTYPE_NONE;
  ComPtr<IPicture> picture;
  if (icon.value.get().pdispVal &&
      SUCCEEDED(icon.value.get().pdispVal->QueryInterface(IID_IPicture, picture.ReceiveVoid())))
    picture->get_Type(&type);
  settings[L"MouseIcon"] = std::to_wstring(type);
  return settings;
}

class Persistence : public testing::Test {
 protected:
  ControlLibrary library;
  ComPtr<::_Twain> control = library.Make();
  ComPtr<::_Twain> restored = library.Make(false);
  Bag bag;
};

TEST_F(Persistence, ABagCarriesAllSixteenSettings) {
  ChangeEverything(control);
  ASSERT_EQ(As<IPersistPropertyBag>(control)->Save(&bag, FALSE, FALSE), S_OK);
  EXPECT_EQ(bag.values.size(), 16u);
  EXPECT_TRUE(bag.values.contains(L"Filename"));
  ASSERT_EQ(As<IPersistPropertyBag>(restored)->Load(&bag, nullptr), S_OK);
  EXPECT_EQ(Settings(restored), Settings(control));
  EXPECT_EQ(Settings(restored)[L"MouseIcon"], std::to_wstring(PICTYPE_ICON));
}

TEST_F(Persistence, DefaultsAreLeftOutUnlessAllIsWanted) {
  const auto persist = As<IPersistPropertyBag>(control);
  ASSERT_EQ(persist->Save(&bag, FALSE, FALSE), S_OK);
  EXPECT_TRUE(bag.values.empty());
  ASSERT_EQ(persist->Save(&bag, FALSE, TRUE), S_OK);
  EXPECT_EQ(bag.values.size(), 15u);  // there is no icon
  bag.values.clear();
  ASSERT_EQ(As<IPersistPropertyBag>(restored)->Load(&bag, nullptr), S_OK);
  EXPECT_EQ(Settings(restored), Settings(control));
}

TEST_F(Persistence, WhatABagGivesAsTextIsConverted) {
  ::VariantCopy(&bag.values[L"Quality"].get(), &Value(L"90").get());
  ::VariantCopy(&bag.values[L"Scrollable"].get(), &Value(L"False").get());
  ASSERT_EQ(As<IPersistPropertyBag>(restored)->Load(&bag, nullptr), S_OK);
  EXPECT_EQ(Settings(restored)[L"Quality"], L"90");
  EXPECT_EQ(Get(restored.get(), L"Scrollable").value.get().boolVal, VARIANT_FALSE);
}

TEST_F(Persistence, AValueThatDoesNotConvertOrABagThatFailsIsTheContainersError) {
  ::VariantCopy(&bag.values[L"Resolution"].get(), &Value(L"fine").get());
  EXPECT_EQ(As<IPersistPropertyBag>(restored)->Load(&bag, nullptr),
            static_cast<HRESULT>(0x800A000D));
  bag.values.clear();
  bag.failsAt = L"Quality";
  EXPECT_EQ(As<IPersistPropertyBag>(restored)->Load(&bag, nullptr), kAutomationError);
  EXPECT_EQ(As<IPersistPropertyBag>(control)->Save(&bag, FALSE, TRUE), kAutomationError);
  EXPECT_EQ(As<IPersistPropertyBag>(control)->Load(nullptr, nullptr), E_POINTER);
}

TEST_F(Persistence, AStreamCarriesTheSameSettingsAndLeavesWhatFollows) {
  ChangeEverything(control);
  const auto persist = As<IPersistStreamInit>(control);
  ComPtr<IStream> stream;
  ASSERT_EQ(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()), S_OK);
  EXPECT_EQ(persist->IsDirty(), S_OK);
  ASSERT_EQ(persist->Save(stream.get(), TRUE), S_OK);
  EXPECT_EQ(persist->IsDirty(), S_FALSE);
  ULARGE_INTEGER most{};
  STATSTG state{};
  ASSERT_EQ(persist->GetSizeMax(&most), S_OK);
  stream->Stat(&state, STATFLAG_NONAME);
  EXPECT_EQ(most.QuadPart, state.cbSize.QuadPart);
  const char rest = 'r';
  stream->Write(&rest, 1, nullptr);
  const LARGE_INTEGER start{};
  stream->Seek(start, STREAM_SEEK_SET, nullptr);
  ASSERT_EQ(As<IPersistStreamInit>(restored)->Load(stream.get()), S_OK);
  EXPECT_EQ(Settings(restored), Settings(control));
  char next = 0;
  stream->Read(&next, 1, nullptr);
  EXPECT_EQ(next, rest);
}

TEST_F(Persistence, AStreamOfSomethingElseIsRefused) {
  const auto before = Settings(control);
  for (const char* content : {"", "x", "something else altogether", "QLT2\xFF\xFF\xFF\xFF"}) {
    ComPtr<IStream> stream;
    ::CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive());
    stream->Write(content, static_cast<ULONG>(std::strlen(content)), nullptr);
    const LARGE_INTEGER start{};
    stream->Seek(start, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(As<IPersistStreamInit>(control)->Load(stream.get()), kAutomationError) << content;
    EXPECT_EQ(Settings(control), before);
  }
}

}  // namespace
}  // namespace quillet
