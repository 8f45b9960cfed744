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
  class Block {
   public:
    // Zeros. Throws std::bad_alloc.
    Block(std::size_t size, std::shared_ptr<BlockReserve> reserve);

    Byte* Data() noexcept { return m_memory->Data() + kLead; }
    std::size_t Size() const noexcept { return m_memory->Size() - kLead; }

    int locks = 0;

   private:
    // Processors copy slowly to a place that lies a few bytes further into its page than the source
    // lies into its own: what starts a page would be written to a file behind the 14 bytes of a
    // BMP header in twice the time.
    static constexpr std::size_t kLead = 64;

    std::unique_ptr<PixelMemory> m_memory;
  };

  std::shared_ptr<BlockReserve> m_reserve;
  std::unordered_map<GlobalHandle, Block> m_blocks;
  std::uintptr_t m_next = 0x2030002;
};

}  // namespace quillet
