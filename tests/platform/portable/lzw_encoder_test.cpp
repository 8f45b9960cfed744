#include "platform/portable/lzw_encoder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>

#include "platform/portable/tiff_file.h"

namespace quillet {
namespace {

// A file that goes with it.
using UniqueFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// What libtiff reads from a file with that strip.
std::vector<Byte> DecodedByLibrary(std::span<Byte> codes, std::size_t size) {
  const UniqueFile file(std::tmpfile(), std::fclose);
  {
    const UniqueTiff tiff = OpenTiff(fileno(file.get()), "w");
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(size));
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, 1);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    EXPECT_EQ(TIFFWriteRawStrip(tiff.get(), 0, codes.data(), std::ssize(codes)), std::ssize(codes));
  }
  const UniqueTiff tiff = OpenTiff(fileno(file.get()), "r");
  if (!tiff) return {};
  std::vector<Byte> bytes(size);
  EXPECT_EQ(TIFFReadEncodedStrip(tiff.get(), 0, bytes.data(), std::ssize(bytes)),
            std::ssize(bytes));
  return bytes;
}

TEST(LzwEncoder, TheLibraryReadsWhatWasCoded) {
  unsigned random = 1;
  const auto noise = [&] { return static_cast<Byte>((random = random * 69069u + 1) >> 24); };
  const struct {
    const char* name;
    std::function<Byte(std::size_t)> at;
  } contents[] = {
      {"zeros", [](std::size_t) { return Byte{0}; }},
      {"another byte", [](std::size_t) { return Byte{255}; }},
      {"noise", [&](std::size_t) { return noise(); }},
      {"small differences", [&](std::size_t) { return static_cast<Byte>((noise() >> 6) - 2); }},
      {"zeros with others between", [&](std::size_t) { return noise() < 3 ? noise() : Byte{0}; }},
      // Strings of the first part do not serve the second one.
      {"noise after zeros", [&](std::size_t i) { return i % 40000 < 20000 ? Byte{0} : noise(); }},
      {"zeros of growing number between noise",
       [&](std::size_t i) { return i * i / 65536 % 2 == 0 ? Byte{0} : noise(); }},
  };
  // Around where codes become longer and where the table is full, as noise has it, and a strip.
  std::vector<std::size_t> sizes = {131072};
  for (std::size_t size = 1; size <= 40; ++size) sizes.push_back(size);
  for (const std::size_t around : {255u, 767u, 1791u, 3837u, 2u * 3837}) {
    for (std::size_t size = around - 6; size <= around + 6; ++size) sizes.push_back(size);
  }
  LzwEncoder encoder;
  for (const auto& [name, at] : contents) {
    for (const std::size_t size : sizes) {
      std::vector<Byte> strip;
      for (std::size_t i = 0; i < size; ++i) strip.push_back(at(i));
      ASSERT_EQ(DecodedByLibrary(encoder.Encode(strip), size), strip) << name << ", " << size;
    }
  }
  const std::vector<Byte> zeros(131072);
  EXPECT_LT(encoder.Encode(zeros).size(), 1000u);
}

}  // namespace
}  // namespace quillet
