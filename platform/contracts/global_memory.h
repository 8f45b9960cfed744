#pragma once

#include <cstddef>
#include <utility>

#include "platform/contracts/handles.h"

namespace quillet {

// Movable memory blocks that processes' parts hand to one another by handle. A zero, freed or
// foreign handle is refused, never dereferenced.
class GlobalMemory {
 public:
  virtual ~GlobalMemory() = default;

  // A zero-filled block owned by the caller; None when there is no memory.
  virtual GlobalHandle GlobalAlloc(std::size_t bytes) = 0;
  // The block's address until the matching unlock; null when refused.
  virtual void* GlobalLock(GlobalHandle block) = 0;
  virtual void GlobalUnlock(GlobalHandle block) = 0;
  // At least the bytes asked for; 0 when refused.
  virtual std::size_t GlobalSize(GlobalHandle block) const = 0;
  // True when the block was freed.
  virtual bool GlobalFree(GlobalHandle block) = 0;
};

// Keeps a block locked.
class GlobalLockGuard {
 public:
  GlobalLockGuard(GlobalMemory& memory, GlobalHandle block)
      : m_memory(memory), m_block(block), m_address(memory.GlobalLock(block)) {}
  GlobalLockGuard(const GlobalLockGuard&) = delete;
  GlobalLockGuard& operator=(const GlobalLockGuard&) = delete;
  ~GlobalLockGuard() {
    if (m_address) m_memory.GlobalUnlock(m_block);
  }

  // Null when the block was refused.
  void* get() const noexcept { return m_address; }

 private:
  GlobalMemory& m_memory;
  GlobalHandle m_block;
  void* m_address;
};

// Owns a block.
class UniqueGlobal {
 public:
  UniqueGlobal(GlobalMemory& memory, GlobalHandle block) noexcept
      : m_memory(memory), m_block(block) {}
  UniqueGlobal(const UniqueGlobal&) = delete;
  UniqueGlobal& operator=(const UniqueGlobal&) = delete;
  ~UniqueGlobal() {
    if (m_block != GlobalHandle::None) m_memory.GlobalFree(m_block);
  }

  GlobalHandle get() const noexcept { return m_block; }
  // For a callee that stores a block in it.
  GlobalHandle& out() noexcept { return m_block; }
  // Frees the block now and forgets it; what the platform refuses to free stays owned. False when
  // refused.
  bool Free() noexcept {
    if (!m_memory.GlobalFree(m_block)) return false;
    m_block = GlobalHandle::None;
    return true;
  }

 private:
  GlobalMemory& m_memory;
  GlobalHandle m_block;
};

}  // namespace quillet
