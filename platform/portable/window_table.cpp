#include "platform/portable/window_table.h"

namespace quillet {

WindowHandle WindowTable::Create() {
  const WindowHandle window{m_next};
  m_live.insert(window);
  m_next += 2;
  return window;
}

bool WindowTable::Destroy(WindowHandle window) {
  return m_live.erase(window) == 1;
}

}  // namespace quillet
