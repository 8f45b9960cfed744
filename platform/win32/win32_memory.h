#pragma once

#include <set>

#include "platform/contracts/global_memory.h"

namespace quillet {

// The system's movable memory. Blocks come from data sources too, so every handle goes to the
// system, which refuses those that are none.
class Win32Memory : public GlobalMemory {
 public:
  GlobalHandle GlobalAlloc(std::size_t bytes) override;
  void* GlobalLock(GlobalHandle block) override;
  void GlobalUnlock(GlobalHandle block) override;
  std::size_t GlobalSize(GlobalHandle block) const override;
  bool GlobalFree(GlobalHandle block) override;

  // Live blocks that were made here.
  int Count() const { return static_cast<int>(m_live.size()); }

 private:
  std::set<GlobalHandle> m_live;
};

}  // namespace quillet
