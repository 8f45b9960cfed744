#pragma once

#include <memory>

#include "platform/contracts/surface.h"
#include "platform/portable/portable_control_surface.h"
#include "platform/portable/portable_picture_box.h"
#include "platform/portable/portable_scroll_bar.h"
#include "platform/portable/raster.h"
#include "platform/portable/surface_input.h"
#include "platform/surface/surface_link.h"

namespace quillet {

class PortableBitmaps;

// A surface in memory, 96 dots to the inch (15 twips a pixel). The control sees it through the
// contract; whoever plays the host and the person in front of it uses the rest. The picture box
// starts with the whole inside.
//
// Events come synchronously. The surface stays alive until an operation that raises them is done,
// whatever the handlers let go of.
class PortableSurface : public SharedSurface {
 public:
  // Inside sizes in pixels; run-time error 380 for negative ones and for more than 32767.
  PortableSurface(std::shared_ptr<PortableBitmaps> bitmaps, std::shared_ptr<WindowTable> windows,
                  int insideWidth, int insideHeight);

  PortableControlSurface& UserControl() override { return m_control; }
  PortablePictureBox& picTwain() override { return m_box; }
  PortableScrollBar& HScroll1() override { return m_horizontal; }
  PortableScrollBar& VScroll1() override { return m_vertical; }
  void Connect(SurfaceEvents* events) override { m_link.Connect(events); }

  SurfaceInput& Input() noexcept { return m_input; }

  // The host's message loop has nothing else to do: what waits to be painted is painted, and memory
  // kept for the next picture goes back to the system.
  void Idle();

  // The host destroys the window. From now on reads give the last values, writes are refused
  // (run-time error 380) and no events come.
  void Close();

  // The whole control as a person sees it, composed now. Run-time error 7 when there is no memory.
  Raster Render() const;

 private:
  std::shared_ptr<PortableBitmaps> m_bitmaps;
  SurfaceLink m_link;
  PortableControlSurface m_control;
  PortablePictureBox m_box;
  PortableScrollBar m_horizontal;
  PortableScrollBar m_vertical;
  SurfaceInput m_input;
};

}  // namespace quillet
