#include "platform/win32/window_classes.h"

#include "base/runtime_error.h"

namespace quillet {

namespace {

HMODULE ModuleOfThis(DWORD flag) noexcept {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(flag | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&ThisModule), &module);
  return module;
}

}  // namespace

HINSTANCE ThisModule() noexcept {
  return ModuleOfThis(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
}

void KeepThisModule() noexcept {
  ModuleOfThis(GET_MODULE_HANDLE_EX_FLAG_PIN);
}

WindowClass::WindowClass(const wchar_t* name, UINT style, HBRUSH background)
    : m_name(name + (L"." + std::to_wstring(reinterpret_cast<std::uintptr_t>(this)))) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof(description);
  description.style = style;
  description.lpfnWndProc = ::DefWindowProcW;
  description.hInstance = ThisModule();
  description.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = background;
  description.lpszClassName = m_name.c_str();
  // A window left behind keeps its class; one of ours has the same procedure whoever made it.
  if (::RegisterClassExW(&description) == 0 && ::GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
    throw RunTimeError(ErrorNumber::OutOfMemory);
}

WindowClass::~WindowClass() {
  ::UnregisterClassW(m_name.c_str(), ThisModule());
}

}  // namespace quillet
