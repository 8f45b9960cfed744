#include "platform/win32/file_source.h"

#include <algorithm>

#include "base/runtime_error.h"
#include "platform/win32/file_names.h"
#include "platform/win32/sdk.h"

namespace quillet {
namespace {

ErrorNumber OpenError(DWORD error) noexcept {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
      return ErrorNumber::FileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return ErrorNumber::PathNotFound;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ErrorNumber::OutOfMemory;
    default:
      return ErrorNumber::PathFileAccess;
  }
}

}  // namespace

Win32FileSource::Win32FileSource(const std::string& fileName) {
  // A name that the system would see cut short names no file.
  const std::wstring name = SystemFileName(fileName);
  if (name.empty()) throw RunTimeError(ErrorNumber::FileNotFound);
  m_file = ::CreateFileW(name.c_str(), GENERIC_READ,
                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (m_file == INVALID_HANDLE_VALUE) {
    const ErrorNumber error = OpenError(::GetLastError());
    throw RunTimeError(IsFolder(name) ? ErrorNumber::PathFileAccess : error, fileName);
  }
  // Consoles and pipes have a name too.
  LARGE_INTEGER size;
  if (::GetFileType(m_file) != FILE_TYPE_DISK || !::GetFileSizeEx(m_file, &size)) {
    ::CloseHandle(m_file);
    throw RunTimeError(ErrorNumber::PathFileAccess, fileName);
  }
  m_size = static_cast<std::uint64_t>(size.QuadPart);
}

Win32FileSource::~Win32FileSource() {
  ::CloseHandle(m_file);
}

std::size_t Win32FileSource::Read(std::uint64_t offset, std::span<Byte> target) {
  constexpr std::size_t kLargestRead = std::size_t{1} << 30;
  std::size_t done = 0;
  while (done < target.size()) {
    const std::uint64_t from = offset + done;
    OVERLAPPED position{};
    position.Offset = static_cast<DWORD>(from & 0xFFFFFFFF);
    position.OffsetHigh = static_cast<DWORD>(from >> 32);
    DWORD count = 0;
    if (!::ReadFile(m_file, target.data() + done,
                    static_cast<DWORD>(std::min(target.size() - done, kLargestRead)), &count,
                    &position)) {
      if (::GetLastError() == ERROR_HANDLE_EOF) break;
      throw RunTimeError(ErrorNumber::PathFileAccess);
    }
    if (count == 0) break;
    done += count;
  }
  return done;
}

}  // namespace quillet
