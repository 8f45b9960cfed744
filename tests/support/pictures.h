#pragma once

#include <functional>
#include <vector>

#include "platform/contracts/owned_handles.h"
#include "platform/contracts/platform.h"

namespace quillet {

struct Pixel {
  Byte blue = 0, green = 0, red = 0;
  bool operator==(const Pixel&) const = default;
};
void PrintTo(const Pixel& pixel, std::ostream* out);

// The colour of the pixel at (x, y), counted from the top-left corner.
using PixelFunction = std::function<Pixel(Long x, Long y)>;

// Different for every pixel of a small picture and for every channel.
Pixel Gradient(Long x, Long y);

// 24-bit rows, top-down, padded to a multiple of 4 bytes.
struct PixelRows24 {
  Long width = 0;
  Long height = 0;
  std::vector<Byte> bytes;

  std::size_t Stride() const { return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4; }
  Pixel At(Long x, Long y) const;
  bool operator==(const PixelRows24&) const = default;
};
void PrintTo(const PixelRows24& rows, std::ostream* out);

// What a function of the position gives, as rows.
PixelRows24 RowsOf(Long width, Long height, const PixelFunction& pixel);

// The 40-byte header of 24-bit rows; a negative height for top-down.
BITMAPINFOHEADER Header24(Long width, Long height);

// A 24-bit bitmap, and a picture on one. An empty owner or reference when a service fails.
UniqueBitmap MakeBitmap(const Platform& platform, Long width, Long height,
                        const PixelFunction& pixel);
PictureRef PictureOf(const Platform& platform, Long width, Long height, const PixelFunction& pixel);

// A picture of 1, 4 or 8 bits: the palette, and the index of the pixel at (x, y).
PictureRef PalettePicture(const Platform& platform, int depth, const std::vector<Pixel>& palette,
                          Long width, Long height, const std::function<Byte(Long, Long)>& index);
// A black-and-white picture of 1 bit.
PictureRef OneBitPicture(const Platform& platform, Long width, Long height,
                         const std::function<bool(Long, Long)>& isWhite);
// A small icon: its handle names no bitmap.
PictureRef IconPicture(const Platform& platform);

// What the bitmap or picture shows; 0 x 0 for one that holds no bitmap.
PixelRows24 PixelsOf(const Platform& platform, BitmapHandle bitmap);
PixelRows24 PixelsOf(const Platform& platform, const PictureRef& picture);

}  // namespace quillet
