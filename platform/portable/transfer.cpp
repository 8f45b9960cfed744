#include "platform/portable/transfer.h"

#include <cstring>
#include <utility>
#include <vector>

#include "platform/portable/bitmap_convert.h"
#include "platform/portable/resample.h"

namespace quillet {

void TransferPixels(const PixelRows& source, PixelPoint from, Dib& target, PixelPoint to,
                    Long width, Long height) {
  // Downwards within one bitmap, the lowest row is the one to save first.
  const bool lowestFirst = from.y < to.y;
  const auto eachRow = [&](auto&& copy) {
    for (Long i = 0; i < height; ++i) {
      const Long y = lowestFirst ? height - 1 - i : i;
      copy(source.top + (from.y + y) * source.strideDown, target.WritableRow(to.y + y));
    }
  };
  if (source.format->depth == 24 && target.Depth() == 24) {
    const std::size_t bytes = static_cast<std::size_t>(width) * 3;
    eachRow([&](const Byte* read, Byte* write) {
      std::memmove(write + std::ptrdiff_t{to.x} * 3, read + std::ptrdiff_t{from.x} * 3, bytes);
    });
    return;
  }
  const RowConverter reader(*source.format);
  const RowConverter writer(target.GetFormat());
  std::vector<Byte> row(static_cast<std::size_t>(width) * 3);
  eachRow([&](const Byte* read, Byte* write) {
    reader.To24(read, from.x, width, row.data());
    writer.From24(row.data(), to.x, width, write);
  });
}

void ReadRows24(const Dib& source, Long rows, bool topDown, Byte* block) {
  const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(DibStride(source.Width(), 24));
  const std::size_t rowBytes = static_cast<std::size_t>(source.Width()) * 3;
  if (source.Depth() == 24 && source.GetFormat().topDown == topDown) {
    std::memmove(block, source.Bits(), static_cast<std::size_t>(rows * stride));
  } else {
    const RowConverter reader(source.GetFormat());
    for (Long i = 0; i < rows; ++i) {
      const Long y = topDown ? i : source.Height() - 1 - i;
      reader.To24(source.Row(y), 0, source.Width(), block + i * stride);
    }
  }
  ClearAlignment(block, rowBytes, stride, rows);
}

Dib Stretch(const Dib& source, Long width, Long height, InstructionSet instructions,
            std::shared_ptr<BlockReserve> reserve) {
  Dib result({.width = width, .height = height, .depth = 24}, std::move(reserve));
  const auto resample = [&](const Dib& rows) {
    Resample24(rows.Bits(), rows.Stride(), rows.Width(), rows.Height(), result.WritableBits(),
               result.Stride(), width, height, instructions);
  };
  if (source.Depth() == 24 && source.GetFormat().topDown) {
    resample(source);
  } else {
    Dib rows({.width = source.Width(), .height = source.Height(), .depth = 24});
    ReadRows24(source, source.Height(), true, rows.WritableBits());
    resample(rows);
  }
  return result;
}

}  // namespace quillet
