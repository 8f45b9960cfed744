#pragma once

#include "platform/contracts/surface.h"
#include "platform/portable/surface_rect.h"
#include "platform/portable/surface_window.h"
#include "platform/surface/surface_link.h"

namespace quillet {

// The control's own window: an outer size, which the host alone changes, around an inside. A change
// of the border takes from the inside or gives to it; the outer size stays, so no Resize comes.
class PortableControlSurface : public ControlSurface {
 public:
  PortableControlSurface(SurfaceLink& link, std::shared_ptr<WindowTable> windows, int insideWidth,
                         int insideHeight);

  Single Width() const override { return TwipsFromPixels(m_width); }
  Single Height() const override { return TwipsFromPixels(m_height); }
  Integer BorderStyle() const override { return m_borderStyle; }
  void PutBorderStyle(Integer style) override;
  bool Enabled() const override { return m_enabled; }
  void PutEnabled(bool enabled) override;
  WindowHandle hWnd() const override { return m_window.Handle(); }

  // The whole window, and its inside, in pixels; both from 0, 0. The frame is as wide on each side.
  PixelRect Outside() const noexcept { return {0, 0, m_width, m_height}; }
  PixelRect Inside() const noexcept;
  int FrameWidth() const noexcept { return m_borderStyle == 1 ? 2 : 0; }

  // The host gives the control that inside size; another size raises Resize. Run-time error 380
  // for a negative size, and for one beyond 32767.
  void Resize(int insideWidth, int insideHeight);

  void DestroyWindow() { m_window.Destroy(); }

 private:
  SurfaceLink& m_link;
  SurfaceWindow m_window;
  Integer m_borderStyle = 1;
  bool m_enabled = true;
  int m_width;
  int m_height;
};

}  // namespace quillet
