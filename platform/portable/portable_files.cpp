#include "platform/portable/portable_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/portable/file_errors.h"
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

  // From the file's beginning. A call ends where a multiple of 1 MB of the file does: the system
  // then holds the content in larger pieces of memory, and need not gather very large ones first.
  void Write(std::span<const std::span<const Byte>> pieces) const {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 20;
    std::vector<std::span<const Byte>> rest(pieces.begin(), pieces.end());
    std::vector<iovec> together;
    std::size_t position = 0;
    for (auto next = rest.begin(); next != rest.end();) {
      together.clear();
      std::size_t room = kMostAtOnce - position % kMostAtOnce;
      for (auto piece = next; piece != rest.end() && room > 0 && together.size() < 16; ++piece) {
        const std::size_t size = std::min(piece->size(), room);
        together.push_back({const_cast<Byte*>(piece->data()), size});
        room -= size;
      }
      const ssize_t count = writev(m_file, together.data(), static_cast<int>(together.size()));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) ThrowFileError(m_name, errno);
      auto written = static_cast<std::size_t>(count);
      position += written;
      while (next != rest.end() && next->size() <= written) written -= (next++)->size();
      if (next != rest.end()) *next = next->subspan(written);
    }
  }

  // Lets go of what the file held. An empty one is left alone: some file systems take cutting it as
  // the sign of a replacement, and start writing to the disk as soon as it is closed.
  void Empty() const {
    struct stat status;
    if (fstat(m_file, &status) != 0 || (status.st_size != 0 && ftruncate(m_file, 0) != 0))
      ThrowFileError(m_name, errno);
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

void PortableFiles::WriteFile(const std::string& fileName,
                              std::span<const std::span<const Byte>> pieces) {
  OpenFile file(fileName, O_WRONLY | O_CREAT);
  file.Empty();
  file.Write(pieces);
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
