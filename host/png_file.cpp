#include "host/png_file.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "host/png_encoder.h"
#include "host/text.h"

namespace quillet {
namespace {

void WriteFile(const std::string& fileName, const std::vector<char>& content) {
  errno = 0;
  std::ofstream file(PathOf(fileName), std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  if (!file) throw std::system_error(errno ? errno : EIO, std::generic_category());
}

}  // namespace

void WritePng(const std::string& fileName, const Snapshot& snapshot) {
  try {
    if (snapshot.width < 1 || snapshot.height < 1)
      throw std::runtime_error("the control shows no pixels");
    WriteFile(fileName, EncodePng(snapshot));
  } catch (const std::exception& error) {
    throw std::runtime_error("cannot write " + fileName + ": " + error.what());
  }
}

}  // namespace quillet
