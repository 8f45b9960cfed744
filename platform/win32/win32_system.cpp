#include "platform/win32/win32_system.h"

#include <string>

#include "platform/win32/sdk.h"
#include "platform/win32/text.h"
#include "platform/win32/window_classes.h"

namespace quillet {

int Win32System::CurrentYear() const {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return now.wYear;
}

std::string Win32System::ModuleName() const {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  path.resize(::GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size())));
  const std::size_t folder = path.find_last_of(L"\\/");
  if (folder != std::wstring::npos) path.erase(0, folder + 1);
  const std::size_t extension = path.rfind(L'.');
  if (extension != std::wstring::npos) path.erase(extension);
  return Utf8(path);
}

bool Win32System::ShellExecuteA(WindowHandle window, const std::string& file) {
  constexpr INT_PTR kLastError = 32;
  const HINSTANCE result = ::ShellExecuteA(reinterpret_cast<HWND>(window), "open", file.c_str(),
                                           nullptr, nullptr, SW_SHOW);
  return reinterpret_cast<INT_PTR>(result) > kLastError;
}

}  // namespace quillet
