#include "platform/portable/codec_bmp.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "platform/portable/bmp_reader.h"
#include "platform/portable/codec_error.h"

namespace quillet {
namespace {

void Append(std::vector<Byte>& bytes, std::uint64_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<Byte>(value >> 8 * i));
}

std::vector<Byte> Header(const Dib::Format& format, std::uint64_t pixelBytes) {
  constexpr std::uint64_t kFileHeaderSize = 14;
  constexpr std::uint64_t kInfoHeaderSize = 40;
  const bool masked = (format.depth == 16 && format.masks != kMasks16) ||
                      (format.depth == 32 && format.masks != kMasks32);
  const std::size_t colors = std::min(format.palette.size(), std::size_t{256});
  const std::uint64_t start = kFileHeaderSize + kInfoHeaderSize + (masked ? 12 : 0) + colors * 4;
  if (start + pixelBytes > std::numeric_limits<std::uint32_t>::max()) {
    throw CodecError(CodecStatus::ValueOverflow);
  }

  std::vector<Byte> header{'B', 'M'};
  Append(header, start + pixelBytes, 4);
  Append(header, 0, 4);
  Append(header, start, 4);
  Append(header, kInfoHeaderSize, 4);
  Append(header, static_cast<std::uint64_t>(format.width), 4);
  Append(header, static_cast<std::uint64_t>(format.height), 4);
  Append(header, 1, 2);
  Append(header, static_cast<std::uint64_t>(format.depth), 2);
  Append(header,
         static_cast<std::uint64_t>(masked ? DibCompression::BitFields : DibCompression::None), 4);
  Append(header, pixelBytes, 4);
  Append(header, static_cast<std::uint64_t>(std::max(format.xPelsPerMeter, 0)), 4);
  Append(header, static_cast<std::uint64_t>(std::max(format.yPelsPerMeter, 0)), 4);
  Append(header, colors, 4);
  Append(header, 0, 4);
  if (masked) {
    for (const std::uint32_t mask : {format.masks.red, format.masks.green, format.masks.blue}) {
      Append(header, mask, 4);
    }
  }
  for (std::size_t i = 0; i < colors; ++i) {
    const PaletteColor& color = format.palette[i];
    header.insert(header.end(), {color.blue, color.green, color.red, Byte{0}});
  }
  return header;
}

}  // namespace

void WriteBmp(const Dib& dib, ReplacingFile& file) {
  const std::size_t stride = static_cast<std::size_t>(dib.Stride());
  const std::size_t size = stride * static_cast<std::size_t>(dib.Height());
  file.Write(Header(dib.GetFormat(), size));
  if (!dib.GetFormat().topDown) {
    file.Write({dib.Bits(), size});
    return;
  }
  // Rows go bottom-up in the file: turned over in blocks that stay in the cache.
  constexpr std::size_t kBlockSize = std::size_t{256} << 10;
  const Long most = static_cast<Long>(std::max(kBlockSize / stride, std::size_t{1}));
  std::vector<Byte> block;
  for (Long y = dib.Height(); y > 0;) {
    const Long rows = std::min(most, y);
    block.clear();
    for (Long i = 0; i < rows; ++i) {
      const Byte* const row = dib.Row(--y);
      block.insert(block.end(), row, row + stride);
    }
    file.Write(block);
  }
}

}  // namespace quillet
