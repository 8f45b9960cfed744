// Files made to harm: each is refused, or gives what is there, with little memory and time.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string_view>

#include "platform/portable/tiff_file.h"
#include "tests/support/codec_driver.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

using Bytes = std::vector<Byte>;
using namespace std::string_view_literals;

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}
Bytes Text(std::string_view text) {
  return {text.begin(), text.end()};
}
Bytes Little(std::uint64_t value, int size) {
  Bytes bytes;
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<Byte>(value >> 8 * i));
  return bytes;
}
Bytes Big(std::uint32_t value, int size) {
  Bytes bytes = Little(value, size);
  std::ranges::reverse(bytes);
  return bytes;
}

Bytes Bmp(std::uint32_t width, std::uint32_t height, std::uint16_t depth,
          std::uint32_t compression) {
  return Text("BM") + Little(0, 8) + Little(54, 4) + Little(40, 4) + Little(width, 4) +
         Little(height, 4) + Little(1, 2) + Little(depth, 2) + Little(compression, 4) + Bytes(20) +
         Bytes(100);
}

Bytes Deflated(const Bytes& bytes) {
  uLongf size = compressBound(bytes.size());
  Bytes deflated(size);
  compress(deflated.data(), &size, bytes.data(), bytes.size());
  deflated.resize(size);
  return deflated;
}
Bytes Chunk(std::string_view type, const Bytes& data) {
  const Bytes content = Text(type) + data;
  const uLong sum = crc32(0, content.data(), static_cast<uInt>(content.size()));
  return Big(static_cast<std::uint32_t>(data.size()), 4) + content +
         Big(static_cast<std::uint32_t>(sum), 4);
}
Bytes Png(std::uint32_t width, std::uint32_t height, Byte depth, Byte color, const Bytes& chunks) {
  return Text("\x89PNG\r\n\x1A\n"sv) +
         Chunk("IHDR", Big(width, 4) + Big(height, 4) + Bytes{depth, color, 0, 0, 0}) + chunks +
         Chunk("IEND", {});
}

Bytes Jpeg(std::uint32_t width, std::uint32_t height, const Bytes& rest) {
  return Bytes{0xFF, 0xD8, 0xFF, 0xC2, 0, 11, 8} + Big(height, 2) + Big(width, 2) +
         Bytes{1, 1, 0x11, 0} + rest + Bytes{0xFF, 0xD9};
}

Bytes Gif(std::uint32_t width, std::uint32_t height, std::uint32_t frameWidth,
          std::uint32_t frameHeight) {
  return Text("GIF89a") + Little(width, 2) + Little(height, 2) + Bytes{0x80, 0, 0} + Bytes(6) +
         Text(",") + Bytes(4) + Little(frameWidth, 2) + Little(frameHeight, 2) +
         Bytes{0, 2, 2, 0x44, 0x01, 0, ';'};
}

struct Tag {
  std::uint32_t tag, type, count, value;
};
// A directory at offset 8 that links to `next`, and data behind it.
Bytes Tiff(const std::vector<Tag>& tags, std::uint32_t next = 0) {
  Bytes file = Text("II*\0"sv) + Little(8, 4) + Little(tags.size(), 2);
  for (const Tag& tag : tags) {
    file = file + Little(tag.tag, 2) + Little(tag.type, 2) + Little(tag.count, 4) +
           Little(tag.value, 4);
  }
  return file + Little(next, 4) + Bytes(64);
}
// A page whose strip holds that many bytes.
Bytes TiffPage(std::uint32_t width, std::uint32_t height, std::uint32_t bits,
               std::uint32_t compression, std::uint32_t stripBytes,
               const std::vector<Tag>& more = {}, std::uint32_t next = 0) {
  std::vector<Tag> tags{{256, 4, 1, width},       {257, 4, 1, height},    {258, 3, 1, bits},
                        {259, 3, 1, compression}, {262, 3, 1, 1},         {273, 4, 1, 8},
                        {278, 4, 1, height},      {279, 4, 1, stripBytes}};
  tags.insert(tags.end(), more.begin(), more.end());
  return Tiff(tags, next);
}

