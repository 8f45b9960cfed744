#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <system_error>

namespace quillet {
namespace {

// Names are UTF-8 in the tests, whatever the system has them in.
std::string Utf8Name(const std::filesystem::path& path) {
  const std::u8string name = path.u8string();
  return {name.begin(), name.end()};
}
std::filesystem::path PathOf(const std::string& name) {
  return std::u8string(name.begin(), name.end());
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("quillet_test_" + std::to_string(random()));
    if (std::filesystem::create_directory(path)) {
      m_path = Utf8Name(path);
      return;
    }
  }
  throw std::runtime_error("no temporary folder");
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(PathOf(m_path), ignored);
}

std::string TemporaryFolder::Path(const std::string& name) const {
  return Utf8Name(PathOf(m_path) / PathOf(name));
}

std::string TemporaryFolder::Write(const std::string& name, std::span<const Byte> content) const {
  const std::string path = Path(name);
  std::ofstream file(PathOf(path), std::ios::binary);
  file.write(reinterpret_cast<const char*>(content.data()),
             static_cast<std::streamsize>(content.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
  return path;
}

}  // namespace quillet
