#include "platform/portable/bitmap_convert.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/portable/little_endian.h"

namespace quillet {
namespace {

Byte Scale(std::uint32_t value, std::uint32_t max) noexcept {
  if (max == 31) return static_cast<Byte>(value << 3 | value >> 2);
  return static_cast<Byte>((std::uint64_t{value} * 255 + max / 2) / max);
}

}  // namespace

bool IsContiguous(std::uint32_t mask) noexcept {
  if (mask == 0) return true;
  const std::uint32_t run = mask >> std::countr_zero(mask);
  return (run & (run + 1)) == 0;
}

RowConverter::Channel::Channel(std::uint32_t mask) : m_mask(mask) {
  if (mask == 0) return;
  m_shift = std::countr_zero(mask);
  m_max = mask >> m_shift;
  for (std::uint32_t value = 0; value <= std::min(m_max, 255u); ++value) {
    m_table[value] = Scale(value, m_max);
  }
}

Byte RowConverter::Channel::Expand(std::uint32_t pixel) const noexcept {
  const std::uint32_t value = (pixel & m_mask) >> m_shift;
  return m_max <= 255 ? m_table[value] : Scale(value, m_max);
}

std::uint32_t RowConverter::Channel::Reduce(Byte value) const noexcept {
  return static_cast<std::uint32_t>((std::uint64_t{value} * m_max + 127) / 255) << m_shift;
}

RowConverter::RowConverter(const Dib::Format& format)
    : m_depth(format.depth),
      m_plain32(format.depth == 32 && format.masks == kMasks32),
      m_colors(static_cast<int>(std::min<std::size_t>(format.palette.size(), 256))) {
  std::copy_n(format.palette.begin(), m_colors, m_palette.begin());
  if (m_depth == 16 || m_depth == 32) {
    m_red = Channel(format.masks.red);
    m_green = Channel(format.masks.green);
    m_blue = Channel(format.masks.blue);
  }
}

void RowConverter::To24(const Byte* row, Long first, Long count, Byte* target) const noexcept {
  const std::ptrdiff_t start = first;
  const auto masked = [&](const Byte* pixels, int bytes, auto load) {
    for (Long i = 0; i < count; ++i, pixels += bytes, target += 3) {
      const std::uint32_t pixel = load(pixels);
      target[0] = m_blue.Expand(pixel);
      target[1] = m_green.Expand(pixel);
      target[2] = m_red.Expand(pixel);
    }
  };
  switch (m_depth) {
    case 1:
      return IndexesTo24<1>(row, first, count, target);
    case 4:
      return IndexesTo24<4>(row, first, count, target);
    case 8:
      return IndexesTo24<8>(row, first, count, target);
    case 16:
      return masked(row + start * 2, 2, [](const Byte* p) { return std::uint32_t{LoadWord(p)}; });
    case 24:
      std::memmove(target, row + start * 3, static_cast<std::size_t>(count) * 3);
      return;
    default:
      if (!m_plain32) return masked(row + start * 4, 4, LoadDword);
      const Byte* pixel = row + start * 4;
      for (Long i = 0; i < count; ++i, pixel += 4, target += 3) {
        target[0] = pixel[0];
        target[1] = pixel[1];
        target[2] = pixel[2];
      }
  }
}

template <int depth>
void RowConverter::IndexesTo24(const Byte* row, Long first, Long count,
                               Byte* target) const noexcept {
  constexpr unsigned kPerByte = 8 / depth;
  constexpr unsigned kMask = (1 << depth) - 1;
  const std::uint32_t end = static_cast<std::uint32_t>(first) + static_cast<std::uint32_t>(count);
  for (std::uint32_t x = static_cast<std::uint32_t>(first); x < end; ++x, target += 3) {
    const unsigned shift = 8 - depth * (x % kPerByte + 1);
    const PaletteColor color = m_palette[row[x / kPerByte] >> shift & kMask];
    target[0] = color.blue;
    target[1] = color.green;
    target[2] = color.red;
  }
}

void RowConverter::From24(const Byte* source, Long first, Long count, Byte* row) const noexcept {
  const std::ptrdiff_t start = first;
  if (m_depth <= 8) {
    IndexesFrom24(source, first, count, row);
  } else if (m_depth == 24) {
    std::memmove(row + start * 3, source, static_cast<std::size_t>(count) * 3);
  } else {
    const int bytes = m_depth / 8;
    row += start * bytes;
    for (Long i = 0; i < count; ++i, source += 3, row += bytes) {
      const std::uint32_t pixel =
          m_blue.Reduce(source[0]) | m_green.Reduce(source[1]) | m_red.Reduce(source[2]);
      for (int k = 0; k < bytes; ++k) row[k] = static_cast<Byte>(pixel >> 8 * k);
    }
  }
}

void RowConverter::IndexesFrom24(const Byte* source, Long first, Long count,
                                 Byte* row) const noexcept {
  const int perByte = 8 / m_depth;
  const int mask = (1 << m_depth) - 1;
  int index = 0;
  for (Long i = 0; i < count; ++i, source += 3) {
    if (i == 0 || std::memcmp(source, source - 3, 3) != 0) index = NearestColor(source);
    const std::int64_t x = std::int64_t{first} + i;
    const int shift = 8 - m_depth * (static_cast<int>(x % perByte) + 1);
    Byte& byte = row[x / perByte];
    byte = static_cast<Byte>((byte & ~(mask << shift)) | index << shift);
  }
}

int RowConverter::NearestColor(const Byte* pixel) const noexcept {
  int nearest = 0;
  int smallest = 3 * 255 * 255 + 1;
  for (int i = 0; i < m_colors; ++i) {
    const PaletteColor& color = m_palette[static_cast<std::size_t>(i)];
    const int blue = color.blue - pixel[0];
    const int green = color.green - pixel[1];
    const int red = color.red - pixel[2];
    const int distance = blue * blue + green * green + red * red;
    if (distance < smallest) {
      smallest = distance;
      nearest = i;
    }
  }
  return nearest;
}

}  // namespace quillet
