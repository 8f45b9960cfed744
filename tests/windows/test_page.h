#pragma once

#include <cstring>

#include "platform/win32/sdk.h"
#include "twain/protocol.h"

namespace quillet {

// The page that lies on the test source's glass, scanned at a resolution (dots per inch) in a pixel
// type. Pixels are counted from the top-left corner.
struct TestPage {
  int resolution;
  TW_UINT16 pixelType;

  int Width() const { return 4 * resolution; }
  int Height() const { return 3 * resolution; }
  int Depth() const { return pixelType == TWPT_RGB ? 24 : pixelType == TWPT_GRAY ? 8 : 1; }

  static unsigned char Gray(int x, int y) { return static_cast<unsigned char>(x + 2 * y); }
  static bool IsWhite(int x, int y) { return (x / 3 + y / 2) % 2 != 0; }
  static unsigned char Blue(int x, int) { return static_cast<unsigned char>(x); }
  static unsigned char Green(int, int y) { return static_cast<unsigned char>(y); }
  static unsigned char Red(int x, int y) { return static_cast<unsigned char>(3 * x + 5 * y); }

  // A packed bottom-up bitmap that its receiver frees.
  HGLOBAL Packed() const {
    const int stride = (Width() * Depth() + 31) / 32 * 4;
    const std::size_t colors = Depth() == 24 ? 0 : std::size_t{1} << Depth();
    const std::size_t rows = sizeof(::BITMAPINFOHEADER) + 4 * colors;
    const HGLOBAL block = ::GlobalAlloc(
        GHND, rows + static_cast<std::size_t>(stride) * static_cast<std::size_t>(Height()));
    auto* const bytes = static_cast<unsigned char*>(::GlobalLock(block));
    if (!bytes) return block;
    ::BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = Width();
    header.biHeight = Height();
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(Depth());
    std::memcpy(bytes, &header, sizeof header);
    for (std::size_t i = 0; i < colors; ++i)
      std::memset(bytes + sizeof header + 4 * i, static_cast<int>(255 * i / (colors - 1)), 3);
    for (int y = 0; y < Height(); ++y) {
      unsigned char* const row =
          bytes + rows + static_cast<std::ptrdiff_t>(Height() - 1 - y) * stride;
      for (int x = 0; x < Width(); ++x) {
        if (Depth() == 24) {
          row[3 * x] = Blue(x, y);
          row[3 * x + 1] = Green(x, y);
          row[3 * x + 2] = Red(x, y);
        } else if (Depth() == 8) {
          row[x] = Gray(x, y);
        } else if (IsWhite(x, y)) {
          row[x / 8] = static_cast<unsigned char>(row[x / 8] | 0x80 >> x % 8);
        }
      }
    }
    ::GlobalUnlock(block);
    return block;
  }
};

}  // namespace quillet
