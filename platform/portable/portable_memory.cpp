#include "platform/portable/portable_memory.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace quillet {

PortableMemory::Block::Block(std::size_t size, std::shared_ptr<BlockReserve> reserve)
    : m_memory(std::make_unique<PixelMemory>(size + kLead, std::move(reserve))) {
  if (!m_memory->StartsZeroed()) std::memset(m_memory->Data(), 0, m_memory->Size());
}

GlobalHandle PortableMemory::GlobalAlloc(std::size_t bytes) try {
  if (bytes > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) / 2)
    return GlobalHandle::None;
  Block block(std::max<std::size_t>(bytes, 1), m_reserve);
  while (m_next == 0 || m_blocks.contains(GlobalHandle{m_next})) m_next += 4;
  const GlobalHandle handle{m_next};
  m_blocks.emplace(handle, std::move(block));
  m_next += 4;
  return handle;
} catch (const std::bad_alloc&) {
  return GlobalHandle::None;
}

void* PortableMemory::GlobalLock(GlobalHandle block) {
  const auto found = m_blocks.find(block);
  if (found == m_blocks.end()) return nullptr;
  ++found->second.locks;
  return found->second.Data();
}

void PortableMemory::GlobalUnlock(GlobalHandle block) {
  const auto found = m_blocks.find(block);
  if (found != m_blocks.end() && found->second.locks > 0) --found->second.locks;
}

std::size_t PortableMemory::GlobalSize(GlobalHandle block) const {
  const auto found = m_blocks.find(block);
  return found == m_blocks.end() ? 0 : found->second.Size();
}

bool PortableMemory::GlobalFree(GlobalHandle block) {
  const auto found = m_blocks.find(block);
  if (found == m_blocks.end() || found->second.locks > 0) return false;
  m_blocks.erase(found);
  return true;
}

}  // namespace quillet
