#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "base/types.h"
#include "platform/portable/block_reserve.h"

namespace quillet {

// One block of pixels; its owner is whoever shares it.
//
// From 2 MB on it is a block of the system's own, which goes to the reserve, where there is one,
// with its last owner. Smaller ones come from the ordinary allocator, which keeps them warm.
class PixelMemory {
 public:
  // At least one byte, aligned to 64 bytes at least. Throws std::bad_alloc.
  explicit PixelMemory(std::size_t size, std::shared_ptr<BlockReserve> reserve = nullptr);
  PixelMemory(const PixelMemory&) = delete;
  PixelMemory& operator=(const PixelMemory&) = delete;
  ~PixelMemory();

  Byte* Data() noexcept { return m_data; }
  const Byte* Data() const noexcept { return m_data; }
  std::size_t Size() const noexcept { return m_size; }
  const std::shared_ptr<BlockReserve>& Reserve() const noexcept { return m_reserve; }

  // Whether a fresh block is known to hold zeros; otherwise its content is unspecified.
  bool StartsZeroed() const noexcept { return m_zeroed; }

 private:
  std::shared_ptr<BlockReserve> m_reserve;
  std::optional<LargeBlock> m_block;
  Byte* m_data = nullptr;
  std::size_t m_size;
  bool m_zeroed = false;
};

}  // namespace quillet
