#include "tests/support/icon_file.h"

namespace quillet {

IconEntry IconImageOf(int width, int height, int depth, const std::vector<BmpFile::Color>& palette,
                      const std::function<std::uint32_t(Long x, Long y)>& value,
                      const std::function<bool(Long x, Long y)>& isTransparent) {
  BmpFile colors{.width = width, .height = height, .depth = depth, .palette = palette};
  colors.PackPixels(value);
  const std::vector<Byte> mask = PackRows(width, height, 1, [&](Long x, Long row) {
    return static_cast<std::uint32_t>(isTransparent(x, height - 1 - row));
  });
  // The height covers the mask too.
  const std::vector<Byte> pixels = std::move(colors.pixels);
  colors.pixels.clear();
  colors.height = 2 * height;
  std::vector<Byte> data = colors.Bytes();
  data.erase(data.begin(), data.begin() + 14);
  data.insert(data.end(), pixels.begin(), pixels.end());
  data.insert(data.end(), mask.begin(), mask.end());
  return {width, height, depth, data};
}

IconEntry OpaqueIcon(int width, int height, BmpFile::Color color) {
  const std::uint32_t value = static_cast<std::uint32_t>(color.red) << 16 |
                              static_cast<std::uint32_t>(color.green) << 8 | color.blue;
  return IconImageOf(
      width, height, 24, {}, [&](Long, Long) { return value; }, [](Long, Long) { return false; });
}

std::vector<Byte> IconFile(const std::vector<IconEntry>& entries) {
  std::vector<Byte> file;
  AppendLittleEndian(file, 0, 2);
  AppendLittleEndian(file, 1, 2);
  AppendLittleEndian(file, static_cast<std::uint32_t>(entries.size()), 2);
  std::size_t offset = 6 + 16 * entries.size();
  for (const IconEntry& entry : entries) {
    file.push_back(static_cast<Byte>(entry.width));
    file.push_back(static_cast<Byte>(entry.height));
    AppendLittleEndian(file, 0, 2);
    AppendLittleEndian(file, 1, 2);
    AppendLittleEndian(file, static_cast<std::uint32_t>(entry.depth), 2);
    AppendLittleEndian(file, static_cast<std::uint32_t>(entry.data.size()), 4);
    AppendLittleEndian(file, static_cast<std::uint32_t>(offset), 4);
    offset += entry.data.size();
  }
  for (const IconEntry& entry : entries) {
    file.insert(file.end(), entry.data.begin(), entry.data.end());
  }
  return file;
}

}  // namespace quillet
