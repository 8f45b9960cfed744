#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/portable/byte_source.h"
#include "platform/portable/dib.h"

namespace quillet {

// How the pixels of a device-independent bitmap in a file are stored.
enum class DibCompression : std::uint32_t { None = 0, Rle8 = 1, Rle4 = 2, BitFields = 3 };

// What the header, masks and palette of such a bitmap say.
struct DibLayout {
  Dib::Format format;  // rows as they come in the file
  DibCompression compression = DibCompression::None;
  std::uint64_t colorsEnd = 0;  // offset of what follows masks and palette
};

// Reads the header at that offset (12, 40, 52, 56, 108 or 124 bytes long) with masks and palette.
// Where the pixels are known to start at `pixelsStart`, the palette ends there at the latest.
// Run-time error 481 for a header that describes no bitmap, or one of more than 2^30 pixels.
DibLayout ReadDibLayout(ByteSource& source, std::uint64_t offset,
                        std::optional<std::uint64_t> pixelsStart);

// Reads the pixels that start at that offset, into a block of the reserve where that serves; the
// result keeps depth, palette and resolution, its rows are top-down. Run-time errors: 481 when the
// source holds fewer pixels than the layout says, found before memory is asked for; 7 when there is
// no memory.
Dib ReadDibPixels(ByteSource& source, const DibLayout& layout, std::uint64_t offset,
                  std::shared_ptr<BlockReserve> reserve = nullptr);

// Reads a BMP file. Run-time errors: 481 for content that is no BMP file or cut short, 7 when there
// is no memory.
Dib ReadBmp(ByteSource& source, std::shared_ptr<BlockReserve> reserve = nullptr);

}  // namespace quillet
