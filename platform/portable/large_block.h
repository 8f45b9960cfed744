#pragma once

#include <cstddef>

#include "base/types.h"

namespace quillet {

// Memory from the system itself, on large pages where it has them: a page fault costs more than
// most arithmetic on what lies there. Zeros when new. Goes back to the system with its owner.
class LargeBlock {
 public:
  // A whole number of kGrain bytes at least as many as asked for. Throws std::bad_alloc.
  explicit LargeBlock(std::size_t size);
  LargeBlock(LargeBlock&& other) noexcept;
  LargeBlock& operator=(LargeBlock&& other) noexcept;
  ~LargeBlock();

  Byte* Data() const noexcept { return m_data; }
  std::size_t Size() const noexcept { return m_size; }

  // Gives back what lies beyond that many bytes.
  void Trim(std::size_t size) noexcept;

 private:
  void Unmap() noexcept;

  Byte* m_data = nullptr;
  std::size_t m_size = 0;
};

}  // namespace quillet
