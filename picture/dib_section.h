#pragma once

#include <cstddef>

#include "base/types.h"
#include "platform/contracts/owned_handles.h"

namespace quillet {

// Bytes that pad a row of `width` 24-bit pixels to a multiple of 4. Run-time error 6 when three
// times the width leaves 32 bits.
Integer RowAlignment(Long width);

// Run-time errors for a picture of that size: 6 when three times the width leaves 32 bits, 9 for a
// size below one pixel, 7 for more bytes than a bitmap can have (2^31 - 1).
void CheckPixelSize(Long width, Long height);

// The header of a top-down 24-bit pixel block without colour table.
BITMAPINFOHEADER TopDownHeader(Long width, Long height);

// The array of a picture buffer: 24-bit pixels (blue, green, red), row 0 on top, every row
// RowAlignment bytes longer than its pixels. It is at the same time a bitmap of the platform, so
// that the platform copies straight into it and a picture object can take it over as it is.
class DibSection {
 public:
  // Pixels are unspecified, alignment bytes 0. Run-time errors as of CheckPixelSize, and 7 when
  // there is no memory for it.
  static DibSection Create(BitmapServices& services, Long width, Long height);
  // The pixels of a bitmap, which has that size. Run-time errors as of Create.
  static DibSection CopyOf(BitmapServices& services, BitmapHandle bitmap, Long width, Long height);

  Long Width() const noexcept { return m_width; }
  Long Height() const noexcept { return m_height; }
  std::ptrdiff_t Stride() const noexcept { return m_stride; }
  std::size_t ByteCount() const noexcept {
    return static_cast<std::size_t>(m_stride) * static_cast<std::size_t>(m_height);
  }

  Byte* Bits() noexcept { return m_bits; }
  const Byte* Bits() const noexcept { return m_bits; }
  Byte* Row(Long y) noexcept { return m_bits + y * m_stride; }

  BitmapHandle Bitmap() const noexcept { return m_bitmap.get(); }
  UniqueBitmap& Owner() noexcept { return m_bitmap; }

 private:
  DibSection(UniqueBitmap bitmap, Byte* bits, Long width, Long height);

  UniqueBitmap m_bitmap;
  Byte* m_bits;
  Long m_width;
  Long m_height;
  std::ptrdiff_t m_stride;
};

}  // namespace quillet
