#include "platform/portable/bmp_rle.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace quillet {
namespace {

// Puts pixels into a bitmap of 4 or 8 bits.
class PixelWriter {
 public:
  explicit PixelWriter(Dib& target) : m_target(target) {}

  void Put(std::int64_t x, std::int64_t y, int index) {
    Byte* const row = m_target.WritableRow(m_target.Height() - 1 - static_cast<Long>(y));
    if (m_target.Depth() == 8) {
      row[x] = static_cast<Byte>(index);
    } else {
      const int shift = x % 2 == 0 ? 4 : 0;
      row[x / 2] = static_cast<Byte>((row[x / 2] & ~(15 << shift)) | index << shift);
    }
  }

 private:
  Dib& m_target;
};

struct PixelDropper {
  void Put(std::int64_t, std::int64_t, int) {}
};

// Walks through the stream; true when it is whole.
template <typename Writer>
bool Walk(std::span<const Byte> stream, const Dib::Format& format, Writer&& writer) {
  constexpr Byte kEscape = 0, kEndOfLine = 0, kEndOfBitmap = 1, kDelta = 2;
  const std::int64_t width = format.width;
  const std::int64_t height = format.height;
  const bool nibbles = format.depth == 4;
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::size_t at = 0;
  const auto has = [&](std::size_t count) { return stream.size() - at >= count; };

  while (has(2)) {
    const Byte count = stream[at];
    const Byte code = stream[at + 1];
    at += 2;
    if (count != kEscape) {
      const std::int64_t end = y < height ? std::min(x + count, width) : x;
      const int indexes[2] = {nibbles ? code >> 4 : code, nibbles ? code & 15 : code};
      for (std::int64_t i = 0; x + i < end; ++i) writer.Put(x + i, y, indexes[i % 2]);
      x += count;
    } else if (code == kEndOfLine) {
      x = 0;
      ++y;
    } else if (code == kEndOfBitmap) {
      return true;
    } else if (code == kDelta) {
      if (!has(2)) return false;
      x += stream[at];
      y += stream[at + 1];
      at += 2;
    } else {
      const std::size_t bytes = nibbles ? (code + 1u) / 2 : code;
      if (!has(bytes)) return false;
      const std::int64_t end = y < height ? std::min(x + code, width) : x;
      for (std::int64_t i = 0; x + i < end; ++i) {
        const std::size_t k = static_cast<std::size_t>(i);
        const int index =
            nibbles ? stream[at + k / 2] >> (k % 2 == 0 ? 4 : 0) & 15 : stream[at + k];
        writer.Put(x + i, y, index);
      }
      x += code;
      at += std::min(bytes + bytes % 2, stream.size() - at);
    }
  }
  return y >= height || (y == height - 1 && x >= width);
}

}  // namespace

bool IsWholeRle(std::span<const Byte> stream, const Dib::Format& format) {
  return Walk(stream, format, PixelDropper{});
}

void DecodeRle(std::span<const Byte> stream, Dib& target) {
  Walk(stream, target.GetFormat(), PixelWriter(target));
}

}  // namespace quillet
