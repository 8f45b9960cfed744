#include "platform/win32/win32_files.h"

#include <algorithm>
#include <array>

#include "base/runtime_error.h"
#include "platform/win32/sdk.h"
#include "platform/win32/text.h"

namespace quillet {
namespace {

// Of the last system error; `what` is the file or folder it came from.
[[noreturn]] void Fail(const std::string& what) {
  switch (::GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
      throw RunTimeError(ErrorNumber::FileNotFound, what);
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_DIRECTORY:
      throw RunTimeError(ErrorNumber::PathNotFound, what);
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      throw RunTimeError(ErrorNumber::DiskFull, what);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_WRITE_PROTECT:
      throw RunTimeError(ErrorNumber::PermissionDenied, what);
    default:
      throw RunTimeError(ErrorNumber::PathFileAccess, what);
  }
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
  std::array<wchar_t, MAX_PATH + 2> folder{};
  if (::GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0) Fail("TEMP");
  return Utf8(folder.data());
}

// The system's own service forms names from 16 bits that any program can foresee: names of ours are
// made of a counter that nobody else has, and created exclusively.
std::string Win32Files::GetTempFileNameA(const std::string& folder, const std::string& prefix) {
  for (;;) {
    LARGE_INTEGER ticks{};
    ::QueryPerformanceCounter(&ticks);
    const std::string name = folder + prefix + std::to_string(::GetCurrentProcessId()) + "-" +
                             std::to_string(ticks.QuadPart) + ".tmp";
    const UniqueFile file(::CreateFileW(Utf16(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_TEMPORARY, nullptr));
    if (file) return name;
    if (::GetLastError() != ERROR_FILE_EXISTS) Fail(name);
  }
}

void Win32Files::WriteFile(const std::string& fileName,
                           std::span<const std::span<const Byte>> pieces) {
  const UniqueFile file(::CreateFileW(Utf16(fileName).c_str(), GENERIC_WRITE, 0, nullptr,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) Fail(fileName);
  constexpr std::size_t kLargest = std::size_t{64} << 20;
  for (std::span<const Byte> rest : pieces) {
    while (!rest.empty()) {
      const auto size = static_cast<DWORD>(std::min(rest.size(), kLargest));
      DWORD written = 0;
      if (!::WriteFile(file.get(), rest.data(), size, &written, nullptr) || written == 0)
        Fail(fileName);
      rest = rest.subspan(written);
    }
  }
}

void Win32Files::CopyFile(const std::string& source, const std::string& destination) {
  const std::wstring target = Utf16(destination);
  const DWORD attributes = ::GetFileAttributesW(target.c_str());
  const bool isThere = attributes != INVALID_FILE_ATTRIBUTES;
  if (isThere && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0)
    throw RunTimeError(ErrorNumber::PermissionDenied, destination);
  const std::wstring beside = target + L".quillet-new";
  if (::CopyFileW(Utf16(source).c_str(), beside.c_str(), FALSE) &&
      ::MoveFileExW(beside.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING))
    return;
  const DWORD error = ::GetLastError();
  ::DeleteFileW(beside.c_str());
  ::SetLastError(error);
  Fail(destination);
}

void Win32Files::DeleteFile(const std::string& fileName) {
  if (!::DeleteFileW(Utf16(fileName).c_str())) Fail(fileName);
}

}  // namespace quillet
