#include "platform/win32/win32_dialogs.h"

#include <string>

#include "platform/win32/sdk.h"
#include "platform/win32/text.h"
#include "platform/win32/window_classes.h"

namespace quillet {
namespace {

std::string Ansi(const std::string& text) {
  const std::wstring wide = Utf16(text);
  std::string bytes(wide.size() * 4, '\0');
  const int size =
      ::WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), bytes.data(),
                            static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

std::string FromAnsi(const std::string& bytes) {
  std::wstring wide(bytes.size(), L'\0');
  const int size = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()),
                                         wide.data(), static_cast<int>(wide.size()));
  wide.resize(static_cast<std::size_t>(size));
  return Utf8(wide);
}

// The record's buffers count their terminator.
bool Show(OPENFILENAME_RECORD& record, BOOL(WINAPI* dialog)(OPENFILENAMEA*)) {
  const std::string filter = Ansi(record.lpstrFilter);
  const std::string folder = Ansi(record.lpstrInitialDir);
  const std::string title = Ansi(record.lpstrTitle);
  std::string file = record.lpstrFile;
  std::string fileTitle = record.lpstrFileTitle;
  OPENFILENAMEA native{};
#ifdef _WIN64
  native.lStructSize = sizeof native;
#else
  native.lStructSize = OPENFILENAME_SIZE_VERSION_400A;  // the 76-byte form
#endif
  native.hwndOwner = reinterpret_cast<HWND>(record.hwndOwner);
  native.hInstance = ThisModule();
  native.lpstrFilter = filter.c_str();
  native.lpstrFile = file.data();
  native.nMaxFile = static_cast<DWORD>(file.size() + 1);
  native.lpstrFileTitle = fileTitle.data();
  native.nMaxFileTitle = static_cast<DWORD>(fileTitle.size() + 1);
  native.lpstrInitialDir = folder.c_str();
  native.lpstrTitle = title.empty() ? nullptr : title.c_str();
  native.Flags = record.Flags;
  if (!dialog(&native)) return false;
  record.lpstrFile = FromAnsi(file.c_str()) + '\0';
  return true;
}

}  // namespace

bool Win32Dialogs::GetSaveFileNameA(OPENFILENAME_RECORD& record) {
  return Show(record, &::GetSaveFileNameA);
}

bool Win32Dialogs::GetOpenFileNameA(OPENFILENAME_RECORD& record) {
  return Show(record, &::GetOpenFileNameA);
}

}  // namespace quillet
