#pragma once

#include <optional>

#include "platform/win32/sdk.h"
#include "platform/win32/win32_surface.h"
#include "server/memory_canvas.h"

namespace quillet {

// What a surface looks like at this moment, whether it is on a display or not: border, picture,
// background and bars, in a 24-bit bitmap of its outer size.
class SurfaceImage {
 public:
  // Run-time error 7 when there is no memory.
  explicit SurfaceImage(Win32Surface& surface);
  SurfaceImage(const SurfaceImage&) = delete;
  SurfaceImage& operator=(const SurfaceImage&) = delete;

  // Into a place in the units of the context; run-time error 7 when the device refuses it.
  void Draw(HDC dc, const RECT& place) const;

 private:
  void PaintBorder(const Win32ControlSurface& control) const;
  void PaintPart(HWND window, POINT inside, Win32Surface& surface) const;

  SIZE m_size{};
  std::optional<MemoryCanvas> m_canvas;  // none without a size
  void* m_bits = nullptr;
};

}  // namespace quillet
