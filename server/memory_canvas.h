#pragma once

#include "platform/win32/sdk.h"

namespace quillet {

// A bitmap in memory to draw on.
class MemoryCanvas {
 public:
  // The bitmap is this one's from here on. Run-time error 7 when it is null or there is no memory.
  explicit MemoryCanvas(HBITMAP bitmap);
  MemoryCanvas(const MemoryCanvas&) = delete;
  MemoryCanvas& operator=(const MemoryCanvas&) = delete;
  ~MemoryCanvas();

  HDC get() const noexcept { return m_dc; }

 private:
  void Free() const noexcept;

  HBITMAP m_bitmap;
  HDC m_dc;
  HGDIOBJ m_previous;
};

}  // namespace quillet
