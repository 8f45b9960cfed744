#include "host/png_file.h"

#include <png.h>

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace quillet {
namespace {

std::vector<char> Encode(const Snapshot& snapshot) {
  if (snapshot.width < 1 || snapshot.height < 1)
    throw std::runtime_error("the control shows no pixels");
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(snapshot.width);
  image.height = static_cast<png_uint_32>(snapshot.height);
  image.format = PNG_FORMAT_RGB;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<char> encoded(size);
  const bool done = png_image_write_to_memory(&image, encoded.data(), &size, 0, snapshot.rgb.data(),
                                              0, nullptr) != 0;
  if (!done) throw std::runtime_error(image.message);
  encoded.resize(size);
  return encoded;
}

void WriteFile(const std::string& fileName, const std::vector<char>& content) {
  errno = 0;
  std::ofstream file(fileName, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  if (!file) throw std::system_error(errno ? errno : EIO, std::generic_category());
}

}  // namespace

void WritePng(const std::string& fileName, const Snapshot& snapshot) {
  try {
    WriteFile(fileName, Encode(snapshot));
  } catch (const std::exception& error) {
    throw std::runtime_error("cannot write " + fileName + ": " + error.what());
  }
}

}  // namespace quillet
