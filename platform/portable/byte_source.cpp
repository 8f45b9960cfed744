#include "platform/portable/byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "base/runtime_error.h"

namespace quillet {
namespace {

[[noreturn]] void ThrowOpenError(const std::string& fileName, int error) {
  if (error != ENOENT && error != ENOTDIR) {
    throw RunTimeError(ErrorNumber::PathFileAccess, fileName);
  }
  const std::size_t slash = fileName.rfind('/');
  if (slash != std::string::npos) {
    struct stat folder;
    const std::string path = fileName.substr(0, slash + 1);
    if (stat(path.c_str(), &folder) != 0) throw RunTimeError(ErrorNumber::PathNotFound, fileName);
  }
  throw RunTimeError(ErrorNumber::FileNotFound, fileName);
}

}  // namespace

std::size_t MemorySource::Read(std::uint64_t offset, std::span<Byte> target) {
  if (offset >= m_bytes.size()) return 0;
  const std::span<const Byte> rest = m_bytes.subspan(static_cast<std::size_t>(offset));
  const std::size_t count = std::min(rest.size(), target.size());
  std::copy_n(rest.begin(), count, target.begin());
  return count;
}

FileSource::FileSource(const std::string& fileName) {
  // A name that the system would see cut short names no file.
  if (fileName.empty() || fileName.find('\0') != std::string::npos) {
    throw RunTimeError(ErrorNumber::FileNotFound);
  }
  // Not to wait for the other end of a pipe.
  m_file = open(fileName.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (m_file < 0) ThrowOpenError(fileName, errno);
  struct stat status;
  if (fstat(m_file, &status) != 0 || !S_ISREG(status.st_mode)) {
    close(m_file);
    throw RunTimeError(ErrorNumber::PathFileAccess, fileName);
  }
  m_size = static_cast<std::uint64_t>(status.st_size);
}

FileSource::~FileSource() {
  close(m_file);
}

std::size_t FileSource::Read(std::uint64_t offset, std::span<Byte> target) {
  std::size_t done = 0;
  while (done < target.size()) {
    const ssize_t count = pread(m_file, target.data() + done, target.size() - done,
                                static_cast<off_t>(offset + done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw RunTimeError(ErrorNumber::PathFileAccess, std::strerror(errno));
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

std::size_t FileSource::ReadScattered(std::uint64_t offset,
                                      std::span<const std::span<Byte>> targets) {
  std::vector<iovec> pieces;
  std::size_t size = 0;
  for (const std::span<Byte> target : targets) {
    pieces.push_back({target.data(), target.size()});
    size += target.size();
  }
  const ssize_t count = lseek(m_file, static_cast<off_t>(offset), SEEK_SET) < 0
                            ? -1
                            : readv(m_file, pieces.data(), static_cast<int>(pieces.size()));
  if (count >= 0 && static_cast<std::size_t>(count) == size) return size;
  // Interrupted, at the end, too many at once, or an error: one by one shows which.
  return ByteSource::ReadScattered(offset, targets);
}

}  // namespace quillet
