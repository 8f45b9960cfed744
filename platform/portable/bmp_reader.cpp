#include "platform/portable/bmp_reader.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "base/runtime_error.h"
#include "platform/portable/bitmap_convert.h"
#include "platform/portable/bmp_rle.h"
#include "platform/portable/little_endian.h"

namespace quillet {
namespace {

constexpr std::size_t kFileHeaderSize = 14;
constexpr std::uint32_t kCoreHeaderSize = 12;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kLongestHeaderSize = 124;
constexpr std::uint32_t kBitFieldsWithAlpha = 6;
constexpr std::int64_t kMostPixels = std::int64_t{1} << 30;

[[noreturn]] void Refuse(const char* reason) {
  throw RunTimeError(ErrorNumber::InvalidPicture, reason);
}

[[noreturn]] void RefuseShort() {
  Refuse("the file is cut short");
}

void ReadAll(ByteSource& source, std::uint64_t offset, std::span<Byte> target) {
  if (source.Read(offset, target) != target.size()) RefuseShort();
}

ChannelMasks LoadMasks(const Byte* p) {
  const ChannelMasks masks{LoadDword(p), LoadDword(p + 4), LoadDword(p + 8)};
  if (!IsContiguous(masks.red) || !IsContiguous(masks.green) || !IsContiguous(masks.blue)) {
    Refuse("a colour mask has gaps");
  }
  return masks;
}

void CheckSize(std::int64_t width, std::int64_t height) {
  if (width < 1 || height < 1 || height > std::numeric_limits<Long>::max()) {
    Refuse("a size below one pixel");
  }
  if (width > kMostPixels / height) Refuse("too many pixels");
}

bool Agrees(DibCompression compression, const Dib::Format& format) {
  switch (compression) {
    case DibCompression::None:
      return format.depth == 1 || format.depth == 4 || format.depth == 8 || format.depth == 16 ||
             format.depth == 24 || format.depth == 32;
    case DibCompression::Rle8:
      return format.depth == 8 && !format.topDown;
    case DibCompression::Rle4:
      return format.depth == 4 && !format.topDown;
    case DibCompression::BitFields:
      return format.depth == 16 || format.depth == 32;
  }
  return false;
}

// Rows that lie in the file last row first. Many at once, which the system hands out faster than
// one by one.
void ReadBottomUp(ByteSource& source, std::uint64_t offset, Dib& dib) {
  std::array<std::span<Byte>, 64> rows;
  for (Long y = dib.Height(); y > 0;) {
    std::size_t count = 0;
    std::size_t bytes = 0;
    for (; count < rows.size() && y > 0; ++count) {
      --y;
      // The file's last row may lack its alignment bytes.
      rows[count] = {dib.WritableRow(y),
                     y == 0 ? dib.RowBytes() : static_cast<std::size_t>(dib.Stride())};
      bytes += rows[count].size();
    }
    if (source.ReadScattered(offset, std::span(rows).first(count)) != bytes) RefuseShort();
    offset += bytes;
  }
}

Dib ReadUncompressed(ByteSource& source, const DibLayout& layout, std::uint64_t offset,
                     Dib::Format format, std::shared_ptr<BlockReserve> reserve) {
  const std::uint64_t stride = static_cast<std::uint64_t>(DibStride(format.width, format.depth));
  const std::uint64_t rowBytes =
      static_cast<std::uint64_t>(DibRowBytes(format.width, format.depth));
  // Some writers leave out the last row's alignment bytes.
  const std::uint64_t size = stride * static_cast<std::uint64_t>(format.height - 1) + rowBytes;
  if (offset > source.Size() || size > source.Size() - offset) RefuseShort();

  Dib dib(std::move(format), std::move(reserve));
  if (layout.format.topDown)
    ReadAll(source, offset, {dib.WritableBits(), static_cast<std::size_t>(size)});
  else
    ReadBottomUp(source, offset, dib);
  ClearAlignment(dib.WritableBits(), dib.RowBytes(), dib.Stride(), dib.Height());
  return dib;
}

Dib ReadRle(ByteSource& source, std::uint64_t offset, Dib::Format format) {
  if (offset > source.Size()) RefuseShort();
  // Enough for the worst encoding, one pixel a run and moves between them; nothing is read beyond.
  const std::uint64_t longest = 8 * (static_cast<std::uint64_t>(format.width) + 1) *
                                (static_cast<std::uint64_t>(format.height) + 1);
  std::vector<Byte> stream(static_cast<std::size_t>(std::min(source.Size() - offset, longest)));
  ReadAll(source, offset, stream);
  if (!IsWholeRle(stream, format)) RefuseShort();
  Dib dib = Dib::Zeroed(std::move(format));
  DecodeRle(stream, dib);
  return dib;
}

}  // namespace

DibLayout ReadDibLayout(ByteSource& source, std::uint64_t offset,
                        std::optional<std::uint64_t> pixelsStart) {
  std::array<Byte, kLongestHeaderSize> header{};
  ReadAll(source, offset, {header.data(), 4});
  const std::uint32_t headerSize = LoadDword(header.data());
  constexpr std::uint32_t known[] = {kCoreHeaderSize, kInfoHeaderSize, 52, 56, 108, 124};
  if (std::ranges::find(known, headerSize) == std::end(known)) Refuse("no known header");
  ReadAll(source, offset, {header.data(), headerSize});

  DibLayout layout;
  Dib::Format& format = layout.format;
  std::int64_t height = 0;
  std::uint32_t compression = 0;
  std::uint32_t colorsUsed = 0;
  std::size_t colorSize = 4;
  std::uint16_t planes = 0;
  if (headerSize == kCoreHeaderSize) {
    format.width = LoadWord(&header[4]);
    height = LoadWord(&header[6]);
    planes = LoadWord(&header[8]);
    format.depth = LoadWord(&header[10]);
    colorSize = 3;
  } else {
    format.width = LoadLong(&header[4]);
    height = LoadLong(&header[8]);
    planes = LoadWord(&header[12]);
    format.depth = LoadWord(&header[14]);
    compression = LoadDword(&header[16]);
    format.xPelsPerMeter = LoadLong(&header[24]);
    format.yPelsPerMeter = LoadLong(&header[28]);
    colorsUsed = LoadDword(&header[32]);
  }
  format.topDown = height < 0;
  height = height < 0 ? -height : height;
  CheckSize(format.width, height);
  format.height = static_cast<Long>(height);
  if (planes != 1) Refuse("more than one plane");

  std::uint64_t next = offset + headerSize;
  if (format.depth == 16) format.masks = kMasks16;
  if (format.depth == 32) format.masks = kMasks32;
  const bool hasMasks = compression == static_cast<std::uint32_t>(DibCompression::BitFields) ||
                        compression == kBitFieldsWithAlpha;
  if (hasMasks) {
    layout.compression = DibCompression::BitFields;
    if (headerSize == kInfoHeaderSize) {
      // The masks follow the header: where it is longer, they lie in the same place.
      const std::size_t size = compression == kBitFieldsWithAlpha ? 16 : 12;
      ReadAll(source, next, {&header[kInfoHeaderSize], size});
      next += size;
    }
    format.masks = LoadMasks(&header[kInfoHeaderSize]);
  } else {
    layout.compression = static_cast<DibCompression>(compression);
  }
  if (!Agrees(layout.compression, format)) Refuse("a depth that is not supported");

  if (pixelsStart && *pixelsStart < next) Refuse("pixels that start inside the header");
  if (format.depth <= 8) {
    const std::uint64_t most = std::uint64_t{1} << format.depth;
    std::uint64_t colors = colorsUsed == 0 ? most : std::min<std::uint64_t>(colorsUsed, most);
    if (pixelsStart) colors = std::min(colors, (*pixelsStart - next) / colorSize);
    std::vector<Byte> bytes(static_cast<std::size_t>(colors) * colorSize);
    ReadAll(source, next, bytes);
    for (std::size_t at = 0; at < bytes.size(); at += colorSize) {
      format.palette.push_back({bytes[at], bytes[at + 1], bytes[at + 2]});
    }
    next += bytes.size();
  } else if (!pixelsStart) {
    // A table for displays of few colours: passed over.
    next += std::uint64_t{colorsUsed} * colorSize;
  }
  layout.colorsEnd = next;
  return layout;
}

Dib ReadDibPixels(ByteSource& source, const DibLayout& layout, std::uint64_t offset,
                  std::shared_ptr<BlockReserve> reserve) {
  Dib::Format format = layout.format;
  format.topDown = true;
  try {
    const bool encoded =
        layout.compression == DibCompression::Rle8 || layout.compression == DibCompression::Rle4;
    return encoded
               ? ReadRle(source, offset, std::move(format))
               : ReadUncompressed(source, layout, offset, std::move(format), std::move(reserve));
  } catch (const std::bad_alloc&) {
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
}

Dib ReadBmp(ByteSource& source, std::shared_ptr<BlockReserve> reserve) {
  std::array<Byte, kFileHeaderSize> header{};
  ReadAll(source, 0, header);
  if (header[0] != 'B' || header[1] != 'M') Refuse("no BMP file");
  const std::uint32_t pixelsStart = LoadDword(&header[10]);
  const DibLayout layout = ReadDibLayout(source, kFileHeaderSize, pixelsStart);
  return ReadDibPixels(source, layout, pixelsStart, std::move(reserve));
}

}  // namespace quillet
