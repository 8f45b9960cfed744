#pragma once

#include <optional>

#include "platform/portable/large_block.h"

namespace quillet {

// A block that was let go of, kept warm for a picture that is made soon after.
//
// Sparingly: one block, given back before memory is asked of the system, so that it does not add to
// what a large picture needs, and whenever the message loop has nothing to do.
class BlockReserve {
 public:
  // The block, cut to that many bytes; its content is unspecified. None, and nothing in reserve any
  // more, when it is smaller.
  std::optional<LargeBlock> Take(std::size_t size) noexcept;
  // The larger of this one and the one in reserve stays.
  void Keep(LargeBlock block) noexcept;
  void GiveBack() noexcept { m_block.reset(); }

 private:
  std::optional<LargeBlock> m_block;
};

}  // namespace quillet
