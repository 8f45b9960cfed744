#include "platform/portable/replacing_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <random>
#include <utility>

#include "platform/portable/file_errors.h"

namespace quillet {
namespace {

constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;
constexpr mode_t kOwnFile = 0666;  // less what the user's mask takes
constexpr mode_t kPermissions = 07777;

// The name's part up to and with its last slash.
std::string FolderOf(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string::npos ? "" : name.substr(0, slash + 1);
}

// The name of what a chain of links ends at, whether it is there or not.
std::string FollowLinks(const std::string& fileName) {
  constexpr int kMostLinks = 40;
  std::string name = fileName;
  for (int link = 0; link < kMostLinks; ++link) {
    char target[PATH_MAX];
    const ssize_t length = readlink(name.c_str(), target, sizeof(target));
    if (length < 0) return name;
    const std::string next(target, static_cast<std::size_t>(length));
    name = next.starts_with('/') ? next : FolderOf(name) + next;
  }
  ThrowFileError(fileName, ELOOP);
}

// The superuser is asked too: nobody marks a file read-only to have it replaced.
void RequireReplaceable(const std::string& fileName, const struct stat& status) {
  constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
  if (S_ISDIR(status.st_mode)) ThrowFileError(fileName, EISDIR);
  if (!S_ISREG(status.st_mode)) ThrowFileError(fileName, EINVAL);
  if ((status.st_mode & kAnyWrite) == 0) ThrowFileError(fileName, EACCES);
  if (faccessat(AT_FDCWD, fileName.c_str(), W_OK, AT_EACCESS) != 0) ThrowFileError(fileName, errno);
}

// Creates a file of a new name in the folder of `target`.
int CreateBeside(const std::string& target, mode_t mode, std::string& name) {
  constexpr int kAttempts = 100;
  std::random_device random;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    name = FolderOf(target) + ".new" + std::to_string(random());
    const int file = open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file >= 0) return file;
    if (errno != EEXIST && errno != EINTR) break;
  }
  return -1;
}

}  // namespace

ReplacingFile::ReplacingFile(const std::string& fileName) {
  RequireFileName(fileName);
  m_target = FollowLinks(fileName);
  struct stat old;
  const bool replaces = stat(m_target.c_str(), &old) == 0;
  if (replaces)
    RequireReplaceable(m_target, old);
  else if (errno != ENOENT || m_target.ends_with('/'))
    ThrowFileError(m_target, errno);

  std::string beside;
  m_file = CreateBeside(m_target, replaces ? kPrivate : kOwnFile, beside);
  if (m_file < 0) ThrowFileError(m_target, errno);
  m_beside = std::move(beside);
  if (!replaces) return;
  m_losesContent = old.st_size > 0;
  // Changing the owner may be refused and takes permissions with it, so it comes first.
  static_cast<void>(fchown(m_file, old.st_uid, old.st_gid) == 0);
  static_cast<void>(fchmod(m_file, old.st_mode & kPermissions) == 0);
}

ReplacingFile::~ReplacingFile() {
  if (m_file >= 0) close(m_file);
  if (!m_beside.empty()) unlink(m_beside.c_str());
}

void ReplacingFile::Write(std::span<const Byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(m_file, bytes.data(), bytes.size());
    if (written >= 0)
      bytes = bytes.subspan(static_cast<std::size_t>(written));
    else if (errno != EINTR)
      ThrowFileError(m_target, errno);
  }
}

void ReplacingFile::Commit() {
  // The new content must not be lost with the power when the old is already gone.
  if (m_losesContent && fsync(m_file) != 0) ThrowFileError(m_target, errno);
  if (close(std::exchange(m_file, -1)) != 0 && errno != EINTR) ThrowFileError(m_target, errno);
  if (std::rename(m_beside.c_str(), m_target.c_str()) != 0) ThrowFileError(m_target, errno);
  m_beside.clear();
}

}  // namespace quillet
