#pragma once

#include <functional>
#include <utility>

#include "platform/contracts/surface.h"
#include "platform/surface/surface_link.h"
#include "platform/win32/native_window.h"
#include "platform/win32/twip_scale.h"

namespace quillet {

// The control's own window: an outer size, which the host alone changes, around an inside. Until a
// host takes it, and after the host gave it back, it is the hidden child of no window on a display.
//
// When the window is destroyed the link to the control is closed.
class Win32ControlSurface : public ControlSurface, public NativeWindow {
 public:
  Win32ControlSurface(SurfaceLink& link, std::shared_ptr<WindowClasses> classes, int insideWidth,
                      int insideHeight);
  ~Win32ControlSurface() { Destroy(); }

  Single Width() const override { return m_scale.Wide(m_width); }
  Single Height() const override { return m_scale.High(m_height); }
  Integer BorderStyle() const override { return m_borderStyle; }
  void PutBorderStyle(Integer style) override;
  bool Enabled() const override { return m_enabled; }
  void PutEnabled(bool enabled) override;
  WindowHandle hWnd() const override { return Handle(); }

  const TwipScale& Scale() const noexcept { return m_scale; }
  // The pixels that the border takes of each dimension.
  SIZE Frame() const noexcept;
  // The pixels inside the border.
  SIZE Inside() const noexcept;

  // The host's window takes the control to that place in its inside, in pixels; another size raises
  // Resize. Run-time error 380 when the window is gone or the host's is none.
  void Site(HWND parent, const RECT& outside);
  void Unsite();

  // The children's keys pass here first. True for a key that goes no further; what is left in the
  // argument is what the child goes on with.
  bool PreviewKey(UINT message, WPARAM& key);
  // The child that the focus goes to when the control gets it.
  void RememberFocus(HWND child) noexcept { m_focus = child; }
  // Told when the user goes into the control, with the mouse or the keyboard. It may let go of the
  // surface.
  void OnEntered(std::function<void()> heard) { m_entered = std::move(heard); }

 private:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void TakeSize();
  void TellEntered();

  SurfaceLink& m_link;
  TwipScale m_scale;
  Integer m_borderStyle = 1;
  bool m_enabled = true;
  int m_width = 0;
  int m_height = 0;
  HWND m_focus = nullptr;
  std::function<void()> m_entered;
};

}  // namespace quillet
