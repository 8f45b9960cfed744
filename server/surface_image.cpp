#include "server/surface_image.h"

#include "base/runtime_error.h"
#include "server/bar_painter.h"

namespace quillet {
namespace {

::BITMAPINFO HeaderOf(SIZE size) {
  ::BITMAPINFO header{};
  header.bmiHeader.biSize = sizeof header.bmiHeader;
  header.bmiHeader.biWidth = size.cx;
  header.bmiHeader.biHeight = size.cy;
  header.bmiHeader.biPlanes = 1;
  header.bmiHeader.biBitCount = 24;
  return header;
}

SIZE OutsideOf(HWND window) {
  RECT outside{};
  ::GetWindowRect(window, &outside);
  return {outside.right - outside.left, outside.bottom - outside.top};
}

bool HasVisibleStyle(HWND window) {
  return (::GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0;
}

}  // namespace

SurfaceImage::SurfaceImage(Win32Surface& surface)
    : m_size(OutsideOf(surface.UserControl().Window())) {
  if (m_size.cx < 1 || m_size.cy < 1) return;
  const ::BITMAPINFO header = HeaderOf(m_size);
  m_canvas.emplace(::CreateDIBSection(nullptr, &header, DIB_RGB_COLORS, &m_bits, nullptr, 0));
  const Win32ControlSurface& control = surface.UserControl();
  PaintBorder(control);
  const SIZE frame = control.Frame();
  const POINT inside{frame.cx / 2, frame.cy / 2};
  PaintPart(surface.picTwain().Window(), inside, surface);
  for (const HWND bar : {surface.VScroll1().Window(), surface.HScroll1().Window()})
    if (HasVisibleStyle(bar)) PaintPart(bar, inside, surface);
  ::GdiFlush();
}

void SurfaceImage::PaintBorder(const Win32ControlSurface& control) const {
  RECT whole{0, 0, m_size.cx, m_size.cy};
  ::FillRect(m_canvas->get(), &whole, ::GetSysColorBrush(COLOR_BTNFACE));
  if (control.BorderStyle() == 1) ::DrawEdge(m_canvas->get(), &whole, EDGE_SUNKEN, BF_RECT);
}

// A child of the control, painted on a surface of its own: painting knows nothing of the place it
// will have.
void SurfaceImage::PaintPart(HWND window, POINT inside, Win32Surface& surface) const {
  RECT place{};
  ::GetWindowRect(window, &place);
  const HWND control = ::GetParent(window);
  ::MapWindowPoints(nullptr, control, reinterpret_cast<::POINT*>(&place), 2);
  const int width = place.right - place.left;
  const int height = place.bottom - place.top;
  if (width < 1 || height < 1) return;
  const MemoryCanvas part(::CreateCompatibleBitmap(m_canvas->get(), width, height));
  if (window == surface.picTwain().Window())
    surface.picTwain().Draw(part.get());
  else
    PaintBar(part.get(), window);
  ::BitBlt(m_canvas->get(), inside.x + place.left, inside.y + place.top, width, height, part.get(),
           0, 0, SRCCOPY);
}

void SurfaceImage::Draw(HDC dc, const RECT& place) const {
  if (!m_canvas) return;
  const ::BITMAPINFO header = HeaderOf(m_size);
  const int mode = ::SetStretchBltMode(dc, COLORONCOLOR);
  const int rows =
      ::StretchDIBits(dc, place.left, place.top, place.right - place.left, place.bottom - place.top,
                      0, 0, m_size.cx, m_size.cy, m_bits, &header, DIB_RGB_COLORS, SRCCOPY);
  ::SetStretchBltMode(dc, mode);
  if (rows == 0) throw RunTimeError(ErrorNumber::OutOfMemory, "the device takes no picture");
}

}  // namespace quillet
