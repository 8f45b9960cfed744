#pragma once

#include "server/early_binding.h"
#include "server/part.h"
#include "server/twain_interfaces.h"

namespace quillet {

// The control's default interface, late-bound by IDispatch and early-bound by its 65 functions.
// Both go through the core's table of members.
class TwainPart final : public Part<::_Twain> {
 public:
  using Part::Part;

  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                             DISPID* numbers) override;
  STDMETHODIMP Invoke(DISPID number, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* argument) override;

  STDMETHODIMP get_Quality(SHORT* value) override { return Get(0x68030014, value); }
  STDMETHODIMP put_Quality(SHORT value) override { return Put(0x68030014, value); }
  STDMETHODIMP get_Compression(SHORT* value) override { return Get(0x68030013, value); }
  STDMETHODIMP put_Compression(SHORT value) override { return Put(0x68030013, value); }
  STDMETHODIMP get_FileType(::IMAGE_TYPE* value) override { return Get(0x68030012, value); }
  STDMETHODIMP put_FileType(::IMAGE_TYPE value) override { return Put(0x68030012, value); }
  STDMETHODIMP get_BorderStyle(SHORT* value) override { return Get(0x68030011, value); }
  STDMETHODIMP put_BorderStyle(SHORT value) override { return Put(0x68030011, value); }
  STDMETHODIMP get_BackColor(::OLE_COLOR* value) override { return Get(0x68030010, value); }
  STDMETHODIMP put_BackColor(::OLE_COLOR value) override { return Put(0x68030010, value); }
  STDMETHODIMP get_Enabled(VARIANT_BOOL* value) override { return Get(0x6803000F, value); }
  STDMETHODIMP put_Enabled(VARIANT_BOOL value) override { return Put(0x6803000F, value); }
  STDMETHODIMP get_hDC(LONG* value) override { return Get(0x6803000E, value); }
  STDMETHODIMP get_hwnd(LONG* value) override { return Get(0x6803000D, value); }
  STDMETHODIMP get_MouseIcon(IPictureDisp** value) override { return Get(0x6803000C, value); }
  STDMETHODIMP putref_MouseIcon(IPictureDisp* value) override { return PutRef(0x6803000C, value); }
  STDMETHODIMP get_MousePointer(SHORT* value) override { return Get(0x6803000B, value); }
  STDMETHODIMP put_MousePointer(SHORT value) override { return Put(0x6803000B, value); }
  STDMETHODIMP get_Picture(IPictureDisp** value) override { return Get(0x6803000A, value); }
  STDMETHODIMP putref_Picture(IPictureDisp* value) override { return PutRef(0x6803000A, value); }
  STDMETHODIMP get_BitmapWidth(LONG* value) override { return Get(0x68030009, value); }
  STDMETHODIMP get_BitmapHeight(LONG* value) override { return Get(0x68030008, value); }
  STDMETHODIMP get_AutoRedraw(VARIANT_BOOL* value) override { return Get(0x68030007, value); }
  STDMETHODIMP put_AutoRedraw(VARIANT_BOOL value) override { return Put(0x68030007, value); }
  STDMETHODIMP get_ToolTipText(BSTR* value) override { return Get(0x68030006, value); }
  STDMETHODIMP put_ToolTipText(BSTR value) override { return Put(0x68030006, value); }
  STDMETHODIMP get_ColorType(::IMAGE_COLORTYPE* value) override { return Get(0x68030005, value); }
  STDMETHODIMP put_ColorType(::IMAGE_COLORTYPE value) override { return Put(0x68030005, value); }
  STDMETHODIMP get_Resolution(SHORT* value) override { return Get(0x68030004, value); }
  STDMETHODIMP put_Resolution(SHORT value) override { return Put(0x68030004, value); }
  STDMETHODIMP get_filename(BSTR* value) override { return Get(0x68030003, value); }
  STDMETHODIMP put_filename(BSTR value) override { return Put(0x68030003, value); }
  STDMETHODIMP get_ShowProgress(VARIANT_BOOL* value) override { return Get(0x68030002, value); }
  STDMETHODIMP put_ShowProgress(VARIANT_BOOL value) override { return Put(0x68030002, value); }
  STDMETHODIMP get_ShowInterface(VARIANT_BOOL* value) override { return Get(0x68030001, value); }
  STDMETHODIMP put_ShowInterface(VARIANT_BOOL value) override { return Put(0x68030001, value); }
  STDMETHODIMP get_Scrollable(VARIANT_BOOL* value) override { return Get(0x68030000, value); }
  STDMETHODIMP put_Scrollable(VARIANT_BOOL value) override { return Put(0x68030000, value); }
  STDMETHODIMP About() override { return Do(0x60030015); }
  STDMETHODIMP Compare(IPictureDisp** ComparePic, VARIANT_BOOL* result) override {
    return Ask(0x60030016, result, ComparePic);
  }
  STDMETHODIMP Refresh() override { return Do(0x60030017); }
  STDMETHODIMP Scan(BSTR* Title) override { return Do(0x60030018, Title); }
  STDMETHODIMP SelectSource(BSTR* Title) override { return Do(0x60030019, Title); }
  STDMETHODIMP Flip() override { return Do(0x6003001A); }
  STDMETHODIMP Reverse() override { return Do(0x6003001B); }
  STDMETHODIMP Invert() override { return Do(0x6003001C); }
  STDMETHODIMP Rotate() override { return Do(0x6003001D); }
  STDMETHODIMP GrayScale() override { return Do(0x6003001E); }
  STDMETHODIMP BlackWhite() override { return Do(0x6003001F); }
  STDMETHODIMP Sharpen() override { return Do(0x60030020); }
  STDMETHODIMP SharpenMore() override { return Do(0x60030021); }
  STDMETHODIMP Blur() override { return Do(0x60030022); }
  STDMETHODIMP Contrast(SHORT iValue) override { return Do(0x60030023, iValue); }
  STDMETHODIMP Fade(LONG lValue) override { return Do(0x60030024, lValue); }
  STDMETHODIMP Lighten(LONG lValue) override { return Do(0x60030025, lValue); }
  STDMETHODIMP Resize(LONG lNewWidth, LONG lNewHeight) override {
    return Do(0x60030026, lNewWidth, lNewHeight);
  }
  STDMETHODIMP Crop(LONG lLeft, LONG lTop, LONG lWidth, LONG lHeight) override {
    return Do(0x60030027, lLeft, lTop, lWidth, lHeight);
  }
  STDMETHODIMP Fit(::FIT_TYPE iType) override { return Do(0x60030028, iType); }
  STDMETHODIMP Zoom(SHORT iFactory) override { return Do(0x60030029, iFactory); }
  STDMETHODIMP Save(LONG* result) override { return Ask(0x6003002A, result); }
  STDMETHODIMP SaveAdd(BSTR* filename, LONG* result) override {
    return Ask(0x6003002B, result, filename);
  }
  STDMETHODIMP Load() override { return Do(0x6003002C); }
  STDMETHODIMP ShowSave(BSTR* sFilter, BSTR* sTitle, BSTR* sInitDir) override {
    return Do(0x6003002D, sFilter, sTitle, sInitDir);
  }
  STDMETHODIMP ShowSaveAdd(BSTR* sTitle, BSTR* sInitDir) override {
    return Do(0x6003002E, sTitle, sInitDir);
  }
  STDMETHODIMP ShowLoad(BSTR* sFilter, BSTR* sTitle, BSTR* sInitDir) override {
    return Do(0x6003002F, sFilter, sTitle, sInitDir);
  }