const struct {
  const char* name;
  std::function<Bytes()> make;
} kRefused[] = {
    {"BMP of 2^31 columns", [] { return Bmp(0x7FFFFFFF, 1, 24, 0); }},
    {"BMP of 2^30 rows that are not there", [] { return Bmp(1, 1 << 30, 1, 0); }},
    {"BMP of negative width", [] { return Bmp(0xFFFFFFFF, 5, 24, 0); }},
    {"compressed BMP of 2^30 pixels", [] { return Bmp(1 << 15, 1 << 15, 8, 1); }},
    {"PNG of 2^31 - 1 squared", [] { return Png(0x7FFFFFFF, 0x7FFFFFFF, 16, 6, {}); }},
    {"PNG of 2^30 pixels in ten bytes",
     [] { return Png(1 << 15, 1 << 15, 8, 2, Chunk("IDAT", Bytes(10))); }},
    {"PNG without a palette", [] { return Png(9, 9, 8, 3, Chunk("IDAT", Bytes(10))); }},
    {"PNG whose block claims 2 GB",
     [] { return Png(9, 9, 8, 2, Big(0x7FFFFFFF, 4) + Text("IDAT")); }},
    {"JPEG of 65500 squared", [] { return Jpeg(65500, 65500, {}); }},
    {"JPEG without tables",
     [] {
       return Jpeg(8, 8, {0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0});
     }},
    {"JPEG of no rows", [] { return Jpeg(8, 0, {}); }},
    {"GIF of 65535 squared", [] { return Gif(65535, 65535, 1, 1); }},
    {"GIF with a canvas of 2^30 pixels for one", [] { return Gif(1 << 15, 1 << 15, 1, 1); }},
    {"GIF with a frame of 65535 squared", [] { return Gif(9, 9, 65535, 65535); }},
    {"GIF without a frame", [] { return Text("GIF89a") + Bytes{9, 0, 9, 0, 0, 0, 0, ';'}; }},
    {"TIFF without tags", [] { return Tiff({}); }},
    {"TIFF whose directory is itself a page of it",
     [] {
       return Tiff({{256, 4, 1, 9}}, 8);
     }},
    {"TIFF of 2^32 - 1 squared", [] { return TiffPage(~0u, ~0u, 8, 1, 64); }},
    {"TIFF of 2^30 pixels in 64 bytes", [] { return TiffPage(1 << 15, 1 << 15, 8, 1, 64); }},
    {"TIFF of 2^30 compressed pixels in 64 bytes",
     [] { return TiffPage(1 << 15, 1 << 15, 8, 5, 64); }},
    {"TIFF whose strip lies beyond the file",
     [] {
       return Tiff({{256, 4, 1, 8},
                    {257, 4, 1, 8},
                    {258, 3, 1, 8},
                    {262, 3, 1, 1},
                    {273, 4, 1, 1 << 30},
                    {279, 4, 1, 64}});
     }},
    {"TIFF of no bits", [] { return TiffPage(8, 8, 0, 1, 64); }},
    {"TIFF of an unknown compression", [] { return TiffPage(8, 8, 8, 4711, 64); }},
    {"TIFF whose tag claims 2^32 - 1 values",
     [] {
       return Tiff({{256, 4, 1, 8}, {257, 4, 1, 8}, {273, 4, ~0u, 8}, {279, 4, ~0u, 8}});
     }},
    {"TIFF whose tiles are 2^31 wide",
     [] {
       return Tiff({{256, 4, 1, 8},
                    {257, 4, 1, 8},
                    {258, 3, 1, 8},
                    {259, 3, 1, 1},
                    {262, 3, 1, 1},
                    {322, 4, 1, 0x80000000},
                    {323, 4, 1, 0x80000000},
                    {324, 4, 1, 8},
                    {325, 4, 1, 64}});
     }},
};

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

