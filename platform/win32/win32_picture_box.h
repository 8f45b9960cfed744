#pragma once

#include <string>

#include "platform/contracts/surface.h"
#include "platform/surface/surface_link.h"
#include "platform/win32/box_mouse.h"
#include "platform/win32/native_window.h"
#include "platform/win32/tool_tip.h"
#include "platform/win32/win32_control_surface.h"

namespace quillet {

// The box that shows the picture, as a window with a device context of its own. Paint comes with
// each painting, after the picture is drawn. Painting does not nest: while a Paint handler is at
// work the window is drawn without telling, and Paint comes later.
class Win32PictureBox : public PictureBox, public NativeWindow {
 public:
  // The box starts with the control's whole inside. The link and the control outlive it.
  Win32PictureBox(SurfaceLink& link, Win32ControlSurface& control,
                  std::shared_ptr<WindowClasses> classes);
  ~Win32PictureBox() { Destroy(); }

  void PutPicture(const PictureRef& picture) override;
  Single ScaleWidth() const override { return static_cast<Single>(m_size.cx); }
  Single ScaleHeight() const override { return static_cast<Single>(m_size.cy); }
  void Move(Single left, Single top, Single width, Single height) override;
  void Refresh() override;
  OLE_COLOR BackColor() const override { return m_backColor; }
  void PutBackColor(OLE_COLOR color) override;
  Integer MousePointer() const override { return m_mousePointer; }
  void PutMousePointer(Integer pointer) override;
  PictureRef MouseIcon() const override { return m_mouseIcon; }
  void PutMouseIcon(const PictureRef& icon) override;
  std::string ToolTipText() const override { return m_toolTipText; }
  void PutToolTipText(const std::string& text) override;
  DCHandle hDC() const override { return ToDCHandle(m_dc); }
  WindowHandle hWnd() const override { return Handle(); }
  // Paints what the box shows into the clipped area of another context, without an event.
  void Draw(HDC dc) const;

 private:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void TakeSize();
  void Paint();
  void Invalidate() noexcept { ::InvalidateRect(Window(), nullptr, FALSE); }
  // The pointer that the box asks for; none for the default one.
  HCURSOR Pointer() const noexcept;
  // Shows a new pointer at once where it lies on the box.
  void ShowPointer();

  SurfaceLink& m_link;
  Win32ControlSurface& m_control;
  BoxMouse m_mouse;
  ToolTip m_toolTip;
  HDC m_dc;
  SIZE m_size;
  PictureRef m_picture;
  OLE_COLOR m_backColor = kWindowBackground;
  Integer m_mousePointer = 0;
  PictureRef m_mouseIcon;
  std::string m_toolTipText;
  bool m_painting = false;
  bool m_paintOwed = false;
};

}  // namespace quillet
