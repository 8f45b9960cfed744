#include "tests/support/tiff_pages.h"

#include <cstdint>

namespace quillet {
namespace {

// Of a number of that many bytes; 0 beyond the end.
std::size_t NumberAt(const std::vector<Byte>& file, std::size_t at, std::size_t bytes) {
  std::size_t value = 0;
  for (std::size_t i = bytes; i-- > 0;)
    value = value << 8 | (at + i < file.size() ? file[at + i] : 0u);
  return value;
}

}  // namespace

std::vector<std::vector<Byte>> PagesOfTiff(const std::vector<Byte>& file) {
  std::vector<std::vector<Byte>> pages;
  if (file.size() < 8 || file[0] != 'I' || file[1] != 'I') return pages;
  constexpr std::size_t kLink = 4, kEntry = 12, kTooMany = 100;
  for (std::size_t at = NumberAt(file, kLink, 4); at != 0 && pages.size() < kTooMany;) {
    std::vector<Byte> page = file;
    for (std::size_t i = 0; i < 4; ++i) page[kLink + i] = static_cast<Byte>(at >> (8 * i));
    pages.push_back(page);
    at = NumberAt(file, at + 2 + kEntry * NumberAt(file, at, 2), 4);
  }
  return pages;
}

}  // namespace quillet
