#include "platform/win32/win32_source_manager.h"

#include <utility>

#include "base/runtime_error.h"
#include "platform/win32/sdk.h"
#include "platform/win32/text.h"

namespace quillet {
namespace {

using EntryPoint = TW_UINT16(WINAPI*)(TW_IDENTITY*, TW_IDENTITY*, TW_UINT32, TW_UINT16, TW_UINT16,
                                      void*);

}  // namespace

Win32SourceManager::Win32SourceManager()
#ifdef _WIN64
    : Win32SourceManager({L"TWAINDSM.DLL", L"TWAIN_32.DLL"}){}
#else
    : Win32SourceManager({L"TWAIN_32.DLL"}) {
}
#endif

      Win32SourceManager::Win32SourceManager(std::vector<std::wstring> libraries)
    : m_libraries(std::move(libraries)) {
}

void Win32SourceManager::Bind() {
  bool isThere = false;
  for (const std::wstring& name : m_libraries) {
    const HMODULE library = ::LoadLibraryW(name.c_str());
    if (!library) {
      isThere = isThere || ::GetLastError() != ERROR_MOD_NOT_FOUND;
      continue;
    }
    isThere = true;
    if (const FARPROC entry = ::GetProcAddress(library, "DSM_Entry")) {
      HMODULE pinned = nullptr;
      ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                           reinterpret_cast<const wchar_t*>(entry), &pinned);
      m_entry = reinterpret_cast<void*>(entry);
      return;
    }
    ::FreeLibrary(library);
  }
  throw RunTimeError(isThere ? ErrorNumber::LibraryNotLoaded : ErrorNumber::FileNotFound,
                     Utf8(m_libraries.front()));
}

TW_UINT16 Win32SourceManager::DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                                        TW_UINT16 argumentType, TW_UINT16 message, void* pData) {
  if (!m_entry) Bind();
  return reinterpret_cast<EntryPoint>(m_entry)(pOrigin, pDest, group, argumentType, message, pData);
}

std::string Win32SourceManager::AnsiText(const std::string& text, std::size_t maxBytes) const {
  std::wstring wide = Utf16(text);
  const auto ansi = [&](const std::wstring& part) {
    std::string bytes(part.size() * 4, '\0');
    const int size =
        ::WideCharToMultiByte(CP_ACP, 0, part.data(), static_cast<int>(part.size()), bytes.data(),
                              static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
  };
  while (ansi(wide).size() > maxBytes) wide.pop_back();
  // Not between the halves of a surrogate pair.
  if (!wide.empty() && IS_HIGH_SURROGATE(wide.back())) wide.pop_back();
  return ansi(wide);
}

}  // namespace quillet
