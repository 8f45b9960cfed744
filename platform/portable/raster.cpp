#include "platform/portable/raster.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "base/runtime_error.h"

namespace quillet {
namespace {

constexpr int kBytesPerPixel = 3;

std::vector<Byte> Allocate(int width, int height) try {
  return std::vector<Byte>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                           kBytesPerPixel);
} catch (const std::bad_alloc&) {
  throw RunTimeError(ErrorNumber::OutOfMemory);
} catch (const std::length_error&) {
  throw RunTimeError(ErrorNumber::OutOfMemory);
}

void Put(Byte* pixel, Rgb color) {
  pixel[0] = color.red;
  pixel[1] = color.green;
  pixel[2] = color.blue;
}

}  // namespace

Raster::Raster(int width, int height, Rgb color)
    : m_width(width), m_height(height), m_pixels(Allocate(width, height)) {
  Fill(Bounds(), color);
}

std::size_t Raster::Offset(int x, int y) const noexcept {
  const std::size_t index =
      static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x);
  return index * kBytesPerPixel;
}

Rgb Raster::At(int x, int y) const {
  if (!Bounds().Contains(x, y)) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
  const Byte* pixel = m_pixels.data() + Offset(x, y);
  return {pixel[0], pixel[1], pixel[2]};
}

void Raster::Fill(const PixelRect& area, Rgb color) {
  Dither(area, color, color);
}

void Raster::Dither(const PixelRect& area, Rgb color, Rgb other) {
  const PixelRect visible = area.Intersection(Bounds());
  for (int y = visible.top; y < visible.top + visible.height; ++y) {
    Byte* pixel = m_pixels.data() + Offset(visible.left, y);
    for (int x = visible.left; x < visible.left + visible.width; ++x, pixel += kBytesPerPixel)
      Put(pixel, ((x ^ y) & 1) == 0 ? color : other);
  }
}

void Raster::Edge(const PixelRect& area, Rgb lit, Rgb shaded) {
  if (area.Empty()) return;
  Fill({area.left, area.top, area.width, 1}, lit);
  Fill({area.left, area.top, 1, area.height}, lit);
  Fill({area.left, area.top + area.height - 1, area.width, 1}, shaded);
  Fill({area.left + area.width - 1, area.top, 1, area.height}, shaded);
}

void Raster::Paste(const Raster& source, int left, int top) {
  const PixelRect visible =
      PixelRect{left, top, source.m_width, source.m_height}.Intersection(Bounds());
  if (visible.Empty()) return;
  for (int y = visible.top; y < visible.top + visible.height; ++y) {
    const Byte* from = source.m_pixels.data() + source.Offset(visible.left - left, y - top);
    std::copy_n(from, visible.width * kBytesPerPixel, m_pixels.data() + Offset(visible.left, y));
  }
}

void Raster::PasteBgr(const PixelRect& area, const Byte* pixels, std::size_t stride) {
  const PixelRect visible = area.Intersection(Bounds());
  for (int y = visible.top; y < visible.top + visible.height; ++y) {
    const Byte* from = pixels + static_cast<std::size_t>(y - area.top) * stride +
                       static_cast<std::size_t>(visible.left - area.left) * kBytesPerPixel;
    Byte* to = m_pixels.data() + Offset(visible.left, y);
    for (int x = 0; x < visible.width; ++x, from += kBytesPerPixel, to += kBytesPerPixel)
      Put(to, {from[2], from[1], from[0]});
  }
}

}  // namespace quillet
