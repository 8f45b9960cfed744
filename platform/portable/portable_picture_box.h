#pragma once

#include <memory>
#include <string>

#include "platform/contracts/bitmap_services.h"
#include "platform/contracts/owned_handles.h"
#include "platform/contracts/surface.h"
#include "platform/portable/raster.h"
#include "platform/portable/surface_rect.h"
#include "platform/portable/surface_window.h"
#include "platform/surface/surface_link.h"

namespace quillet {

// The box that shows the picture. What changes its look only marks it; Paint comes once for all of
// that when the host's message loop paints, or at once by Refresh.
class PortablePictureBox : public PictureBox {
 public:
  // The services and the link outlive the box.
  PortablePictureBox(SurfaceLink& link, BitmapServices& bitmaps,
                     std::shared_ptr<WindowTable> windows, const PixelRect& place);

  void PutPicture(const PictureRef& picture) override;
  Single ScaleWidth() const override { return static_cast<Single>(m_place.width); }
  Single ScaleHeight() const override { return static_cast<Single>(m_place.height); }
  void Move(Single left, Single top, Single width, Single height) override;
  // From inside a Paint it only asks for the next one: painting does not nest.
  void Refresh() override;

  OLE_COLOR BackColor() const override { return m_backColor; }
  void PutBackColor(OLE_COLOR color) override;
  Integer MousePointer() const override { return m_mousePointer; }
  void PutMousePointer(Integer pointer) override;
  PictureRef MouseIcon() const override { return m_mouseIcon; }
  void PutMouseIcon(const PictureRef& icon) override;
  std::string ToolTipText() const override { return m_toolTipText; }
  void PutToolTipText(const std::string& text) override;
  DCHandle hDC() const override { return m_dc.get(); }
  WindowHandle hWnd() const override { return m_window.Handle(); }

  // In pixels of the control's inside.
  const PixelRect& Place() const noexcept { return m_place; }

  // Paints what waits to be painted, raising Paint once; a box without area waits for a size.
  void PaintPending();

  // The box as a person sees it, on a raster of the control's inside. Of the picture only what
  // shows is read. Run-time error 7 when there is no memory.
  void DrawOn(Raster& inside) const;

  void DestroyWindow() { m_window.Destroy(); }

 private:
  void DrawPicture(Raster& inside) const;

  SurfaceLink& m_link;
  BitmapServices& m_bitmaps;
  SurfaceWindow m_window;
  UniqueDC m_dc;
  PixelRect m_place;
  PictureRef m_picture;
  OLE_COLOR m_backColor = kWindowBackground;
  Integer m_mousePointer = 0;
  PictureRef m_mouseIcon;
  std::string m_toolTipText;
  bool m_needsPaint = true;
  bool m_painting = false;
};

}  // namespace quillet