 private:
  template <typename Result>
  HRESULT Get(DISPID number, Result* value) {
    return Answer(number, Access::Get, value);
  }
  template <typename Value>
  HRESULT Put(DISPID number, Value value) {
    return Perform(number, Access::Put, value);
  }
  template <typename Value>
  HRESULT PutRef(DISPID number, Value value) {
    return Perform(number, Access::PutRef, value);
  }
  template <typename Result, typename... Arguments>
  HRESULT Ask(DISPID number, Result* result, Arguments... arguments) {
    return Answer(number, Access::Method, result, arguments...);
  }
  template <typename... Arguments>
  HRESULT Do(DISPID number, Arguments... arguments) {
    return Perform(number, Access::Method, arguments...);
  }

  template <typename... Arguments>
  HRESULT Perform(DISPID number, Access access, Arguments... arguments) {
    return Enter([&] {
      CallMember(m_core, number, access, arguments...);
      return S_OK;
    });
  }
  template <typename Result, typename... Arguments>
  HRESULT Answer(DISPID number, Access access, Result* result, Arguments... arguments) {
    if (!result) return E_POINTER;
    *result = Result{};
    return Enter([&] {
      ToResult(CallMember(m_core, number, access, arguments...), *result);
      return S_OK;
    });
  }
};

}  // namespace quillet
