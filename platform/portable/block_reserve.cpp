#include "platform/portable/block_reserve.h"

#include <utility>

namespace quillet {

std::optional<LargeBlock> BlockReserve::Take(std::size_t size) noexcept {
  std::optional<LargeBlock> block = std::exchange(m_block, std::nullopt);
  if (block && block->Size() < size) block.reset();
  if (block) block->Trim(size);
  return block;
}

void BlockReserve::Keep(LargeBlock block) noexcept {
  if (!m_block || m_block->Size() < block.Size()) m_block = std::move(block);
}

}  // namespace quillet
