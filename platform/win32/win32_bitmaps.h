#pragma once

#include <cstddef>
#include <functional>
#include <unordered_set>

#include "platform/contracts/bitmap_services.h"

struct tagBITMAPINFO;

namespace quillet {

// The bitmap services of the system's graphics interface (GDI).
//
// The system tells what a handle names; what it leaves open, this class settles: sizes are checked
// in 64 bits before it is asked, alignment bytes are cleared after it wrote, and its batch of
// pending calls is flushed before a call returns. It knows which bitmaps and device contexts it
// made, for the census and to refuse the release of a bitmap that one of its contexts has selected.
class Win32Bitmaps : public BitmapServices {
 public:
  Win32Bitmaps() = default;
  Win32Bitmaps(const Win32Bitmaps&) = delete;
  Win32Bitmaps& operator=(const Win32Bitmaps&) = delete;

  bool GetObjectA(BitmapHandle bitmap, BITMAP& record) const override;
  BitmapHandle CopyImage(BitmapHandle bitmap, Long width, Long height) override;
  DCHandle CreateCompatibleDC() override;
  BitmapHandle SelectObject(DCHandle dc, BitmapHandle bitmap) override;
  BitmapHandle CreateDIBSection(DCHandle dc, const BITMAPINFOHEADER& header, void*& bits) override;
  int SetDIBitsToDevice(DCHandle dc, Long width, Long height, const void* bits,
                        const BITMAPINFOHEADER& header) override;
  int GetDIBits(DCHandle dc, BitmapHandle bitmap, Long rows, void* bits,
                const BITMAPINFOHEADER& header) override;
  bool BitBlt(DCHandle destination, Long width, Long height, DCHandle source, Long x,
              Long y) override;
  bool DeleteDC(DCHandle dc) override;
  // A bitmap that a context of someone else has selected is not refused: the system releases it
  // once that context lets it go.
  bool DeleteObject(BitmapHandle bitmap) override;

  // For this layer: a section as the system describes it, with masks or palette.
  BitmapHandle CreateSection(const ::tagBITMAPINFO& info, void*& bits);

  // Live ones, those that belong to pictures now included.
  int BitmapCount() const;
  int DeviceContextCount() const;

 private:
  // Enters a new bitmap, which is released when there is no memory for that.
  BitmapHandle Keep(BitmapHandle bitmap);

  std::unordered_set<BitmapHandle> m_bitmaps;  // pictures release theirs without a word
  std::size_t m_sweepAt = 64;
  std::unordered_set<DCHandle> m_contexts;
};

}  // namespace quillet
