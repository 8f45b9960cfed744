#include "picture/dib_section.h"

#include <cstdint>
#include <limits>
#include <utility>

#include "base/runtime_error.h"

namespace quillet {
namespace {

constexpr std::int64_t kLargestLong = std::numeric_limits<Long>::max();

std::int64_t StrideOf(Long width) {
  return 3LL * width + RowAlignment(width);
}

}  // namespace

Integer RowAlignment(Long width) {
  const std::int64_t pixelBytes = 3LL * width;
  if (pixelBytes + 3 > kLargestLong || pixelBytes < std::numeric_limits<Long>::min())
    throw RunTimeError(ErrorNumber::Overflow);
  return static_cast<Integer>((pixelBytes + 3) / 4 * 4 - pixelBytes);
}

void CheckPixelSize(Long width, Long height) {
  const std::int64_t stride = StrideOf(width);
  if (width < 1 || height < 1) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
  if (stride > kLargestLong / height) throw RunTimeError(ErrorNumber::OutOfMemory);
}

BITMAPINFOHEADER TopDownHeader(Long width, Long height) {
  BITMAPINFOHEADER header;
  header.biWidth = width;
  header.biHeight = -height;
  header.biBitCount = 24;
  header.biSizeImage = static_cast<std::uint32_t>(StrideOf(width) * height);
  return header;
}

DibSection DibSection::Create(BitmapServices& services, Long width, Long height) {
  CheckPixelSize(width, height);
  const UniqueDC dc(services);
  void* bits = nullptr;
  UniqueBitmap bitmap(services,
                      services.CreateDIBSection(dc.get(), TopDownHeader(width, height), bits));
  if (!bitmap) throw RunTimeError(ErrorNumber::OutOfMemory);
  return DibSection(std::move(bitmap), static_cast<Byte*>(bits), width, height);
}

DibSection DibSection::CopyOf(BitmapServices& services, BitmapHandle bitmap, Long width,
                              Long height) {
  DibSection section = Create(services, width, height);
  const UniqueDC dc(services);
  const int rows =
      services.GetDIBits(dc.get(), bitmap, height, section.Bits(), TopDownHeader(width, height));
  if (rows != height) throw RunTimeError(ErrorNumber::OutOfMemory);
  return section;
}

DibSection::DibSection(UniqueBitmap bitmap, Byte* bits, Long width, Long height)
    : m_bitmap(std::move(bitmap)),
      m_bits(bits),
      m_width(width),
      m_height(height),
      m_stride(static_cast<std::ptrdiff_t>(StrideOf(width))) {}

}  // namespace quillet
