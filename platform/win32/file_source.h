#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/portable/byte_source.h"

namespace quillet {

// A file on disk. A size read once; a file that shrinks meanwhile gives fewer bytes.
class Win32FileSource : public ByteSource {
 public:
  // Run-time errors: 53 no such file, 76 no such folder, 75 it cannot be read, 7 no memory.
  explicit Win32FileSource(const std::string& fileName);
  Win32FileSource(const Win32FileSource&) = delete;
  Win32FileSource& operator=(const Win32FileSource&) = delete;
  ~Win32FileSource() override;

  std::uint64_t Size() const override { return m_size; }
  // Run-time error 75 when reading fails.
  std::size_t Read(std::uint64_t offset, std::span<Byte> target) override;

 private:
  void* m_file;
  std::uint64_t m_size = 0;
};

}  // namespace quillet
