// The operations that move pixels or change how many there are.

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/rounding.h"
#include "base/runtime_error.h"
#include "picture/cPicture24.h"
#include "picture/pixel_loan.h"

namespace quillet {

void cPicture24::Flip() {
  if (m_width < 1) return;
  Loan loan(*this);
  DibSection& pixels = loan.Pixels();
  const Long last = pixels.Height() - 1;
  ForEachRow(0, last, pixels.Height(), [&](Long y) {
    if (y < last - y) m_kernels.SwapRows(pixels.Row(y), pixels.Row(last - y), pixels.Width());
  });
}

void cPicture24::Reverse() {
  if (m_width < 1) return;
  Loan loan(*this);
  DibSection& pixels = loan.Pixels();
  ForEachRow(0, pixels.Height() - 1, pixels.Height(),
             [&](Long y) { m_kernels.ReverseRow(pixels.Row(y), pixels.Width()); });
}

void cPicture24::Rotate() {
  if (m_width < 1) return;
  Loan loan(*this);
  DibSection& source = loan.Pixels();
  const Long height = source.Height();
  DibSection target = DibSection::Create(m_platform.bitmaps, height, source.Width());
  ForEachRow(0, height - 1, height, [&](Long y) {
    if (y % kRotateStripRows != 0) return;
    const Long rows = std::min(kRotateStripRows, height - y);
    // Row y becomes the rightmost of the strip's target columns.
    const std::ptrdiff_t leftmost = height - y - rows;
    m_kernels.RotateStrip(source.Row(y), source.Stride(), source.Width(), rows,
                          target.Bits() + 3 * leftmost, target.Stride());
  });
  loan.Replace(std::move(target));
}

bool cPicture24::Resize(Long lNewWidth, Long lNewHeight) {
  if (m_width < 1) return false;
  BitmapServices& services = m_platform.bitmaps;
  const Long width = m_width;
  const Long height = m_height;
  Content content = Take();
  CheckPixelSize(lNewWidth, lNewHeight);

  // The copy service is given 24-bit pixels: colours of a palette would not blend.
  if (const auto* deferred = std::get_if<Deferred>(&content)) {
    BITMAP record;
    services.GetObjectA(deferred->picture->Handle(), record);
    if (record.bmBitsPixel != 24)
      content = DibSection::CopyOf(services, deferred->picture->Handle(), width, height);
  }
  const BitmapHandle source = BitmapOf(content);
  const BitmapHandle copy = services.CopyImage(source, lNewWidth, lNewHeight);
  if (copy == BitmapHandle::None) throw RunTimeError(ErrorNumber::OutOfMemory);
  if (copy == source) {  // handed back as it is: the size is the same
    Restore(std::move(content), width, height);
    return true;
  }

  UniqueBitmap stretched(services, copy);
  BITMAP record;
  services.GetObjectA(copy, record);
  if (record.bmBitsPixel == 24)
    Defer(CreatePicture(stretched), true, lNewWidth, lNewHeight);
  else
    Hold(DibSection::CopyOf(services, copy, lNewWidth, lNewHeight));
  return true;
}

void cPicture24::ResizeToFit(Long lMaxWidth, Long lMaxHeight, bool bEnlarge) {
  if (m_width < 1 || (lMaxWidth == m_width && lMaxHeight == m_height)) return;
  const double pictureRatio = static_cast<double>(m_width) / m_height;
  const double boxRatio = static_cast<double>(lMaxWidth) / lMaxHeight;
  Long newWidth = lMaxWidth;
  Long newHeight = lMaxHeight;
  if (pictureRatio < boxRatio)
    newWidth = ToLong(pictureRatio * lMaxHeight);
  else
    newHeight = ToLong(lMaxWidth / pictureRatio);
  if ((newWidth > m_width || newHeight > m_height) && !bEnlarge) return;
  Resize(newWidth, newHeight);
}

}  // namespace quillet
