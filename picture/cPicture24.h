#pragma once

#include <functional>
#include <variant>
#include <vector>

#include "base/types.h"
#include "picture/dib_section.h"
#include "picture/kernels/kernels.h"
#include "platform/contracts/platform.h"

namespace quillet {

// The picture buffer: one image as 24-bit pixels, filled from a picture object, transformed, and
// turned back into a new picture object.
//
// It is empty, or stands for a picture whose pixels nobody has needed yet (deferred), or holds
// pixels of its own. CopyFromPicture only remembers the picture; the first operation that changes
// pixels fetches them; Crop and Resize let the platform read the picture's own bitmap.
// CopyToPicture hands the buffer's bitmap over to the new picture and from then on stands for that
// picture, so no road through the buffer copies the pixels more than once. None of this shows: a
// picture never changes once it is made.
//
// Run-time errors: 9 for a size below one pixel and 6 for a width whose row leaves 32 bits, both of
// which leave the buffer empty; 7 when a bitmap service fails.
//
// Re-entrancy: while a pixel operation raises progress its pixels are on loan to it and the buffer
// is empty; whatever a handler does with the buffer meanwhile, the operation's own result replaces
// it.
class cPicture24 {
 public:
  using ProgressHandler = std::function<void(Integer percent)>;

  explicit cPicture24(Platform& platform, ProgressHandler progress = {},
                      const Kernels& kernels = BestKernels());

  // The picture's image becomes the buffer's; no picture, or one without a bitmap of at least 1 x 1
  // pixels, leaves it empty.
  void CopyFromPicture(const PictureRef& picture);
  // A new picture with the buffer's image, 24 bits deep; none when the buffer is empty.
  PictureRef CopyToPicture();

  Long Width() const noexcept { return m_width; }
  Long Height() const noexcept { return m_height; }
  // A copy of all rows, alignment bytes included; nothing when the buffer is empty.
  std::vector<Byte> GetBits();

  // Cuts the buffer down to a rectangle; what lies outside the image is black. False when empty.
  bool Crop(Long lLeft, Long lTop, Long lWidth, Long lHeight);
  // Resamples to that size, as the platform's copy service does it. False when empty.
  bool Resize(Long lNewWidth, Long lNewHeight);
  // Resamples to the largest size with the image's proportions that fits the box; larger than the
  // image only with bEnlarge.
  void ResizeToFit(Long lMaxWidth, Long lMaxHeight, bool bEnlarge);

  void Flip();
  void Reverse();
  void Rotate();

  // Point operations. Contrast leaves the last row and the last column as they are.
  void Invert(bool bRed, bool bGreen, bool bBlue);
  void GrayScale();
  void BlackWhite();
  // Results beyond a channel's range end at its limits, however far beyond.
  void Contrast(Integer iValue);
  // Scales every channel by lValue / 255. Run-time error 6 at the first pixel with a channel that
  // leaves 0 .. 255; the pixels before it are changed then.
  void Fade(Long lValue);
  // Scales the lightness by 1 + lValue / 100, up to white; below -100 as -100, black.
  void Lighten(Long lValue);

  // Adds the difference to the lower right neighbour, times the amount. Leaves the last row and
  // the last column as they are. Run-time error 6 for an amount that takes a result beyond 16 bits.
  void Sharpen(Single sngAmount);
  // Averages each pixel with its right, lower and lower right neighbours and with its upper left
  // one, which is blurred already. Leaves the border as it is.
  void Blur();

  // Whether the other picture or buffer has the same size and the same pixels. False for no object,
  // for one that is no picture, and where either has no bitmap.
  bool Compare(const ObjectRef& other);
  bool Compare(const cPicture24& other);

 private:
  // A picture that stands for the buffer's image. `unseen`: made here, 24 bits deep and not yet
  // given out, so that CopyToPicture need not make another.
  struct Deferred {
    PictureRef picture;
    bool unseen = false;
  };
  using Content = std::variant<std::monostate, Deferred, DibSection>;
  class Loan;
  class RowReader;

  static BitmapHandle BitmapOf(const Content& content);
  void Clear();
  Content Take();
  void Restore(Content content, Long width, Long height);
  void Hold(DibSection section);
  void Defer(PictureRef picture, bool unseen, Long width, Long height);
  PictureRef CreatePicture(UniqueBitmap& bitmap);
  DibSection TakePixels();
  void RaiseProgress(Long row, Long height) const;
  template <typename RowFunction>
  void ForEachRow(Long first, Long last, Long height, RowFunction&& transformRow);
  template <typename RowFunction>
  void TransformRows(Long top, Long bottom, RowFunction&& transformRow);

  Platform& m_platform;
  ProgressHandler m_progress;
  const Kernels& m_kernels;
  Content m_content;
  Long m_width = 0;
  Long m_height = 0;
};

}  // namespace quillet
