#include "tests/server/control_library.h"

#include <algorithm>
#include <stdexcept>

#include "tests/windows/program_folder.h"

namespace quillet {

std::wstring OcxPath() {
  return ProgramFolder() + L"..\\server\\quillet.ocx";
}

ControlLibrary::ControlLibrary() : m_module(::LoadLibraryW(OcxPath().c_str())) {
  ::OleInitialize(nullptr);
  if (!m_module) throw std::runtime_error("quillet.ocx does not load");
}

ControlLibrary::~ControlLibrary() {
  ::FreeLibrary(m_module);
  ::OleUninitialize();
}

HRESULT ControlLibrary::GetClassObject(REFCLSID classId, REFIID iid, void** object) const {
  using Entry = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const FARPROC entry = ::GetProcAddress(m_module, "DllGetClassObject");
  return reinterpret_cast<Entry>(reinterpret_cast<void*>(entry))(classId, iid, object);
}

HRESULT ControlLibrary::Call(const char* entry) const {
  using Entry = HRESULT(STDAPICALLTYPE*)();
  const FARPROC found = ::GetProcAddress(m_module, entry);
  return reinterpret_cast<Entry>(reinterpret_cast<void*>(found))();
}

ComPtr<IClassFactory> ControlLibrary::Factory() const {
  ComPtr<IClassFactory> factory;
  GetClassObject(kControlClass, IID_IClassFactory, factory.ReceiveVoid());
  return factory;
}

ComPtr<::_Twain> ControlLibrary::Make(bool initialised) const {
  ComPtr<::_Twain> control;
  if (FAILED(Factory()->CreateInstance(nullptr, kTwainInterface, control.ReceiveVoid())))
    throw std::runtime_error("no control is made");
  const auto persist = As<IPersistStreamInit>(control);
  if (initialised && persist) persist->InitNew();
  return control;
}

CallResult InvokeByName(::IDispatch* object, const wchar_t* name, WORD flags,
                        std::vector<VARIANT> arguments) {
  CallResult outcome;
  DISPID number = 0;
  auto* names = const_cast<LPOLESTR>(name);
  outcome.result = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &number);
  if (FAILED(outcome.result)) return outcome;
  std::reverse(arguments.begin(), arguments.end());
  DISPID putName = DISPID_PROPERTYPUT;
  const bool isPut = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
  DISPPARAMS parameters{arguments.data(), isPut ? &putName : nullptr,
                        static_cast<UINT>(arguments.size()), isPut ? 1u : 0u};
  EXCEPINFO exception{};
  outcome.result = object->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                  &outcome.value.get(), &exception, nullptr);
  if (outcome.result == DISP_E_EXCEPTION) outcome.result = exception.scode;
  if (exception.bstrSource) outcome.source = exception.bstrSource;
  if (exception.bstrDescription) outcome.description = exception.bstrDescription;
  ::SysFreeString(exception.bstrSource);
  ::SysFreeString(exception.bstrDescription);
  ::SysFreeString(exception.bstrHelpFile);
  return outcome;
}

CallResult Get(::IDispatch* object, const wchar_t* name) {
  return InvokeByName(object, name, DISPATCH_PROPERTYGET);
}

CallResult Put(::IDispatch* object, const wchar_t* name, Value value) {
  return InvokeByName(object, name, DISPATCH_PROPERTYPUT, {value.get()});
}

CallResult PutRef(::IDispatch* object, const wchar_t* name, Value value) {
  return InvokeByName(object, name, DISPATCH_PROPERTYPUTREF, {value.get()});
}

CallResult Call(::IDispatch* object, const wchar_t* name, std::vector<VARIANT> arguments) {
  return InvokeByName(object, name, DISPATCH_METHOD, std::move(arguments));
}

ComPtr<IPictureDisp> BlackPicture(int width, int height) {
  ::BITMAPINFO header{};
  header.bmiHeader.biSize = sizeof header.bmiHeader;
  header.bmiHeader.biWidth = width;
  header.bmiHeader.biHeight = height;
  header.bmiHeader.biPlanes = 1;
  header.bmiHeader.biBitCount = 24;
  void* bits = nullptr;
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_BITMAP;
  description.bmp.hbitmap = ::CreateDIBSection(nullptr, &header, DIB_RGB_COLORS, &bits, nullptr, 0);
  ComPtr<IPictureDisp> picture;
  ::OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE, picture.ReceiveVoid());
  return picture;
}

}  // namespace quillet
