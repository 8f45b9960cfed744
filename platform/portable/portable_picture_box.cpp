#include "platform/portable/portable_picture_box.h"

#include <cstddef>
#include <optional>
#include <utility>

#include "base/runtime_error.h"
#include "platform/portable/system_colors.h"

namespace quillet {
namespace {

constexpr Integer kLastPointer = 15;
constexpr Integer kCustomPointer = 99;

}  // namespace

PortablePictureBox::PortablePictureBox(SurfaceLink& link, BitmapServices& bitmaps,
                                       std::shared_ptr<WindowTable> windows, const PixelRect& place)
    : m_link(link),
      m_bitmaps(bitmaps),
      m_window(std::move(windows)),
      m_dc(bitmaps),
      m_place(place) {}

void PortablePictureBox::PutPicture(const PictureRef& picture) {
  m_link.RequireOpen();
  m_picture = picture;
  m_needsPaint = true;
}

void PortablePictureBox::Move(Single left, Single top, Single width, Single height) {
  m_link.RequireOpen();
  const PixelRect previous = std::exchange(m_place, RectFromTwips(left, top, width, height));
  if (m_place.width == previous.width && m_place.height == previous.height) return;
  m_needsPaint = true;
  m_link.Raise(&SurfaceEvents::picTwain_Resize);
}

void PortablePictureBox::Refresh() {
  m_link.RequireOpen();
  m_needsPaint = true;
  PaintPending();
}

void PortablePictureBox::PutBackColor(OLE_COLOR color) {
  m_link.RequireOpen();
  m_backColor = color;
  m_needsPaint = true;
}

void PortablePictureBox::PutMousePointer(Integer pointer) {
  m_link.RequireOpen();
  if ((pointer < 0 || pointer > kLastPointer) && pointer != kCustomPointer)
    throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  m_mousePointer = pointer;
}

void PortablePictureBox::PutMouseIcon(const PictureRef& icon) {
  m_link.RequireOpen();
  m_mouseIcon = icon;
}

void PortablePictureBox::PutToolTipText(const std::string& text) {
  m_link.RequireOpen();
  m_toolTipText = text;
}

void PortablePictureBox::PaintPending() {
  if (!m_needsPaint || m_painting || m_place.Empty()) return;
  const auto alive = m_link.KeepAlive();
  m_needsPaint = false;
  m_painting = true;
  m_link.Raise(&SurfaceEvents::picTwain_Paint);
  m_painting = false;
}

void PortablePictureBox::DrawOn(Raster& inside) const {
  inside.Fill(m_place, ResolveColor(m_backColor));
  if (m_picture && m_picture->Kind() == PictureKind::Bitmap) DrawPicture(inside);
}

void PortablePictureBox::DrawPicture(Raster& inside) const {
  BITMAP record;
  const BitmapHandle bitmap = m_picture->Handle();
  if (!m_bitmaps.GetObjectA(bitmap, record)) return;
  const PixelRect picture{m_place.left, m_place.top, record.bmWidth, record.bmHeight};
  const PixelRect visible = picture.Intersection(m_place).Intersection(inside.Bounds());
  if (visible.Empty()) return;

  UniqueBitmap copy;
  UniqueBitmap section;
  const UniqueDC source(m_bitmaps);
  const UniqueDC target(m_bitmaps);

  std::optional<SelectGuard> sourceSelected;
  sourceSelected.emplace(m_bitmaps, source.get(), bitmap);
  if (!*sourceSelected) {
    // The host keeps the bitmap selected in a context of its own.
    copy = UniqueBitmap(m_bitmaps, m_bitmaps.CopyImage(bitmap, 0, 0));
    sourceSelected.emplace(m_bitmaps, source.get(), copy.get());
  }

  BITMAPINFOHEADER header;
  header.biWidth = visible.width;
  header.biHeight = -visible.height;
  header.biBitCount = 24;
  void* bits = nullptr;
  section = UniqueBitmap(m_bitmaps, m_bitmaps.CreateDIBSection(target.get(), header, bits));
  const SelectGuard targetSelected(m_bitmaps, target.get(), section.get());
  if (!*sourceSelected || !targetSelected ||
      !m_bitmaps.BitBlt(target.get(), visible.width, visible.height, source.get(),
                        visible.left - picture.left, visible.top - picture.top))
    throw RunTimeError(ErrorNumber::OutOfMemory);

  const std::size_t stride = (static_cast<std::size_t>(visible.width) * 3 + 3) / 4 * 4;
  inside.PasteBgr(visible, static_cast<const Byte*>(bits), stride);
}

}  // namespace quillet