class HostileFiles : public testing::Test {
 protected:
  // Its doings must not raise the peak by more than a picture of this size would.
  ~HostileFiles() override { EXPECT_LT(PeakKilobytes() - m_before, 200'000); }

  TemporaryFolder m_folder;
  CodecDriver m_driver;
  const std::string m_file = m_folder.Path("f");
  const long m_before = PeakKilobytes();
};

TEST_F(HostileFiles, AreRefused) {
  for (const auto& [name, make] : kRefused) {
    WriteBytes(m_file, make());
    std::optional<Dib> loaded;
    EXPECT_NE(m_driver.Load(m_file, loaded), CodecStatus::Ok) << name;
    m_driver.Append(m_file, m_folder.Path("new"),
                    Dib::Zeroed({.width = 1, .height = 1, .depth = 24}));
    EXPECT_EQ(m_driver.codecs.Count(), 0) << name;
  }
}

TEST_F(HostileFiles, TextsInAPngFileAreNotUnpacked) {
  const Bytes text = Chunk("zTXt", Text("k\0\0"sv) + Deflated(Bytes(7'000'000)));
  Bytes texts;
  for (int i = 0; i < 60; ++i) texts = texts + text;
  WriteBytes(m_file, Png(1, 1, 8, 2, texts + Chunk("IDAT", Deflated(Bytes(4)))));
  std::optional<Dib> loaded;
  EXPECT_EQ(m_driver.Load(m_file, loaded), CodecStatus::Ok);
}

// A page's tags without the strip's size make it one that must be decoded.
Bytes ThousandPages(bool withSizes) {
  Bytes file = Text("II*\0"sv) + Little(8, 4);
  constexpr std::uint32_t kPages = 1000, kPageSize = 2 + 8 * 12 + 4;
  for (std::uint32_t page = 0; page < kPages; ++page) {
    const std::uint32_t next = page + 1 == kPages ? 0 : 8 + (page + 1) * kPageSize;
    Bytes whole = TiffPage(8, 8, 8, 1, 64, {}, next);
    if (!withSizes) whole[8 + 2 + 7 * 12] = 0x18;  // tag 280, the smallest sample
    file.insert(file.end(), whole.begin() + 8, whole.begin() + 8 + kPageSize);
  }
  return file;
}

TEST_F(HostileFiles, AThousandPagesAreCopiedButNotDecoded) {
  const Dib added = Dib::Zeroed({.width = 1, .height = 1, .depth = 24});
  for (const bool withSizes : {true, false}) {
    const Bytes file = ThousandPages(withSizes);
    WriteBytes(m_file, file);
    std::optional<Dib> loaded;
    EXPECT_EQ(m_driver.Load(m_file, loaded), CodecStatus::Ok);
    const std::string made = m_folder.Path(withSizes ? "copied" : "decoded");
    EXPECT_EQ(m_driver.Append(m_file, made, added),
              withSizes ? CodecStatus::Ok : CodecStatus::GenericError);
    EXPECT_EQ(std::filesystem::exists(made), withSizes);
  }
}

TEST_F(HostileFiles, DirectoriesThatHoldThemselvesAreFollowedOnce) {
  constexpr std::uint32_t kSubdirectories = 330, kExif = 34665;
  WriteBytes(m_file, TiffPage(8, 8, 8, 1, 64, {{kSubdirectories, 4, 1, 8}, {kExif, 4, 1, 8}}));
  std::optional<Dib> loaded;
  EXPECT_EQ(m_driver.Load(m_file, loaded), CodecStatus::Ok);
  const Dib added = Dib::Zeroed({.width = 1, .height = 1, .depth = 24});
  EXPECT_EQ(m_driver.Append(m_file, m_folder.Path("new"), added), CodecStatus::Ok);
}

// Not hostile, only old: nothing says how long the strip is, so it cannot be copied as it stands.
TEST_F(HostileFiles, APageWithoutSizesIsDecodedAndWrittenAnew) {
  constexpr std::uint32_t kTags = 9, kPixels = 8 + 2 + kTags * 12 + 4;
  Bytes file = Tiff({{256, 4, 1, 8},
                     {257, 4, 1, 8},
                     {258, 3, 1, 8},
                     {259, 3, 1, 1},
                     {262, 3, 1, 1},
                     {273, 4, 1, kPixels},
                     {277, 3, 1, 1},
                     {278, 4, 1, 8},
                     {296, 3, 1, 2}});
  ASSERT_EQ(file.size(), kPixels + 64);
  for (std::size_t i = 0; i < 64; ++i) file[kPixels + i] = static_cast<Byte>(i * 3);
  WriteBytes(m_file, file);
  std::optional<Dib> before, after;
  ASSERT_EQ(m_driver.Load(m_file, before), CodecStatus::Ok);
  const Dib added = Dib::Zeroed({.width = 1, .height = 1, .depth = 24});
  for (int page = 1; page <= 2; ++page) {
    ASSERT_EQ(m_driver.Append(m_file, m_file, added), CodecStatus::Ok);
    ASSERT_EQ(m_driver.Load(m_file, after), CodecStatus::Ok);
    ASSERT_EQ(after->Depth(), 8);
    for (Long y = 0; y < 8; ++y) {
      EXPECT_TRUE(std::equal(after->Row(y), after->Row(y) + 8, &file[kPixels] + y * 8)) << y;
    }
    FileSource source(m_file);
    EXPECT_EQ(TIFFNumberOfDirectories(OpenTiff(source).get()), page + 1);
  }
}

}  // namespace
}  // namespace quillet
