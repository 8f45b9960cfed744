#pragma once

#include <cstdint>
#include <set>

#include "platform/contracts/handles.h"

namespace quillet {

// Gives out window handles and knows which are live. A handle is never given out twice.
class WindowTable {
 public:
  WindowHandle Create();
  // False for a handle that is not live.
  bool Destroy(WindowHandle window);
  bool IsWindow(WindowHandle window) const { return m_live.contains(window); }
  int Count() const { return static_cast<int>(m_live.size()); }

 private:
  std::set<WindowHandle> m_live;
  std::uintptr_t m_next = 0x10010;
};

}  // namespace quillet
