#include "server/memory_canvas.h"

#include "base/runtime_error.h"

namespace quillet {

MemoryCanvas::MemoryCanvas(HBITMAP bitmap)
    : m_bitmap(bitmap),
      m_dc(::CreateCompatibleDC(nullptr)),
      m_previous(bitmap && m_dc ? ::SelectObject(m_dc, bitmap) : nullptr) {
  if (m_previous) return;
  Free();
  throw RunTimeError(ErrorNumber::OutOfMemory);
}

MemoryCanvas::~MemoryCanvas() {
  ::SelectObject(m_dc, m_previous);
  Free();
}

void MemoryCanvas::Free() const noexcept {
  if (m_dc) ::DeleteDC(m_dc);
  if (m_bitmap) ::DeleteObject(m_bitmap);
}

}  // namespace quillet
