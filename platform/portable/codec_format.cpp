#include "platform/portable/codec_format.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/rounding.h"
#include "platform/portable/codec_error.h"

namespace quillet {
namespace {

constexpr std::uint64_t kMostPixels = std::uint64_t{1} << 30;
constexpr double kMetersPerInch = 0.0254;
constexpr std::size_t kBlockSize = std::size_t{64} << 10;

}  // namespace

void RequireImageSize(std::uint64_t width, std::uint64_t height) {
  if (width < 1 || height < 1) RefuseImage("a size below one pixel");
  if (width > kMostPixels || height > kMostPixels || width * height > kMostPixels) {
    RefuseImage("too many pixels");
  }
}

void RequireRatio(std::uint64_t decoded, std::uint64_t encoded, std::uint64_t ratio) {
  if (decoded / ratio > encoded) RefuseImage("more pixels than the file can hold");
}

Long DotsPerMeter(double dotsPerInch) {
  constexpr double kMost = 1e6;
  if (!(dotsPerInch > 0) || dotsPerInch > kMost) return 0;
  return ToLong(dotsPerInch / kMetersPerInch);
}

double DotsPerInch(Long dotsPerMeter) {
  return dotsPerMeter * kMetersPerInch;
}

Long WholeDotsPerInch(Long dotsPerMeter) {
  const Long inches = ToLong(DotsPerInch(dotsPerMeter));
  return DotsPerMeter(inches) == dotsPerMeter ? inches : 0;
}

std::vector<PaletteColor> GrayPalette(int depth) {
  const int last = (1 << depth) - 1;
  std::vector<PaletteColor> palette;
  for (int i = 0; i <= last; ++i) {
    const Byte gray = static_cast<Byte>(i * 255 / last);
    palette.push_back({gray, gray, gray});
  }
  return palette;
}

std::vector<PaletteColor> WholePalette(const Dib::Format& format) {
  std::vector<PaletteColor> palette = format.palette;
  palette.resize(std::size_t{1} << format.depth);
  return palette;
}

bool IsGrayPalette(const Dib::Format& format) {
  return format.depth <= 8 && format.palette == GrayPalette(format.depth);
}

void PackIndexes(const Byte* indexes, Long count, int depth, Byte* row) noexcept {
  if (depth == 8) {
    std::memcpy(row, indexes, static_cast<std::size_t>(count));
    return;
  }
  const int perByte = 8 / depth;
  for (Long x = 0; x < count; x += perByte, ++row) {
    int byte = 0;
    for (int i = 0; i < perByte; ++i) {
      byte = byte << depth | (x + i < count ? indexes[x + i] : 0);
    }
    *row = static_cast<Byte>(byte);
  }
}

void UnpackIndexes(const Byte* row, Long count, int depth, Byte* indexes) noexcept {
  if (depth == 8) {
    std::memcpy(indexes, row, static_cast<std::size_t>(count));
    return;
  }
  const int perByte = 8 / depth;
  const int mask = (1 << depth) - 1;
  for (Long x = 0; x < count; ++row) {
    for (int shift = 8 - depth, i = 0; i < perByte && x < count; ++i, ++x, shift -= depth) {
      indexes[x] = static_cast<Byte>(*row >> shift & mask);
    }
  }
}

std::span<const Byte> ByteReader::NextBlock() {
  if (m_rest.empty()) {
    m_block.resize(kBlockSize);
    m_rest = {m_block.data(), m_source.Read(m_offset, m_block)};
    m_offset += m_rest.size();
  }
  return std::exchange(m_rest, {});
}

std::size_t ByteReader::Read(std::span<Byte> target) {
  std::size_t done = 0;
  while (done < target.size()) {
    if (m_rest.empty()) m_rest = NextBlock();
    if (m_rest.empty()) break;
    const std::size_t count = std::min(m_rest.size(), target.size() - done);
    std::copy_n(m_rest.begin(), count, target.begin() + static_cast<std::ptrdiff_t>(done));
    m_rest = m_rest.subspan(count);
    done += count;
  }
  return done;
}

}  // namespace quillet
