#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>

#include "platform/contracts/global_memory.h"
#include "platform/portable/pixel_memory.h"

namespace quillet {

// Memory blocks behind checked handles. A block is not freed while it is locked, so an address that
// was given out stays good until its unlock. Handles come back only after all others were used.
//
// A large block goes to the reserve when it is freed: a picture is likely made from it next.
class PortableMemory : public GlobalMemory {
 public:
  // Without a reserve blocks go back to the system.
  explicit PortableMemory(std::shared_ptr<BlockReserve> reserve = nullptr)
      : m_reserve(std::move(reserve)) {}

  GlobalHandle GlobalAlloc(std::size_t bytes) override;
  void* GlobalLock(GlobalHandle block) override;
  void GlobalUnlock(GlobalHandle block) override;
  std::size_t GlobalSize(GlobalHandle block) const override;
  bool GlobalFree(GlobalHandle block) override;

  // Live blocks.
  int Count() const { return static_cast<int>(m_blocks.size()); }

 private:
  struct Block {
    std::unique_ptr<PixelMemory> memory;
    int locks = 0;
  };

  std::shared_ptr<BlockReserve> m_reserve;
  std::unordered_map<GlobalHandle, Block> m_blocks;
  std::uintptr_t m_next = 0x2030002;
};

}  // namespace quillet
