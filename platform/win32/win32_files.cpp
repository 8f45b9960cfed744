#include "platform/win32/win32_files.h"

#include <algorithm>

#include "base/runtime_error.h"
#include "platform/win32/file_names.h"
#include "platform/win32/replacing_file.h"
#include "platform/win32/sdk.h"
#include "platform/win32/text.h"

namespace quillet {
namespace {

// `name` is the file or folder that the system's error came from.
[[noreturn]] void Fail(DWORD error, const std::string& name) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
      throw RunTimeError(ErrorNumber::FileNotFound, name);
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_DIRECTORY:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      throw RunTimeError(ErrorNumber::PathNotFound, name);
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      throw RunTimeError(ErrorNumber::DiskFull, name);
    case ERROR_ACCESS_DENIED:
      // That is also what the system says of a folder that is taken for a file.
      if (IsFolder(SystemFileName(name))) throw RunTimeError(ErrorNumber::PathFileAccess, name);
      [[fallthrough]];
    case ERROR_SHARING_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_WRITE_PROTECT:
      throw RunTimeError(ErrorNumber::PermissionDenied, name);
    default:
      throw RunTimeError(ErrorNumber::PathFileAccess, name);
  }
}

std::wstring RequireFileName(const std::string& name) {
  std::wstring system = SystemFileName(name);
  if (system.empty()) throw RunTimeError(ErrorNumber::PathFileAccess);
  return system;
}

class UniqueFile {
 public:
  explicit UniqueFile(HANDLE file) : m_file(file) {}
  UniqueFile(const UniqueFile&) = delete;
  UniqueFile& operator=(const UniqueFile&) = delete;
  ~UniqueFile() {
    if (*this) ::CloseHandle(m_file);
  }

  HANDLE get() const noexcept { return m_file; }
  explicit operator bool() const noexcept { return m_file != INVALID_HANDLE_VALUE; }

 private:
  HANDLE m_file;
};

}  // namespace

std::string Win32Files::GetTempPathA() {
  std::wstring folder(MAX_PATH + 1, L'\0');
  DWORD length = ::GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
  if (length > folder.size()) {
    folder.resize(length);
    length = ::GetTempPathW(length, folder.data());
  }
  if (length == 0 || length > folder.size()) Fail(ERROR_PATH_NOT_FOUND, "TEMP");
  folder.resize(length);
  return Utf8(folder);
}

std::string Win32Files::GetTempFileNameA(const std::string& folder, const std::string& prefix) {
  std::string beginning = folder;
  if (!folder.empty() && !folder.ends_with('\\') && !folder.ends_with('/')) beginning += '\\';
  beginning += prefix;
  const std::wstring begin = RequireFileName(beginning);
  const std::wstring name = CreateUniqueFile(begin);
  if (name.empty()) Fail(::GetLastError(), beginning);
  return beginning + Utf8(name.substr(begin.size()));
}

void Win32Files::WriteFile(const std::string& fileName,
                           std::span<const std::span<const Byte>> pieces) {
  const UniqueFile file(::CreateFileW(RequireFileName(fileName).c_str(), GENERIC_WRITE, 0, nullptr,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) Fail(::GetLastError(), fileName);
  constexpr std::size_t kLargest = std::size_t{64} << 20;
  for (std::span<const Byte> rest : pieces) {
    while (!rest.empty()) {
      const auto size = static_cast<DWORD>(std::min(rest.size(), kLargest));
      DWORD written = 0;
      if (!::WriteFile(file.get(), rest.data(), size, &written, nullptr) || written == 0)
        Fail(::GetLastError(), fileName);
      rest = rest.subspan(written);
    }
  }
}

void Win32Files::CopyFile(const std::string& source, const std::string& destination) {
  const std::wstring from = RequireFileName(source);
  const DWORD attributes = ::GetFileAttributesW(from.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) Fail(::GetLastError(), source);
  if (IsFolder(from)) throw RunTimeError(ErrorNumber::PathFileAccess, source);

  ReplacingFile target(RequireFileName(destination));
  if (target.Error() != 0) Fail(target.Error(), destination);
  if (!::CopyFileW(from.c_str(), target.Name().c_str(), FALSE)) {
    const DWORD error = ::GetLastError();
    Fail(error, error == ERROR_DISK_FULL ? destination : source);
  }
  if (const DWORD error = target.Commit()) Fail(error, destination);
}

void Win32Files::DeleteFile(const std::string& fileName) {
  if (!::DeleteFileW(RequireFileName(fileName).c_str())) Fail(::GetLastError(), fileName);
}

}  // namespace quillet
