#include "platform/win32/picture_painter.h"

#include "platform/win32/gdi_handles.h"

namespace quillet {
namespace {

// A bitmap selected into a memory context of its own, or a private copy of one that is selected in
// another; nothing when there is no memory.
class PaintSource {
 public:
  explicit PaintSource(HBITMAP bitmap) noexcept : m_dc(::CreateCompatibleDC(nullptr)) {
    m_previous = ::SelectObject(m_dc, bitmap);
    if (m_previous || !m_dc) return;
    m_copy = static_cast<HBITMAP>(::CopyImage(bitmap, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    m_previous = ::SelectObject(m_dc, m_copy);
  }
  PaintSource(const PaintSource&) = delete;
  PaintSource& operator=(const PaintSource&) = delete;
  ~PaintSource() {
    if (m_previous) ::SelectObject(m_dc, m_previous);
    if (m_dc) ::DeleteDC(m_dc);
    if (m_copy) ::DeleteObject(m_copy);
  }

  HDC Get() const noexcept { return m_previous ? m_dc : nullptr; }

 private:
  HDC m_dc;
  HBITMAP m_copy = nullptr;
  HGDIOBJ m_previous = nullptr;
};

class SavedState {
 public:
  explicit SavedState(HDC dc) noexcept : m_dc(dc), m_state(::SaveDC(dc)) {
    ::SetGraphicsMode(dc, GM_ADVANCED);  // the only mode in which a transform can be taken away
    ::ModifyWorldTransform(dc, nullptr, MWT_IDENTITY);
    ::SetGraphicsMode(dc, GM_COMPATIBLE);
    ::SetMapMode(dc, MM_TEXT);
    ::SetWindowOrgEx(dc, 0, 0, nullptr);
    ::SetViewportOrgEx(dc, 0, 0, nullptr);
    ::SelectClipRgn(dc, nullptr);
    // A monochrome device bitmap is drawn in these.
    ::SetTextColor(dc, RGB(0, 0, 0));
    ::SetBkColor(dc, RGB(255, 255, 255));
  }
  SavedState(const SavedState&) = delete;
  SavedState& operator=(const SavedState&) = delete;
  ~SavedState() { ::RestoreDC(m_dc, m_state); }

 private:
  HDC m_dc;
  int m_state;
};

// The part of the area that the bitmap covers, painted; empty when there is none.
RECT PaintBitmap(HDC dc, const RECT& area, const Picture* picture) {
  RECT covered{area.left, area.top, area.left, area.top};
  if (!picture || picture->Kind() != PictureKind::Bitmap) return covered;
  const auto bitmap = SystemHandle(picture->Handle());
  ::BITMAP record{};
  if (::GetObjectW(bitmap, sizeof(record), &record) == 0) return covered;
  const RECT whole{0, 0, record.bmWidth, record.bmHeight};
  RECT shown{};
  if (!::IntersectRect(&shown, &whole, &area)) return covered;
  const PaintSource source(bitmap);
  if (source.Get() &&
      ::BitBlt(dc, shown.left, shown.top, shown.right - shown.left, shown.bottom - shown.top,
               source.Get(), shown.left, shown.top, SRCCOPY))
    covered = shown;
  return covered;
}

}  // namespace

void PaintPicture(HDC dc, const Picture* picture, COLORREF background) noexcept {
  const SavedState saved(dc);
  // The system tells the area to be painted in the units that the context was left in.
  RECT area{};
  ::GetClipBox(dc, &area);
  const RECT covered = PaintBitmap(dc, area, picture);
  ::SetDCBrushColor(dc, background);
  const auto brush = static_cast<HBRUSH>(::GetStockObject(DC_BRUSH));
  const RECT right{covered.right, area.top, area.right, covered.bottom};
  const RECT below{area.left, covered.bottom, area.right, area.bottom};
  for (const RECT& rest : {right, below})
    if (!::IsRectEmpty(&rest)) ::FillRect(dc, &rest, brush);
}

}  // namespace quillet
