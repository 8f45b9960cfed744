#pragma once

#include <cstddef>
#include <memory>

#include "base/types.h"

namespace quillet {

// One block of pixels; its owner is whoever shares it.
//
// Page faults cost more than most arithmetic on pixels, so a block that fills half a large page or
// more is mapped on large pages of its own, where the system has them, and goes back to it with the
// block. Smaller ones come from the ordinary allocator, which keeps them warm.
class PixelMemory {
 public:
  // At least one byte, aligned to 64 bytes at least. Throws std::bad_alloc.
  explicit PixelMemory(std::size_t size);
  PixelMemory(const PixelMemory&) = delete;
  PixelMemory& operator=(const PixelMemory&) = delete;
  ~PixelMemory();

  Byte* Data() noexcept { return m_data; }
  const Byte* Data() const noexcept { return m_data; }
  std::size_t Size() const noexcept { return m_size; }

  // Whether a fresh block is known to hold zeros; otherwise its content is unspecified.
  bool StartsZeroed() const noexcept { return m_size >= kMappedSize; }

 private:
  static constexpr std::size_t kMappedSize = std::size_t{1} << 20;

  Byte* m_data;
  std::size_t m_size;
};

}  // namespace quillet
