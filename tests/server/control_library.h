#pragma once

#include <string>
#include <vector>

#include "platform/win32/com_ptr.h"
#include "server/twain_interfaces.h"

namespace quillet {

// The path of the quillet.ocx that was built with the tests.
std::wstring OcxPath();

// quillet.ocx, loaded from its file: nothing of it is registered. It is let go of at the
// end. OLE is there meanwhile.
class ControlLibrary {
 public:
  ControlLibrary();
  ControlLibrary(const ControlLibrary&) = delete;
  ControlLibrary& operator=(const ControlLibrary&) = delete;
  ~ControlLibrary();

  ComPtr<IClassFactory> Factory() const;
  // A control; `initialised` as a container does that makes a new one.
  ComPtr<::_Twain> Make(bool initialised = true) const;

  HRESULT CanUnload() const { return Call("DllCanUnloadNow"); }
  HRESULT Register() const { return Call("DllRegisterServer"); }
  HRESULT Unregister() const { return Call("DllUnregisterServer"); }
  HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) const;

 private:
  HRESULT Call(const char* entry) const;

  HMODULE m_module;
};

// Another interface of the object; null when it has none.
template <typename Interface, typename Object>
ComPtr<Interface> As(const ComPtr<Object>& object) {
  ComPtr<Interface> other;
  object->QueryInterface(__uuidof(Interface), other.ReceiveVoid());
  return other;
}

// A VARIANT that frees itself.
class Value {
 public:
  Value() { ::VariantInit(&m_value); }
  Value(const Value& other) : Value() {
    ::VariantCopy(&m_value, const_cast<VARIANT*>(&other.m_value));
  }
  Value& operator=(const Value&) = delete;
  explicit Value(int number) : Value() {
    m_value.vt = VT_I4;
    m_value.lVal = number;
  }
  explicit Value(double number) : Value() {
    m_value.vt = VT_R8;
    m_value.dblVal = number;
  }
  explicit Value(const wchar_t* text) : Value() {
    m_value.vt = VT_BSTR;
    m_value.bstrVal = ::SysAllocString(text);
  }
  explicit Value(::IDispatch* object) : Value() {
    m_value.vt = VT_DISPATCH;
    m_value.pdispVal = object;
    if (object) object->AddRef();
  }
  static Value LeftOut() {
    Value value;
    value.m_value.vt = VT_ERROR;
    value.m_value.scode = DISP_E_PARAMNOTFOUND;
    return value;
  }
  ~Value() { ::VariantClear(&m_value); }

  VARIANT& get() { return m_value; }

 private:
  VARIANT m_value;
};

// What a late-bound call came to.
struct CallResult {
  HRESULT result = S_OK;  // of an exception, the one that it tells
  std::wstring source, description;
  Value value;
};

// Late-bound calls by name, arguments in their natural order. They are the caller's: what is passed
// by reference comes back in them.
CallResult InvokeByName(::IDispatch* object, const wchar_t* name, WORD flags,
                        std::vector<VARIANT> arguments = {});
CallResult Get(::IDispatch* object, const wchar_t* name);
CallResult Put(::IDispatch* object, const wchar_t* name, Value value);
CallResult PutRef(::IDispatch* object, const wchar_t* name, Value value);
CallResult Call(::IDispatch* object, const wchar_t* name, std::vector<VARIANT> arguments = {});

// A picture object with a 24-bit bitmap of that size, black.
ComPtr<IPictureDisp> BlackPicture(int width, int height);

}  // namespace quillet
