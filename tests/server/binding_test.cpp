#include <gtest/gtest.h>

#include "control/dispatch.h"
#include "platform/win32/text.h"
#include "tests/server/control_library.h"

namespace quillet {
namespace {

constexpr HRESULT RunTime(int number) {
  return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number));
}

class Binding : public testing::Test {
 protected:
  ControlLibrary library;
  ComPtr<::_Twain> control = library.Make();
};

TEST_F(Binding, EveryMemberIsFoundByItsNameInAnyCase) {
  for (const Member& member : Members()) {
    std::wstring name = Utf16(member.name);
    for (wchar_t& letter : name) letter = static_cast<wchar_t>(::towupper(letter));
    LPOLESTR names = name.data();
    DISPID number = 0;
    EXPECT_EQ(control->GetIDsOfNames(IID_NULL, &names, 1, 0, &number), S_OK) << member.name;
    EXPECT_EQ(number, member.number) << member.name;
  }
  wchar_t nobody[] = L"Nobody";
  LPOLESTR names = nobody;
  DISPID number = 0;
  EXPECT_EQ(control->GetIDsOfNames(IID_NULL, &names, 1, 0, &number), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(number, DISPID_UNKNOWN);
}

TEST_F(Binding, EveryPropertyReadsLateAndWritesWhatItRead) {
  for (const Member& member : Members()) {
    if (member.access != Access::Get) continue;
    const std::wstring name = Utf16(member.name);
    const CallResult read = Get(control.get(), name.c_str());
    EXPECT_EQ(read.result, S_OK) << member.name;
    if (FindMember(member.number, Access::Put)) {
      EXPECT_EQ(Put(control.get(), name.c_str(), read.value).result, S_OK) << member.name;
    } else if (FindMember(member.number, Access::PutRef)) {
      EXPECT_EQ(PutRef(control.get(), name.c_str(), read.value).result, S_OK) << member.name;
    } else {
      EXPECT_EQ(Put(control.get(), name.c_str(), read.value).result, DISP_E_MEMBERNOTFOUND)
          << member.name;
    }
  }
}

TEST_F(Binding, ANewControlHasItsFirstSettingsThoughNobodyInitialisedIt) {
  const auto fresh = library.Make(false);
  EXPECT_EQ(Get(fresh.get(), L"Quality").value.get().iVal, 70);
  EXPECT_EQ(Get(fresh.get(), L"AutoRedraw").value.get().boolVal, VARIANT_TRUE);
}

TEST_F(Binding, ValuesAreConvertedToTheMembersKind) {
  EXPECT_EQ(Put(control.get(), L"Quality", Value(L"&H20")).result, S_OK);
  EXPECT_EQ(Get(control.get(), L"Quality").value.get().iVal, 32);
  EXPECT_EQ(Put(control.get(), L"Quality", Value(2.5)).result, S_OK);
  EXPECT_EQ(Get(control.get(), L"Quality").value.get().iVal, 2);
  Value money;
  money.get().vt = VT_CY;
  money.get().cyVal.int64 = 35000;  // 3.5
  EXPECT_EQ(Put(control.get(), L"Quality", money).result, S_OK);
  EXPECT_EQ(Get(control.get(), L"Quality").value.get().iVal, 4);
  EXPECT_EQ(Put(control.get(), L"filename", Value(12)).result, S_OK);
  EXPECT_STREQ(Get(control.get(), L"filename").value.get().bstrVal, L"12");
  EXPECT_EQ(Put(control.get(), L"ToolTipText", Value(L"\u20AC \u00B0")).result, S_OK);
  EXPECT_STREQ(Get(control.get(), L"ToolTipText").value.get().bstrVal, L"\u20AC \u00B0");
}

TEST_F(Binding, ErrorsHaveNumberSourceAndDescription) {
  const CallResult overflow = Put(control.get(), L"Quality", Value(70000));
  EXPECT_EQ(overflow.result, RunTime(6));
  EXPECT_EQ(overflow.source, L"Quillet.Twain");
  EXPECT_TRUE(overflow.description.starts_with(L"Overflow")) << Utf8(overflow.description);
  EXPECT_EQ(Put(control.get(), L"Quality", Value(L"abc")).result, RunTime(13));
  EXPECT_EQ(Put(control.get(), L"BorderStyle", Value(2)).result, RunTime(380));
  EXPECT_EQ(Call(control.get(), L"Resize", {Value(1).get()}).result, RunTime(450));
  EXPECT_EQ(Call(control.get(), L"Flip", {Value(1).get()}).result, RunTime(450));
  EXPECT_EQ(PutRef(control.get(), L"Picture", Value(control.get())).result, RunTime(13));
  PutRef(control.get(), L"Picture", Value(BlackPicture(4, 3).get()));
  EXPECT_EQ(Call(control.get(), L"Resize", {Value(0).get(), Value(1).get()}).result, RunTime(9));
}

TEST_F(Binding, APictureIsAssignedByReferenceOnly) {
  const auto picture = BlackPicture(4, 3);
  EXPECT_EQ(Put(control.get(), L"Picture", Value(picture.get())).result, DISP_E_MEMBERNOTFOUND);
  // As scripts do that have one assignment for both.
  EXPECT_EQ(InvokeByName(control.get(), L"Picture", DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF,
                         {Value(picture.get()).get()})
                .result,
            S_OK);
  EXPECT_EQ(Get(control.get(), L"Picture").value.get().pdispVal, picture.get());
  EXPECT_EQ(Get(control.get(), L"BitmapWidth").value.get().lVal, 4);
  EXPECT_EQ(PutRef(control.get(), L"Picture", Value(static_cast<::IDispatch*>(nullptr))).result,
            S_OK);
  EXPECT_EQ(Get(control.get(), L"Picture").value.get().pdispVal, nullptr);
}

TEST_F(Binding, ArgumentsPassByReferenceByVariantAndByName) {
  PutRef(control.get(), L"Picture", Value(BlackPicture(4, 3).get()));
  Value width(8), height(2);
  VARIANT references[2];
  references[0].vt = references[1].vt = VT_BYREF | VT_VARIANT;
  references[0].pvarVal = &width.get();
  references[1].pvarVal = &height.get();
  EXPECT_EQ(Call(control.get(), L"Resize", {references[0], references[1]}).result, S_OK);
  EXPECT_EQ(Get(control.get(), L"BitmapWidth").value.get().lVal, 8);

  wchar_t method[] = L"Crop", left[] = L"lLeft", top[] = L"lTop", wide[] = L"LWIDTH",
          high[] = L"lHeight";
  LPOLESTR names[] = {method, high, wide, top, left};
  DISPID numbers[5];
  ASSERT_EQ(control->GetIDsOfNames(IID_NULL, names, 5, 0, numbers), S_OK);
  VARIANT values[] = {Value(1).get(), Value(3).get(), Value(0).get(), Value(2).get()};
  DISPPARAMS parameters{values, numbers + 1, 4, 4};
  EXPECT_EQ(control->Invoke(numbers[0], IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                            nullptr),
            S_OK);
  EXPECT_EQ(Get(control.get(), L"BitmapWidth").value.get().lVal, 3);
  EXPECT_EQ(Get(control.get(), L"BitmapHeight").value.get().lVal, 1);
}

TEST_F(Binding, ComparedPicturesComeByValueAndByReference) {
  const auto picture = BlackPicture(4, 3);
  PutRef(control.get(), L"Picture", Value(picture.get()));
  EXPECT_EQ(Call(control.get(), L"Compare", {Value(picture.get()).get()}).value.get().boolVal,
            VARIANT_TRUE);
  IDispatch* other = BlackPicture(3, 4).release();
  VARIANT reference;
  reference.vt = VT_BYREF | VT_DISPATCH;
  reference.ppdispVal = &other;
  EXPECT_EQ(Call(control.get(), L"Compare", {reference}).value.get().boolVal, VARIANT_FALSE);
  other->Release();
}

TEST_F(Binding, OptionalArgumentsMayBeLeftOut) {
  PutRef(control.get(), L"Picture", Value(BlackPicture(40, 30).get()));
  EXPECT_EQ(Call(control.get(), L"Fit").result, S_OK);
  EXPECT_EQ(Call(control.get(), L"Fit", {Value::LeftOut().get()}).result, S_OK);
}

TEST_F(Binding, TheFunctionsOfTheDualInterfaceDoTheSame) {
  EXPECT_EQ(control->put_Quality(55), S_OK);
  SHORT quality = 0;
  EXPECT_EQ(control->get_Quality(&quality), S_OK);
  EXPECT_EQ(quality, 55);
  EXPECT_EQ(control->get_Quality(nullptr), E_POINTER);
  const auto picture = BlackPicture(40, 30);
  EXPECT_EQ(control->putref_Picture(picture.get()), S_OK);
  EXPECT_EQ(control->Rotate(), S_OK);
  LONG width = 0;
  EXPECT_EQ(control->get_BitmapWidth(&width), S_OK);
  EXPECT_EQ(width, 30);
  IPictureDisp* compared = picture.get();
  VARIANT_BOOL same = VARIANT_TRUE;
  EXPECT_EQ(control->Compare(&compared, &same), S_OK);
  EXPECT_EQ(same, VARIANT_FALSE);
  VARIANT_BOOL scrollable = VARIANT_FALSE;
  EXPECT_EQ(control->put_Scrollable(VARIANT_FALSE), S_OK);
  EXPECT_EQ(control->get_Scrollable(&scrollable), S_OK);
  EXPECT_EQ(scrollable, VARIANT_FALSE);
  EXPECT_EQ(control->put_FileType(::twPNG), S_OK);
  BSTR name = ::SysAllocString(L"C:\\no such folder\\x.png");
  EXPECT_EQ(control->put_filename(name), S_OK);
  ::SysFreeString(name);
  LONG status = 0;
  EXPECT_EQ(control->Save(&status), S_OK);
  EXPECT_NE(status, 0);
}

TEST_F(Binding, AFailedFunctionLeavesItsDescriptionWithTheThread) {
  EXPECT_EQ(control->putref_Picture(BlackPicture(4, 3).get()), S_OK);
  EXPECT_EQ(As<ISupportErrorInfo>(control)->InterfaceSupportsErrorInfo(kTwainInterface), S_OK);
  EXPECT_EQ(control->Zoom(0), RunTime(9));
  ComPtr<IErrorInfo> told;
  ASSERT_EQ(::GetErrorInfo(0, told.Receive()), S_OK);
  BSTR text = nullptr;
  told->GetDescription(&text);
  EXPECT_TRUE(std::wstring(text).starts_with(L"Subscript out of range")) << Utf8(text);
  ::SysFreeString(text);
}

struct OtherThreadCall {
  ::_Twain* control;
  HRESULT early, late;
};

DWORD WINAPI CallFromOtherThread(void* context) {
  auto& call = *static_cast<OtherThreadCall*>(context);
  call.early = call.control->Flip();
  DISPPARAMS none{};
  call.late = call.control->Invoke(0x6003001A, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr,
                                   nullptr, nullptr);
  return 0;
}

TEST_F(Binding, ACallFromAnotherThreadIsRefused) {
  OtherThreadCall call{control.get(), S_OK, S_OK};
  const HANDLE thread = ::CreateThread(nullptr, 0, CallFromOtherThread, &call, 0, nullptr);
  ::WaitForSingleObject(thread, INFINITE);
  ::CloseHandle(thread);
  EXPECT_EQ(call.early, RPC_E_WRONG_THREAD);
  EXPECT_EQ(call.late, RPC_E_WRONG_THREAD);
}

}  // namespace
}  // namespace quillet
