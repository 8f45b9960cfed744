#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "base/types.h"

namespace quillet {

// Where a decoder reads: a file, or bytes in memory.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  virtual std::uint64_t Size() const = 0;
  // Reads from that offset as much as there is; the answer is the number of bytes read.
  virtual std::size_t Read(std::uint64_t offset, std::span<Byte> target) = 0;
  // The same, one target after the other filled.
  virtual std::size_t ReadScattered(std::uint64_t offset,
                                    std::span<const std::span<Byte>> targets) {
    std::size_t done = 0;
    for (const std::span<Byte> target : targets) {
      const std::size_t count = Read(offset + done, target);
      done += count;
      if (count < target.size()) break;
    }
    return done;
  }
};

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::span<const Byte> bytes) : m_bytes(bytes) {}
  std::uint64_t Size() const override { return m_bytes.size(); }
  std::size_t Read(std::uint64_t offset, std::span<Byte> target) override;

 private:
  std::span<const Byte> m_bytes;
};

// A file on disk. A size read once; a file that shrinks meanwhile gives fewer bytes.
class FileSource : public ByteSource {
 public:
  // Run-time errors: 53 no such file, 76 no such folder, 75 it cannot be read.
  explicit FileSource(const std::string& fileName);
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;
  ~FileSource() override;

  std::uint64_t Size() const override { return m_size; }
  // Run-time error 75 when reading fails.
  std::size_t Read(std::uint64_t offset, std::span<Byte> target) override;
  std::size_t ReadScattered(std::uint64_t offset,
                            std::span<const std::span<Byte>> targets) override;

 private:
  int m_file = -1;
  std::uint64_t m_size = 0;
};

}  // namespace quillet
