#pragma once

#include "platform/surface/ranged_scroll_bar.h"
#include "platform/win32/native_window.h"
#include "platform/win32/win32_control_surface.h"

namespace quillet {

// A scroll bar as a system one. The system counts the positions from the Min end, so that any two
// 16-bit ends, in either order, make a range it can show.
class Win32ScrollBar : public RangedScrollBar, public NativeWindow {
 public:
  // The link and the control outlive the bar.
  Win32ScrollBar(SurfaceLink& link, Win32ControlSurface& control,
                 std::shared_ptr<WindowClasses> classes, Orientation orientation);
  ~Win32ScrollBar() { Destroy(); }

  void Move(Single left, Single top, Single width) override;
  void Move(Single left, Single top, Single width, Single height) override;

 private:
  void ShowOrHide() override;
  void ShowRange() override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Scroll(int code, int position);

  Win32ControlSurface& m_control;
  Single m_height = 0;  // twips
};

}  // namespace quillet
