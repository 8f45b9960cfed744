#include <png.h>

#include <stdexcept>

#include "host/png_encoder.h"

namespace quillet {

std::vector<char> EncodePng(const Snapshot& snapshot) {
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

}  // namespace quillet
