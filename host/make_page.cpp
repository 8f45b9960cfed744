#include <cerrno>
#include <charconv>
#include <cstdint>
#include <exception>
#include <fstream>
#include <iostream>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/rounding.h"
#include "platform/portable/test_page.h"

// quillet-page: writes the built-in test page to a BMP file.

namespace quillet {
namespace {

constexpr std::string_view kUsage =
    "usage: quillet-page DPI FILE.bmp\n"
    "Writes the A4 test page as a 24-bit bitmap with 50 to 1200 dots per inch.\n";

void Put(std::vector<char>& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
}

// BITMAPFILEHEADER and BITMAPINFOHEADER of a bottom-up bitmap.
std::vector<char> BmpHeader(TestPageSize size, int dotsPerInch, std::size_t pixelBytes) {
  constexpr std::uint32_t kFileHeader = 14, kInfoHeader = 40;
  const auto dotsPerMetre = static_cast<std::uint32_t>(ToLong(dotsPerInch / 0.0254));
  const auto imageSize = static_cast<std::uint32_t>(pixelBytes);  // 1200 dpi needs 29 bits
  std::vector<char> bytes{'B', 'M'};
  Put(bytes, kFileHeader + kInfoHeader + imageSize, 4);
  Put(bytes, 0, 4);
  Put(bytes, kFileHeader + kInfoHeader, 4);
  Put(bytes, kInfoHeader, 4);
  Put(bytes, static_cast<std::uint32_t>(size.width), 4);
  Put(bytes, static_cast<std::uint32_t>(size.height), 4);
  Put(bytes, 1, 2);
  Put(bytes, 24, 2);
  Put(bytes, 0, 4);
  Put(bytes, imageSize, 4);
  Put(bytes, dotsPerMetre, 4);
  Put(bytes, dotsPerMetre, 4);
  Put(bytes, 0, 4);
  Put(bytes, 0, 4);
  return bytes;
}

void WritePage(int dotsPerInch, const std::string& fileName) {
  const TestPageSize size = SizeOfTestPage(dotsPerInch);
  const std::size_t stride = (3 * static_cast<std::size_t>(size.width) + 3) / 4 * 4;
  std::vector<Byte> pixels(stride * static_cast<std::size_t>(size.height));
  RenderTestPage(dotsPerInch, pixels.data() + pixels.size() - stride,
                 -static_cast<std::ptrdiff_t>(stride));
  const std::vector<char> header = BmpHeader(size, dotsPerInch, pixels.size());

  std::ofstream file(fileName, std::ios::binary | std::ios::trunc);
  if (!file) throw std::system_error(errno, std::generic_category(), "cannot open " + fileName);
  file.write(header.data(), static_cast<std::streamsize>(header.size()));
  file.write(reinterpret_cast<const char*>(pixels.data()),
             static_cast<std::streamsize>(pixels.size()));
  file.close();
  if (!file) throw std::system_error(errno, std::generic_category(), "cannot write " + fileName);
}

int Run(std::span<char*> arguments) {
  if (arguments.size() == 2 && std::string_view(arguments[1]) == "--help") {
    std::cout << kUsage;
    return 0;
  }
  int dotsPerInch = 0;
  const std::string_view number = arguments.size() == 3 ? arguments[1] : "";
  const auto [end, error] =
      std::from_chars(number.data(), number.data() + number.size(), dotsPerInch);
  if (number.empty() || error != std::errc{} || end != number.data() + number.size() ||
      dotsPerInch < kMinTestPageResolution || dotsPerInch > kMaxTestPageResolution) {
    std::cerr << kUsage;
    return 2;
  }
  try {
    WritePage(dotsPerInch, arguments[2]);
  } catch (const std::exception& failure) {
    std::cerr << "quillet-page: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}

}  // namespace
}  // namespace quillet

int main(int count, char** arguments) {
  return quillet::Run({arguments, static_cast<std::size_t>(count)});
}
