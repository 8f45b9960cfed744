#include "platform/portable/dib.h"

#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace quillet {
namespace {

std::size_t CheckedSize(const Dib::Format& format) {
  const std::int64_t stride = DibStride(format.width, format.depth);
  if (stride > std::numeric_limits<Long>::max() / format.height) throw std::bad_alloc();
  return static_cast<std::size_t>(stride * format.height);
}

}  // namespace

std::int64_t DibRowBytes(std::int64_t width, int depth) noexcept {
  return (width * depth + 7) / 8;
}

std::int64_t DibStride(std::int64_t width, int depth) noexcept {
  return (width * depth + 31) / 32 * 4;
}

void ClearAlignment(Byte* rows, std::size_t rowBytes, std::ptrdiff_t stride, Long count) noexcept {
  const std::size_t padding = static_cast<std::size_t>(stride) - rowBytes;
  if (padding == 0) return;
  for (Long i = 0; i < count; ++i) std::memset(rows + i * stride + rowBytes, 0, padding);
}

Dib::Dib(Format format, std::shared_ptr<BlockReserve> reserve)
    : m_format(std::move(format)),
      m_stride(static_cast<std::ptrdiff_t>(DibStride(m_format.width, m_format.depth))),
      m_pixels(std::make_shared<PixelMemory>(CheckedSize(m_format), std::move(reserve))) {
  if (!m_pixels->StartsZeroed()) {
    ClearAlignment(m_pixels->Data(), RowBytes(), m_stride, m_format.height);
  }
}

Dib Dib::Zeroed(Format format) {
  Dib dib(std::move(format));
  if (!dib.m_pixels->StartsZeroed()) std::memset(dib.m_pixels->Data(), 0, dib.m_pixels->Size());
  return dib;
}

std::size_t Dib::RowBytes() const noexcept {
  return static_cast<std::size_t>(DibRowBytes(m_format.width, m_format.depth));
}

void Dib::MakeWritable() {
  if (!SharesPixels()) return;
  auto own = std::make_shared<PixelMemory>(m_pixels->Size(), m_pixels->Reserve());
  std::memcpy(own->Data(), m_pixels->Data(), m_pixels->Size());
  m_pixels = std::move(own);
}

}  // namespace quillet
