#include "platform/portable/icon_writer.h"

#include <cstddef>
#include <cstdint>

#include "base/runtime_error.h"

namespace quillet {
namespace {

constexpr std::size_t kDirectorySize = 6 + 16;
constexpr std::size_t kHeaderSize = 40;
constexpr int kLongestSide = 256;

}  // namespace

std::vector<Byte> WriteIcon(const IconImage& image) {
  if (image.width < 1 || image.height < 1 || image.width > kLongestSide ||
      image.height > kLongestSide)
    throw RunTimeError(ErrorNumber::InvalidPicture, "an icon has up to 256 x 256 pixels");
  const auto width = static_cast<std::size_t>(image.width);
  const auto height = static_cast<std::size_t>(image.height);
  const std::size_t maskStride = (width + 31) / 32 * 4;
  const std::size_t size = kHeaderSize + width * height * 4 + maskStride * height;
  const bool isCursor = image.hotSpotX != 0 || image.hotSpotY != 0;

  std::vector<Byte> file;
  file.reserve(kDirectorySize + size);
  const auto append = [&](std::size_t value, int count) {
    for (int i = 0; i < count; ++i) file.push_back(static_cast<Byte>(value >> 8 * i));
  };
  append(0, 2);
  append(isCursor ? 2 : 1, 2);
  append(1, 2);  // images
  append(width, 1);
  append(height, 1);
  append(0, 2);
  append(isCursor ? static_cast<std::size_t>(image.hotSpotX) : 1, 2);   // an icon's planes
  append(isCursor ? static_cast<std::size_t>(image.hotSpotY) : 32, 2);  // and depth
  append(size, 4);
  append(kDirectorySize, 4);
  append(kHeaderSize, 4);
  append(width, 4);
  append(2 * height, 4);  // the mask's rows counted too
  append(1, 2);
  append(32, 2);
  append(0, 4);
  append(size - kHeaderSize, 4);
  for (int i = 0; i < 4; ++i) append(0, 4);
  const std::size_t stride = width * 4;
  for (std::size_t y = height; y-- > 0;) {
    const auto row = image.bgra.begin() + static_cast<std::ptrdiff_t>(y * stride);
    file.insert(file.end(), row, row + static_cast<std::ptrdiff_t>(stride));
  }
  for (std::size_t y = height; y-- > 0;) {
    const std::size_t start = file.size();
    file.resize(start + maskStride);
    for (std::size_t x = 0; x < width; ++x)
      if (image.bgra[y * stride + x * 4 + 3] == 0)
        file[start + x / 8] = static_cast<Byte>(file[start + x / 8] | 0x80 >> x % 8);
  }
  return file;
}

}  // namespace quillet
