#pragma once

#include <memory>

#include "platform/surface/surface_link.h"
#include "platform/win32/win32_control_surface.h"
#include "platform/win32/win32_picture_box.h"
#include "platform/win32/win32_scroll_bar.h"

namespace quillet {

// A surface of real windows: the control's own, and in it the picture box and two system scroll
// bars. It is made hidden, without a host; a host takes it into its window with Site and gives it
// back with Unsite. When the host's window is destroyed the surface's windows go too: reads then
// give the last values, writes are refused (run-time error 380) and no events come.
//
// All calls are on the thread that made it, whose message loop brings the events. The surface stays
// alive until the message at hand is done, whatever the handlers let go of.
class Win32Surface : public SharedSurface {
 public:
  // Inside sizes in pixels; run-time errors 380 for negative ones and for more than 32767, 7 when
  // the system gives no window.
  Win32Surface(std::shared_ptr<WindowClasses> classes, int insideWidth, int insideHeight);

  Win32ControlSurface& UserControl() override { return m_control; }
  Win32PictureBox& picTwain() override { return m_box; }
  Win32ScrollBar& HScroll1() override { return m_horizontal; }
  Win32ScrollBar& VScroll1() override { return m_vertical; }
  void Connect(SurfaceEvents* events) override { m_link.Connect(events); }

  // The host's window takes the control, or moves it, to that place in its inside, in pixels, the
  // border included. Another size raises Resize.
  void Site(HWND parent, const RECT& outside) { m_control.Site(parent, outside); }
  // Hidden again, as before it was sited.
  void Unsite() { m_control.Unsite(); }

 private:
  // A window made earlier stands above later ones: the bars above the box.
  SurfaceLink m_link;
  Win32ControlSurface m_control;
  Win32ScrollBar m_vertical;
  Win32ScrollBar m_horizontal;
  Win32PictureBox m_box;
};

}  // namespace quillet
