#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/types.h"
#include "platform/portable/pixel_memory.h"

namespace quillet {

struct PaletteColor {
  Byte blue = 0, green = 0, red = 0;
  bool operator==(const PaletteColor&) const = default;
};

// Where the channels of a 16- or 32-bit pixel lie.
struct ChannelMasks {
  std::uint32_t red = 0, green = 0, blue = 0;
  bool operator==(const ChannelMasks&) const = default;
};
inline constexpr ChannelMasks kMasks16{0x7C00, 0x03E0, 0x001F};
inline constexpr ChannelMasks kMasks32{0x00FF0000, 0x0000FF00, 0x000000FF};

// A device-independent bitmap: format, palette, resolution and pixels. A value: copies share the
// pixels until one of them is written.
//
// Rows are padded to a multiple of 4 bytes; the alignment bytes are 0.
class Dib {
 public:
  struct Format {
    Long width = 0;
    Long height = 0;
    int depth = 0;  // bits a pixel: 1, 4, 8, 16, 24 or 32
    bool topDown = true;
    ChannelMasks masks{};                 // of 16 and 32 bits
    std::vector<PaletteColor> palette{};  // of 8 bits and fewer; an index beyond it is black
    // Pixels per metre, 0 when unknown.
    Long xPelsPerMeter = 0;
    Long yPelsPerMeter = 0;
  };

  // Sizes of at least 1. The pixels are unspecified; they come from the reserve where that serves,
  // and go to it. Throws std::bad_alloc, also for more than
  // 2^31-1 bytes.
  explicit Dib(Format format, std::shared_ptr<BlockReserve> reserve = nullptr);
  // As the constructor, with all pixels 0.
  static Dib Zeroed(Format format);

  const Format& GetFormat() const noexcept { return m_format; }
  Long Width() const noexcept { return m_format.width; }
  Long Height() const noexcept { return m_format.height; }
  int Depth() const noexcept { return m_format.depth; }

  // Bytes from one row to the next in memory, alignment included, and bytes that hold pixels.
  std::ptrdiff_t Stride() const noexcept { return m_stride; }
  std::size_t RowBytes() const noexcept;
  // Bytes from a row to the one shown below it.
  std::ptrdiff_t StrideDown() const noexcept { return m_format.topDown ? m_stride : -m_stride; }

  // The row shown at y, counted from the top.
  const Byte* Row(Long y) const noexcept { return m_pixels->Data() + Offset(y); }
  // As Row, to be written: only after MakeWritable.
  Byte* WritableRow(Long y) noexcept { return m_pixels->Data() + Offset(y); }
  // All rows in memory order.
  const Byte* Bits() const noexcept { return m_pixels->Data(); }
  Byte* WritableBits() noexcept { return m_pixels->Data(); }

  bool SharesPixels() const noexcept { return m_pixels.use_count() > 1; }
  // Gives the bitmap pixels of its own. Throws std::bad_alloc.
  void MakeWritable();
  // From now on nothing is known of its pixels per metre.
  void ForgetResolution() noexcept { m_format.xPelsPerMeter = m_format.yPelsPerMeter = 0; }

 private:
  std::ptrdiff_t Offset(Long y) const noexcept {
    return (m_format.topDown ? y : m_format.height - 1 - y) * m_stride;
  }

  Format m_format;
  std::ptrdiff_t m_stride;
  std::shared_ptr<PixelMemory> m_pixels;
};

// Bytes of a row of that many pixels: those that hold pixels, and padded to a multiple of 4.
std::int64_t DibRowBytes(std::int64_t width, int depth) noexcept;
std::int64_t DibStride(std::int64_t width, int depth) noexcept;

// Zeroes the alignment bytes of rows that follow each other in memory.
void ClearAlignment(Byte* rows, std::size_t rowBytes, std::ptrdiff_t stride, Long count) noexcept;

}  // namespace quillet
