#include "platform/win32/replacing_file.h"

#include <utility>

#include "platform/win32/sdk.h"

namespace quillet {
namespace {

std::wstring EndOfLinks(const std::wstring& name) {
  const HANDLE file =
      ::CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return name;
  std::wstring end(::GetFinalPathNameByHandleW(file, nullptr, 0, 0), L'\0');
  end.resize(::GetFinalPathNameByHandleW(file, end.data(), static_cast<DWORD>(end.size()), 0));
  ::CloseHandle(file);
  return end.empty() ? name : end;
}

}  // namespace

// The system's own service forms names from 16 bits that any program can foresee, and stops at 260
// characters. A clock that counts faster than files are made gives another name at each attempt.
std::wstring CreateUniqueFile(const std::wstring& beginning) {
  for (;;) {
    LARGE_INTEGER ticks{};
    ::QueryPerformanceCounter(&ticks);
    std::wstring name = beginning + std::to_wstring(::GetCurrentProcessId()) + L'-' +
                        std::to_wstring(ticks.QuadPart) + L".tmp";
    const HANDLE file = ::CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      ::CloseHandle(file);
      return name;
    }
    if (::GetLastError() != ERROR_FILE_EXISTS) return {};
  }
}

ReplacingFile::ReplacingFile(std::wstring target) : m_target(std::move(target)) {
  const DWORD attributes = ::GetFileAttributesW(m_target.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) {
      m_error = ERROR_ACCESS_DENIED;
      return;
    }
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) m_target = EndOfLinks(m_target);
  }
  m_name = CreateUniqueFile(m_target + L'.');
  if (m_name.empty()) m_error = ::GetLastError();
}

ReplacingFile::~ReplacingFile() {
  if (!m_name.empty()) ::DeleteFileW(m_name.c_str());
}

// The old file goes by a name of ours: not every system tidies up after one that it chose.
unsigned long ReplacingFile::Commit() {
  const std::wstring old = m_name + L".old";
  DWORD error = 0;
  if (!::ReplaceFileW(m_target.c_str(), m_name.c_str(), old.c_str(),
                      REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS, nullptr,
                      nullptr))
    error = ::GetLastError();
  if (error == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2) ::MoveFileExW(old.c_str(), m_target.c_str(), 0);
  if (error == 0) ::DeleteFileW(old.c_str());
  if (error == ERROR_FILE_NOT_FOUND)
    error = ::MoveFileExW(m_name.c_str(), m_target.c_str(), 0) ? 0 : ::GetLastError();
  if (error == 0) m_name.clear();
  return error;
}

}  // namespace quillet
