#include "tests/support/pictures.h"

#include <cstring>
#include <ostream>

#include "tests/support/bmp_file.h"
#include "tests/support/icon_file.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

void Fill(Byte* bits, Long width, Long height, const PixelFunction& pixel) {
  const std::size_t stride = PixelRows24{width, height, {}}.Stride();
  for (Long y = 0; y < height; ++y) {
    Byte* row = bits + stride * static_cast<std::size_t>(y);
    for (Long x = 0; x < width; ++x, row += 3) {
      const Pixel color = pixel(x, y);
      row[0] = color.blue;
      row[1] = color.green;
      row[2] = color.red;
    }
  }
}

PictureRef LoadFrom(const Platform& platform, const std::vector<Byte>& file) {
  const TemporaryFolder folder;
  return platform.pictures.LoadPicture(folder.Write("picture", file));
}

}  // namespace

void PrintTo(const Pixel& pixel, std::ostream* out) {
  *out << "(blue " << int{pixel.blue} << ", green " << int{pixel.green} << ", red "
       << int{pixel.red} << ")";
}

void PrintTo(const PixelRows24& rows, std::ostream* out) {
  *out << rows.width << " x " << rows.height;
  constexpr Long kShown = 8;
  for (Long y = 0; y < rows.height && y < kShown; ++y) {
    *out << "\n ";
    for (Long x = 0; x < rows.width && x < kShown; ++x) {
      const Pixel pixel = rows.At(x, y);
      *out << ' ' << int{pixel.blue} << ',' << int{pixel.green} << ',' << int{pixel.red};
    }
  }
}

Pixel Gradient(Long x, Long y) {
  return {static_cast<Byte>(7 * x + 3 * y + 1), static_cast<Byte>(5 * x - 11 * y),
          static_cast<Byte>(13 * x * y + x + 29 * y)};
}

Pixel PixelRows24::At(Long x, Long y) const {
  const Byte* const p = &bytes.at(Stride() * static_cast<std::size_t>(y) +
                                  std::size_t{3} * static_cast<std::size_t>(x));
  return {p[0], p[1], p[2]};
}

PixelRows24 RowsOf(Long width, Long height, const PixelFunction& pixel) {
  PixelRows24 rows{width, height, {}};
  rows.bytes.resize(rows.Stride() * static_cast<std::size_t>(height));
  Fill(rows.bytes.data(), width, height, pixel);
  return rows;
}

BITMAPINFOHEADER Header24(Long width, Long height) {
  BITMAPINFOHEADER header;
  header.biWidth = width;
  header.biHeight = height;
  header.biBitCount = 24;
  return header;
}

UniqueBitmap MakeBitmap(const Platform& platform, Long width, Long height,
                        const PixelFunction& pixel) {
  const UniqueDC dc(platform.bitmaps);
  void* bits = nullptr;
  UniqueBitmap bitmap(platform.bitmaps,
                      platform.bitmaps.CreateDIBSection(dc.get(), Header24(width, -height), bits));
  if (bitmap) Fill(static_cast<Byte*>(bits), width, height, pixel);
  return bitmap;
}

PictureRef PictureOf(const Platform& platform, Long width, Long height,
                     const PixelFunction& pixel) {
  UniqueBitmap bitmap = MakeBitmap(platform, width, height, pixel);
  if (!bitmap) return nullptr;
  PictureRef picture = platform.pictures.OleCreatePictureIndirect(bitmap.get());
  if (picture) static_cast<void>(bitmap.release());
  return picture;
}

PictureRef PalettePicture(const Platform& platform, int depth, const std::vector<Pixel>& palette,
                          Long width, Long height, const std::function<Byte(Long, Long)>& index) {
  BmpFile file{.width = width, .height = height, .depth = depth};
  for (const Pixel& color : palette) file.palette.push_back({color.blue, color.green, color.red});
  file.PackPixels([&](Long x, Long y) { return std::uint32_t{index(x, y)}; });
  return LoadFrom(platform, file.Bytes());
}

PictureRef OneBitPicture(const Platform& platform, Long width, Long height,
                         const std::function<bool(Long, Long)>& isWhite) {
  return PalettePicture(platform, 1, {{0, 0, 0}, {255, 255, 255}}, width, height,
                        [&](Long x, Long y) { return static_cast<Byte>(isWhite(x, y)); });
}

PictureRef IconPicture(const Platform& platform) {
  return LoadFrom(platform, IconFile({OpaqueIcon(16, 16, {10, 20, 30})}));
}

PixelRows24 PixelsOf(const Platform& platform, BitmapHandle bitmap) {
  BITMAP record;
  if (!platform.bitmaps.GetObjectA(bitmap, record)) return {};
  PixelRows24 rows = RowsOf(record.bmWidth, record.bmHeight, [](Long, Long) { return Pixel{}; });
  const UniqueDC dc(platform.bitmaps);
  const int read = platform.bitmaps.GetDIBits(dc.get(), bitmap, record.bmHeight, rows.bytes.data(),
                                              Header24(record.bmWidth, -record.bmHeight));
  return read == record.bmHeight ? rows : PixelRows24{};
}

PixelRows24 PixelsOf(const Platform& platform, const PictureRef& picture) {
  return picture ? PixelsOf(platform, picture->Handle()) : PixelRows24{};
}

}  // namespace quillet
