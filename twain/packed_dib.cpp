#include "twain/packed_dib.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/contracts/bitmap_services.h"

namespace quillet {
namespace {

constexpr std::uint32_t kUncompressed = 0;  // BI_RGB
constexpr std::uint32_t kBitFields = 3;     // BI_BITFIELDS
constexpr std::uint64_t kMaskBytes = 12;

}  // namespace

std::optional<PackedDib> PackedDib::Measure(const Byte* block, std::size_t blockSize) {
  BITMAPINFOHEADER header;
  if (blockSize < sizeof header) return {};
  std::memcpy(&header, block, sizeof header);
  if (header.biSize < sizeof header || header.biWidth < 1 || header.biHeight == 0) return {};
  switch (header.biBitCount) {
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
    case 32:
      break;
    default:
      return {};
  }
  if (header.biCompression != kUncompressed && header.biCompression != kBitFields) return {};

  // A longer header has the masks inside.
  const bool hasMasks = header.biCompression == kBitFields && header.biSize == sizeof header;
  const std::uint64_t colors = header.biClrUsed == 0 && header.biBitCount <= 8
                                   ? std::uint64_t{1} << header.biBitCount
                                   : header.biClrUsed;
  const std::uint64_t rowsOffset = header.biSize + (hasMasks ? kMaskBytes : 0) + 4 * colors;
  const std::uint64_t rowBytes =
      (static_cast<std::uint64_t>(header.biWidth) * header.biBitCount + 31) / 32 * 4;
  const auto rows = static_cast<std::uint64_t>(std::llabs(header.biHeight));
  if (rowsOffset > blockSize || rows > (blockSize - rowsOffset) / rowBytes) return {};
  return PackedDib{static_cast<std::size_t>(rowsOffset + rowBytes * rows),
                   static_cast<std::size_t>(rowsOffset)};
}

}  // namespace quillet
