#include "platform/portable/portable_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/portable/file_errors.h"
#include "platform/portable/pixel_memory.h"
#include "platform/portable/replacing_file.h"

namespace quillet {
namespace {

constexpr mode_t kOwnFile = 0666;  // less what the user's mask takes

class OpenFile {
 public:
  OpenFile(const std::string& fileName, int flags) : m_name(fileName) {
    RequireFileName(fileName);
    do m_file = open(fileName.c_str(), flags | O_CLOEXEC, kOwnFile);
    while (m_file < 0 && errno == EINTR);
    if (m_file < 0) ThrowFileError(m_name, errno);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (m_file >= 0) close(m_file);
  }

  void Write(std::span<const Byte> bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = write(m_file, bytes.data(), bytes.size());
      if (written >= 0)
        bytes = bytes.subspan(static_cast<std::size_t>(written));
      else if (errno != EINTR)
        ThrowFileError(m_name, errno);
    }
  }

  // 0 at the end of the file.
  std::size_t Read(std::span<Byte> bytes) const {
    for (;;) {
      const ssize_t length = read(m_file, bytes.data(), bytes.size());
      if (length >= 0) return static_cast<std::size_t>(length);
      if (errno != EINTR) ThrowFileError(m_name, errno);
    }
  }

  // Some systems find only now that there is no room.
  void Close() {
    if (close(std::exchange(m_file, -1)) != 0 && errno != EINTR) ThrowFileError(m_name, errno);
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
  RequireFileName(name);
  const int file = mkostemp(name.data(), O_CLOEXEC);
  if (file < 0) ThrowFileError(name, errno);
  close(file);
  return name;
}

// Systems copy into whole pages of theirs twice as fast from memory that starts on a page. So what
// comes in several pieces is first put together in a buffer that stays in the cache.
void PortableFiles::WriteFile(const std::string& fileName,
                              std::span<const std::span<const Byte>> pieces) {
  constexpr std::size_t kBufferSize = std::size_t{256} << 10;
  OpenFile file(fileName, O_WRONLY | O_CREAT | O_TRUNC);
  if (pieces.size() == 1) {
    file.Write(pieces.front());
  } else {
    PixelMemory buffer(kBufferSize);
    std::size_t used = 0;
    for (std::span<const Byte> piece : pieces) {
      while (!piece.empty()) {
        const std::size_t count = std::min(piece.size(), kBufferSize - used);
        std::memcpy(buffer.Data() + used, piece.data(), count);
        piece = piece.subspan(count);
        used += count;
        if (used == kBufferSize) file.Write({buffer.Data(), std::exchange(used, std::size_t{0})});
      }
    }
    file.Write({buffer.Data(), used});
  }
  file.Close();
}

void PortableFiles::CopyFile(const std::string& source, const std::string& destination) {
  const OpenFile from(source, O_RDONLY);
  ReplacingFile to(destination);
  std::vector<Byte> buffer(std::size_t{256} << 10);
  while (const std::size_t length = from.Read(buffer)) to.Write(std::span(buffer).first(length));
  to.Commit();
}

void PortableFiles::DeleteFile(const std::string& fileName) {
  RequireFileName(fileName);
  constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
  struct stat status;
  if (lstat(fileName.c_str(), &status) != 0) ThrowFileError(fileName, errno);
  // Systems disagree on what unlinking a folder is, and let read-only files go.
  if (S_ISDIR(status.st_mode)) ThrowFileError(fileName, EISDIR);
  if (!S_ISLNK(status.st_mode) && ((status.st_mode & kAnyWrite) == 0 ||
                                   faccessat(AT_FDCWD, fileName.c_str(), W_OK, AT_EACCESS) != 0))
    ThrowFileError(fileName, EACCES);
  if (unlink(fileName.c_str()) != 0) ThrowFileError(fileName, errno);
}

}  // namespace quillet
