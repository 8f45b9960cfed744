#pragma once

#include <cstdint>

#include "base/types.h"
#include "platform/contracts/handles.h"

namespace quillet {

// What GetObjectA tells of a bitmap. Sizes in pixels; bmHeight is positive whatever the order of
// rows.
struct BITMAP {
  Long bmType = 0;
  Long bmWidth = 0;
  Long bmHeight = 0;
  Long bmWidthBytes = 0;
  std::uint16_t bmPlanes = 0;
  std::uint16_t bmBitsPixel = 0;
};

// The 40-byte header of a device-independent bitmap. A negative biHeight means top-down rows; each
// row is padded to a multiple of 4 bytes.
struct BITMAPINFOHEADER {
  std::uint32_t biSize = 40;
  Long biWidth = 0;
  Long biHeight = 0;
  std::uint16_t biPlanes = 1;
  std::uint16_t biBitCount = 0;
  std::uint32_t biCompression = 0;
  std::uint32_t biSizeImage = 0;
  Long biXPelsPerMeter = 0;
  Long biYPelsPerMeter = 0;
  std::uint32_t biClrUsed = 0;
  std::uint32_t biClrImportant = 0;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

// The platform's bitmap operations, under its own names and with only the arguments that vary.
//
// A handle that is zero, stale or of another kind is refused (false, 0 or None), never
// dereferenced. Nothing here throws. Work is finished when a call returns: the caller may look at
// the pixels at once.
class BitmapServices {
 public:
  virtual ~BitmapServices() = default;

  // Fills in the record; for a handle that is no bitmap the record stays as it was and the answer
  // is false.
  virtual bool GetObjectA(BitmapHandle bitmap, BITMAP& record) const = 0;

  // A bitmap with the source's content stretched to width x height, or at its own size for 0 x 0.
  // The caller owns it unless it is the source's own handle, which some platforms hand back at
  // equal size. None for negative sizes, or when there is no memory.
  virtual BitmapHandle CopyImage(BitmapHandle bitmap, Long width, Long height) = 0;

  // A memory device context compatible with the screen; the caller owns it.
  virtual DCHandle CreateCompatibleDC() = 0;

  // Makes the bitmap the context's target or source and returns the one it replaces (the context's
  // first bitmap is one of its own). None when refused: a bitmap can be in one context at a time.
  virtual BitmapHandle SelectObject(DCHandle dc, BitmapHandle bitmap) = 0;

  // A bitmap of the header's size, depth and row order; the caller owns it. `bits` points to its
  // first row in memory, and stays valid as long as the bitmap lives; nothing is written through it
  // once the bitmap belongs to a picture. The alignment bytes at the end of each row are 0 and stay
  // so through every call here; the pixels are unspecified until written. A palette is even steps
  // from black to white. None for sizes below 1, an unknown depth, or when there is no memory.
  virtual BitmapHandle CreateDIBSection(DCHandle dc, const BITMAPINFOHEADER& header,
                                        void*& bits) = 0;

  // Writes a pixel block, described by its header, to the top-left corner of the selected bitmap.
  // Returns the number of rows written, 0 on failure.
  virtual int SetDIBitsToDevice(DCHandle dc, Long width, Long height, const void* bits,
                                const BITMAPINFOHEADER& header) = 0;

  // Reads the bitmap's first `rows` scan lines into a pixel block in the header's format: 24 bits,
  // the bitmap's own width, with alignment bytes 0. Returns the number of rows read, 0 on failure.
  virtual int GetDIBits(DCHandle dc, BitmapHandle bitmap, Long rows, void* bits,
                        const BITMAPINFOHEADER& header) = 0;

  // Copies the source context's rectangle at (x, y) to the destination's top-left corner. Pixels
  // that lie outside the source leave the destination as it was.
  virtual bool BitBlt(DCHandle destination, Long width, Long height, DCHandle source, Long x,
                      Long y) = 0;

  virtual bool DeleteDC(DCHandle dc) = 0;
  // Refused while the bitmap is selected into a device context.
  virtual bool DeleteObject(BitmapHandle bitmap) = 0;
};

}  // namespace quillet
