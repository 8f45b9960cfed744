#include "platform/portable/portable_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>
#include <vector>

#include "base/runtime_error.h"

namespace quillet {
namespace {

constexpr mode_t kOwnFile = 0666;  // less what the user's mask takes

// Run-time error 76 when the folder that the name lies in is not there, else 53.
ErrorNumber WhatIsMissing(const std::string& fileName) {
  const std::size_t slash = fileName.rfind('/');
  if (slash == std::string::npos) return ErrorNumber::FileNotFound;
  struct stat folder;
  const bool isFolder =
      stat(fileName.substr(0, slash + 1).c_str(), &folder) == 0 && S_ISDIR(folder.st_mode);
  return isFolder ? ErrorNumber::FileNotFound : ErrorNumber::PathNotFound;
}

[[noreturn]] void Throw(const std::string& fileName, int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      throw RunTimeError(WhatIsMissing(fileName), fileName);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      throw RunTimeError(ErrorNumber::DiskFull, fileName);
    case EACCES:
    case EPERM:
    case EROFS:
      throw RunTimeError(ErrorNumber::PermissionDenied, fileName);
    default:
      throw RunTimeError(ErrorNumber::PathFileAccess, fileName);
  }
}

// A name that the system would see cut short names no file.
void RequireWhole(const std::string& fileName) {
  if (fileName.empty() || fileName.find('\0') != std::string::npos)
    throw RunTimeError(ErrorNumber::PathFileAccess);
}

class OpenFile {
 public:
  OpenFile(const std::string& fileName, int flags) : m_name(fileName) {
    RequireWhole(fileName);
    do m_file = open(fileName.c_str(), flags | O_CLOEXEC, kOwnFile);
    while (m_file < 0 && errno == EINTR);
    if (m_file < 0) Throw(m_name, errno);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (m_file >= 0) close(m_file);
  }

  // As much as the system takes at once.
  std::size_t Write(std::span<const iovec> pieces) const {
    for (;;) {
      const ssize_t written = writev(m_file, pieces.data(), static_cast<int>(pieces.size()));
      if (written >= 0) return static_cast<std::size_t>(written);
      if (errno != EINTR) Throw(m_name, errno);
    }
  }

  // Some systems find only now that there is no room.
  void Close() {
    if (close(std::exchange(m_file, -1)) != 0 && errno != EINTR) Throw(m_name, errno);
  }

 private:
  const std::string& m_name;
  int m_file = -1;
};

}  // namespace

std::string PortableFiles::GetTempPathA() {
  const char* const set = std::getenv("TMPDIR");
  std::string folder = set && *set ? set : "/tmp";
  if (!folder.ends_with('/')) folder += '/';
  return folder;
}

std::string PortableFiles::GetTempFileNameA(const std::string& folder, const std::string& prefix) {
  std::string name = folder;
  if (!name.empty() && !name.ends_with('/')) name += '/';
  name += prefix + "XXXXXX";
  RequireWhole(name);
  const int file = mkostemp(name.data(), O_CLOEXEC);
  if (file < 0) Throw(name, errno);
  close(file);
  return name;
}

void PortableFiles::WriteFile(const std::string& fileName,
                              std::span<const std::span<const Byte>> pieces) {
  constexpr std::size_t kPiecesAtOnce = 16;  // what every system takes
  OpenFile file(fileName, O_WRONLY | O_CREAT | O_TRUNC);
  std::vector<iovec> rest;
  for (const auto& piece : pieces)
    if (!piece.empty()) rest.push_back({const_cast<Byte*>(piece.data()), piece.size()});
  auto next = rest.begin();
  while (next != rest.end()) {
    const auto left = static_cast<std::size_t>(rest.end() - next);
    std::size_t written = file.Write({next, std::min(left, kPiecesAtOnce)});
    for (; next != rest.end() && written >= next->iov_len; ++next) written -= next->iov_len;
    if (next == rest.end()) break;
    next->iov_base = static_cast<Byte*>(next->iov_base) + written;
    next->iov_len -= written;
  }
  file.Close();
}

void PortableFiles::DeleteFile(const std::string& fileName) {
  RequireWhole(fileName);
  if (unlink(fileName.c_str()) == 0) return;
  // Systems disagree on what unlinking a folder is.
  const int error = errno;
  struct stat status;
  if (stat(fileName.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) Throw(fileName, EISDIR);
  Throw(fileName, error);
}

}  // namespace quillet
