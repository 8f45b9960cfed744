#include "tests/support/bmp_file.h"

#include <cstdlib>

namespace quillet {

void AppendLittleEndian(std::vector<Byte>& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<Byte>(value >> 8 * i));
}

std::vector<Byte> PackRows(Long width, Long rows, int depth,
                           const std::function<std::uint32_t(Long x, Long row)>& value) {
  std::vector<Byte> bytes;
  for (Long row = 0; row < rows; ++row) {
    for (Long x = 0; x < width; ++x) {
      if (depth >= 8) {
        AppendLittleEndian(bytes, value(x, row), depth / 8);
      } else {
        const int perByte = 8 / depth;
        if (x % perByte == 0) bytes.push_back(0);
        const int shift = 8 - depth * (x % perByte + 1);
        bytes.back() = static_cast<Byte>(bytes.back() | value(x, row) << shift);
      }
    }
    while (bytes.size() % 4 != 0) bytes.push_back(0);
  }
  return bytes;
}

void BmpFile::PackPixels(const std::function<std::uint32_t(Long x, Long y)>& value) {
  const Long rows = std::abs(height);
  pixels = PackRows(width, rows, depth,
                    [&](Long x, Long row) { return value(x, height < 0 ? row : rows - 1 - row); });
}

std::vector<Byte> BmpFile::Bytes() const {
  std::vector<Byte> info;
  const auto put = [&](auto field, int count) {
    AppendLittleEndian(info, static_cast<std::uint32_t>(field), count);
  };
  const bool core = headerSize == 12;
  put(headerSize, 4);
  put(width, core ? 2 : 4);
  put(height, core ? 2 : 4);
  put(planes, 2);
  put(depth, 2);
  if (!core) {
    put(compression, 4);
    put(0, 4);
    put(xPelsPerMeter, 4);
    put(yPelsPerMeter, 4);
    put(colorsUsed.value_or(static_cast<std::uint32_t>(palette.size())), 4);
    put(0, 4);
    for (const std::uint32_t mask : masks) put(mask, 4);
    while (info.size() < headerSize) info.push_back(0);
  }
  for (const Color& color : palette) {
    info.insert(info.end(), {color.blue, color.green, color.red});
    if (!core) info.push_back(0);
  }

  std::vector<Byte> file{'B', 'M'};
  const std::uint32_t start = static_cast<std::uint32_t>(14 + info.size());
  AppendLittleEndian(file, static_cast<std::uint32_t>(start + pixels.size()), 4);
  AppendLittleEndian(file, 0, 4);
  AppendLittleEndian(file, pixelsStart.value_or(start), 4);
  file.insert(file.end(), info.begin(), info.end());
  file.insert(file.end(), pixels.begin(), pixels.end());
  return file;
}

}  // namespace quillet
