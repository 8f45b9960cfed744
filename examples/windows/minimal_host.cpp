// A window with the control in it, which shows the file that the command line names, or scans a
// page when it names none. The system's own container (atl.dll) does the hosting; the control is
// registered before.
//
//   x86_64-w64-mingw32-g++ -municode -mwindows -static minimal_host.cpp -lole32 -loleaut32 -luuid
//   minimal_host.exe C:\pictures\page.png

#include <ole2.h>
#include <windows.h>

namespace {

// Calls a method, or writes a property, by its name.
HRESULT Invoke(IDispatch* control, const wchar_t* name, WORD flags, VARIANT* value) {
  DISPID number = 0;
  auto* names = const_cast<LPOLESTR>(name);
  HRESULT result = control->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &number);
  if (FAILED(result)) return result;
  DISPID isPut = DISPID_PROPERTYPUT;
  DISPPARAMS arguments{value, value ? &isPut : nullptr, value ? 1u : 0u, value ? 1u : 0u};
  EXCEPINFO error{};
  result = control->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, flags, &arguments, nullptr,
                           &error, nullptr);
  if (result == DISP_E_EXCEPTION)
    MessageBoxW(nullptr, error.bstrDescription, error.bstrSource, MB_ICONERROR);
  SysFreeString(error.bstrSource);
  SysFreeString(error.bstrDescription);
  return result;
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      MoveWindow(GetWindow(window, GW_CHILD), 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR file, int show) {
  OleInitialize(nullptr);
  const HMODULE atl = LoadLibraryW(L"atl.dll");
  const auto entry = [&](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(atl, name));
  };
  reinterpret_cast<BOOL(WINAPI*)()>(entry("AtlAxWinInit"))();

  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = L"MinimalHost";
  RegisterClassW(&windowClass);
  const HWND window = CreateWindowExW(0, L"MinimalHost", L"Quillet", WS_OVERLAPPEDWINDOW, 40, 40,
                                      820, 660, nullptr, nullptr, instance, nullptr);
  RECT inside{};
  GetClientRect(window, &inside);
  // The class makes the control that its text names.
  const HWND container =
      CreateWindowExW(0, L"AtlAxWin", L"Quillet.Twain", WS_CHILD | WS_VISIBLE, 0, 0, inside.right,
                      inside.bottom, window, nullptr, instance, nullptr);
  IUnknown* object = nullptr;
  IDispatch* control = nullptr;
  reinterpret_cast<HRESULT(WINAPI*)(HWND, IUnknown**)>(entry("AtlAxGetControl"))(container,
                                                                                 &object);
  if (!object ||
      FAILED(object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&control)))) {
    MessageBoxW(nullptr, L"Register the control first: regsvr32 quillet.ocx", L"Quillet",
                MB_ICONERROR);
    return 1;
  }
  object->Release();
  ShowWindow(window, show);
  if (*file) {
    VARIANT name;
    name.vt = VT_BSTR;
    name.bstrVal = SysAllocString(file);
    Invoke(control, L"filename", DISPATCH_PROPERTYPUT, &name);
    SysFreeString(name.bstrVal);
    Invoke(control, L"Load", DISPATCH_METHOD, nullptr);
  } else {
    VARIANT dotsPerInch;
    dotsPerInch.vt = VT_I2;
    dotsPerInch.iVal = 150;
    Invoke(control, L"Resolution", DISPATCH_PROPERTYPUT, &dotsPerInch);
    Invoke(control, L"Scan", DISPATCH_METHOD, nullptr);
  }

  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  control->Release();
  OleUninitialize();
  return 0;
}
