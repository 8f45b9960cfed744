#include "platform/portable/portable_codecs.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "platform/portable/codec_format.h"
#include "platform/portable/codec_tiff.h"
#include "platform/portable/transfer.h"
#include "tests/support/codec_driver.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

constexpr IMAGE_TYPE kAll[] = {twBITMAP, twJPEG, twGIF, twTIFF, twPNG};

// Every row ends within a byte, pixels depend on the position.
Dib Picture(int depth, bool gray = false, Long width = 37, Long height = 29) {
  Dib::Format format{.width = width, .height = height, .depth = depth};
  format.xPelsPerMeter = 11811;
  format.yPelsPerMeter = 5906;
  if (depth == 16) format.masks = kMasks16;
  if (depth == 32) format.masks = kMasks32;
  if (depth <= 8) format.palette = GrayPalette(depth);
  if (!gray) {
    for (std::size_t i = 0; i < format.palette.size(); ++i) {
      format.palette[i].red = static_cast<Byte>(255 - i);
    }
  }
  Dib dib = Dib::Zeroed(format);
  for (Long y = 0; y < height; ++y) {
    std::vector<Byte> indexes(static_cast<std::size_t>(width));
    for (Long x = 0; x < width; ++x) {
      const auto value = static_cast<Byte>(x * 7 + y * 3 + x * y);
      indexes[static_cast<std::size_t>(x)] =
          static_cast<Byte>(value & ((1 << std::min(depth, 8)) - 1));
      if (depth < 24) continue;
      Byte* const pixel = dib.WritableRow(y) + x * (depth / 8);
      pixel[0] = static_cast<Byte>(x * 6);
      pixel[1] = static_cast<Byte>(y * 8);
      pixel[2] = value;
    }
    if (depth <= 8) PackIndexes(indexes.data(), width, depth, dib.WritableRow(y));
  }
  return dib;
}

std::vector<Byte> Shown(const Dib& dib) {
  std::vector<Byte> rows(static_cast<std::size_t>(DibStride(dib.Width(), 24) * dib.Height()));
  ReadRows24(dib, dib.Height(), true, rows.data());
  return rows;
}

double MeanDifference(const Dib& a, const Dib& b) {
  const std::vector<Byte> first = Shown(a);
  const std::vector<Byte> second = Shown(b);
  double sum = 0;
  for (std::size_t i = 0; i < first.size(); ++i) sum += std::abs(first[i] - second[i]);
  return sum / static_cast<double>(first.size());
}

std::ptrdiff_t FilesIn(const TemporaryFolder& folder) {
  return std::distance(std::filesystem::directory_iterator(folder.Path("")), {});
}

TEST(Codecs, LosslessFormatsGiveBackPixelsDepthAndResolution) {
  TemporaryFolder folder;
  CodecDriver driver;
  for (const IMAGE_TYPE type : {twBITMAP, twGIF, twTIFF, twPNG}) {
    for (const int depth : {1, 4, 8, 16, 24, 32}) {
      for (const bool gray : {false, true}) {
        if (type == twGIF && depth > 8) continue;
        const Dib dib = Picture(depth, gray);
        ASSERT_EQ(driver.Save(dib, folder.Path("f"), type), CodecStatus::Ok)
            << type << ' ' << depth;
        std::optional<Dib> loaded;
        ASSERT_EQ(driver.Load(folder.Path("f"), loaded), CodecStatus::Ok) << type << ' ' << depth;
        const bool widened = type != twBITMAP && depth > 8;
        EXPECT_EQ(loaded->Depth(), widened ? 24 : depth) << type;
        EXPECT_EQ(Shown(*loaded), Shown(dib)) << type << ' ' << depth << ' ' << gray;
        EXPECT_EQ(loaded->GetFormat().xPelsPerMeter, type == twGIF ? 0 : 11811) << type;
        EXPECT_EQ(loaded->GetFormat().yPelsPerMeter, type == twGIF ? 0 : 5906) << type;
      }
    }
  }
}

TEST(Codecs, JpegKeepsGrayAndResolutionAndBoundsItsQuality) {
  TemporaryFolder folder;
  CodecDriver driver;
  for (const int depth : {1, 8, 24, 32}) {
    const bool gray = depth <= 8;
    const Dib dib = Picture(depth, gray);
    ASSERT_EQ(driver.Save(dib, folder.Path("f"), twJPEG, 100), CodecStatus::Ok);
    std::optional<Dib> loaded;
    ASSERT_EQ(driver.Load(folder.Path("f"), loaded), CodecStatus::Ok);
    EXPECT_EQ(loaded->Depth(), gray ? 8 : 24);
    EXPECT_LT(MeanDifference(*loaded, dib), gray ? 2 : 30);
    EXPECT_EQ(loaded->GetFormat().xPelsPerMeter, 11811);
    EXPECT_EQ(loaded->GetFormat().yPelsPerMeter, 5906);
  }
  const auto bytesAt = [&](Long quality) {
    driver.Save(Picture(24), folder.Path("q"), twJPEG, quality);
    return FileBytes(folder.Path("q"));
  };
  EXPECT_EQ(bytesAt(255), bytesAt(100));
  EXPECT_EQ(bytesAt(0), bytesAt(1));
  EXPECT_LT(bytesAt(44).size(), bytesAt(75).size());
}

TEST(Codecs, GifHoldsUpTo256ColorsExactlyAndLikensMore) {
  TemporaryFolder folder;
  CodecDriver driver;
  Dib few = Picture(24, false, 64, 64);
  Dib many = Picture(24, false, 160, 120);
  for (Long y = 0; y < 64; ++y) {
    for (Long x = 0; x < 64 * 3; ++x)
      few.WritableRow(y)[x] = static_cast<Byte>(x / 12 * 16 + y / 4);
    for (Long x = 0; x < 64; ++x) {
      Byte* const pixel = few.WritableRow(y) + x * 3;
      pixel[0] = static_cast<Byte>(x / 4 * 16);
      pixel[1] = static_cast<Byte>(y / 4 * 16);
      pixel[2] = 9;
    }
  }
  for (Long y = 0; y < 120; ++y) {
    for (Long x = 0; x < 160; ++x) {
      Byte* const pixel = many.WritableRow(y) + x * 3;
      pixel[0] = static_cast<Byte>(x);
      pixel[1] = static_cast<Byte>(y * 2);
      pixel[2] = static_cast<Byte>(x + y / 2);
    }
  }
  std::optional<Dib> loaded;
  ASSERT_EQ(driver.Save(few, folder.Path("f"), twGIF), CodecStatus::Ok);
  ASSERT_EQ(driver.Load(folder.Path("f"), loaded), CodecStatus::Ok);
  EXPECT_EQ(Shown(*loaded), Shown(few));
  ASSERT_EQ(driver.Save(many, folder.Path("f"), twGIF), CodecStatus::Ok);
  ASSERT_EQ(driver.Load(folder.Path("f"), loaded), CodecStatus::Ok);
  EXPECT_LT(MeanDifference(*loaded, many), 6);
}

TEST(Codecs, GifTakesTheFewestBitsForTheColorsThatThereAre) {
  TemporaryFolder folder;
  CodecDriver driver;
  for (const auto& [colors, depth] : {std::pair{1, 1}, {2, 1}, {3, 4}, {16, 4}, {17, 8}}) {
    Dib dib = Dib::Zeroed({.width = 19, .height = 3, .depth = 24});
    for (Long x = 0; x < 19; ++x) dib.WritableRow(1)[x * 3] = static_cast<Byte>(x % colors * 9);
    std::optional<Dib> loaded;
    ASSERT_EQ(driver.Save(dib, folder.Path("f"), twGIF), CodecStatus::Ok);
    ASSERT_EQ(driver.Load(folder.Path("f"), loaded), CodecStatus::Ok);
    EXPECT_EQ(loaded->Depth(), depth) << colors;
    EXPECT_EQ(Shown(*loaded), Shown(dib)) << colors;
  }
}

TEST(Codecs, WhatIsNotOpaqueLiesOverTheBackground) {
  // Made by hand: a GIF canvas of 4 x 3 with a frame of 2 x 1 at (1, 1): red, then transparent.
  const std::vector<Byte> gif{'G', 'I', 'F', '8', '9',  'a',  4, 0, 3, 0,    0x80, 0, 0,    255, 0,
                              0,   1,   2,   3,   0x21, 0xF9, 4, 1, 0, 0,    1,    0, 0x2C, 1,   0,
                              1,   0,   2,   0,   1,    0,    0, 2, 2, 0x44, 0x0A, 0, 0x3B};
  TemporaryFolder folder;
  CodecDriver driver;
  WriteBytes(folder.Path("f"), gif);
  std::optional<Dib> loaded;
  ASSERT_EQ(driver.Load(folder.Path("f"), loaded), CodecStatus::Ok);
  std::vector<Byte> expected(12 * 3);
  expected[12 + 5] = 255;
  EXPECT_EQ(Shown(*loaded), expected);
  ASSERT_EQ(driver.Load(folder.Path("f"), loaded, 0xFF102030), CodecStatus::Ok);
  EXPECT_EQ(Shown(*loaded)[0], 0x30);
  EXPECT_EQ(Shown(*loaded)[12 + 5], 255);
  EXPECT_EQ(Shown(*loaded)[12 + 8], 0x10);
}

TEST(Codecs, PagesAreCopiedAndAddedInOrder) {
  TemporaryFolder folder;
  CodecDriver driver;
  const std::string file = folder.Path("pages.tif");
  ASSERT_EQ(driver.Save(Picture(1, true), file, twTIFF), CodecStatus::Ok);
  std::vector<Byte> before = FileBytes(file);
  const int depths[] = {24, 8, 4, 1};
  for (const int depth : depths) {
    ASSERT_EQ(driver.Append(file, folder.Path("new"), Picture(depth)), CodecStatus::Ok);
    std::filesystem::rename(folder.Path("new"), file);
  }
  FileSource source(file);
  const UniqueTiff tiff = OpenTiff(source);
  ASSERT_EQ(TIFFNumberOfDirectories(tiff.get()), 5);
  for (int page = 0; page < 5; ++page) {
    TIFFSetDirectory(tiff.get(), static_cast<tdir_t>(page));
    const Dib dib = ReadTiffPage(source, TIFFCurrentDirOffset(tiff.get()), {});
    const Dib expected = page == 0 ? Picture(1, true) : Picture(depths[page - 1]);
    EXPECT_EQ(dib.Depth(), expected.Depth()) << page;
    EXPECT_EQ(Shown(dib), Shown(expected)) << page;
    EXPECT_EQ(dib.GetFormat().xPelsPerMeter, 11811) << page;
  }
  // Any other format becomes the first page.
  ASSERT_EQ(driver.Save(Picture(24), folder.Path("p.png"), twPNG), CodecStatus::Ok);
  ASSERT_EQ(driver.Append(folder.Path("p.png"), folder.Path("p.png"), Picture(1)), CodecStatus::Ok);
  FileSource png(folder.Path("p.png"));
  EXPECT_EQ(Shown(ReadTiff(png, {})), Shown(Picture(24)));
  EXPECT_EQ(driver.codecs.Count(), 0);
}

TEST(Codecs, PagesOfEitherByteOrderAndWidthKeepTheirEncodedBytes) {
  TemporaryFolder folder;
  CodecDriver driver;
  for (const char* const mode : {"wl", "wb", "wl8", "wb8"}) {
    {
      ReplacingFile file(folder.Path("f"));
      for (const Dib& dib : {Picture(8), Picture(24)}) {
        const UniqueTiff tiff = OpenTiff(file.Descriptor(), dib.Depth() == 8 ? mode : "a");
        WriteTiffPage(tiff.get(), dib);
      }
      file.Commit();
    }
    ASSERT_EQ(driver.Append(folder.Path("f"), folder.Path("new"), Picture(1)), CodecStatus::Ok)
        << mode;
    FileSource before(folder.Path("f"));
    FileSource after(folder.Path("new"));
    const UniqueTiff old = OpenTiff(before);
    const UniqueTiff made = OpenTiff(after);
    ASSERT_EQ(TIFFNumberOfDirectories(made.get()), 3) << mode;
    EXPECT_EQ(TIFFIsBigEndian(old.get()), TIFFIsBigEndian(made.get()));
    for (int page = 0; page < 2; ++page) {
      TIFFSetDirectory(old.get(), static_cast<tdir_t>(page));
      TIFFSetDirectory(made.get(), static_cast<tdir_t>(page));
      std::vector<Byte> a(static_cast<std::size_t>(TIFFRawStripSize(old.get(), 0)));
      std::vector<Byte> b(static_cast<std::size_t>(TIFFRawStripSize(made.get(), 0)));
      ASSERT_EQ(a.size(), b.size());
      TIFFReadRawStrip(old.get(), 0, a.data(), static_cast<tmsize_t>(a.size()));
      TIFFReadRawStrip(made.get(), 0, b.data(), static_cast<tmsize_t>(b.size()));
      EXPECT_EQ(a, b) << mode << page;
    }
  }
}

TEST(Codecs, AFileCutShortAnywhereIsRefusedOrGivesWhatIsThere) {
  TemporaryFolder folder;
  CodecDriver driver;
  for (const IMAGE_TYPE type : kAll) {
    driver.Save(Picture(24), folder.Path("whole"), type);
    const std::vector<Byte> whole = FileBytes(folder.Path("whole"));
    for (std::size_t size = 0; size < whole.size(); size += 1 + whole.size() / 97) {
      WriteBytes(folder.Path("cut"),
                 {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
      std::optional<Dib> loaded;
      const CodecStatus status = driver.Load(folder.Path("cut"), loaded);
      const bool nearlyWhole = size + 64 >= whole.size();
      EXPECT_TRUE(status != CodecStatus::Ok || nearlyWhole) << type << ' ' << size;
      EXPECT_EQ(driver.codecs.Count(), 0);
    }
  }
}

TEST(Codecs, ADamagedByteNeverHarms) {
  TemporaryFolder folder;
  CodecDriver driver;
  for (const IMAGE_TYPE type : kAll) {
    driver.Save(Picture(8, true), folder.Path("whole"), type);
    const std::vector<Byte> whole = FileBytes(folder.Path("whole"));
    for (std::size_t at = 0; at < whole.size(); at += 1 + whole.size() / 61) {
      for (const Byte value : {Byte{0}, Byte{0xFF}, static_cast<Byte>(whole[at] ^ 0x10)}) {
        std::vector<Byte> damaged = whole;
        damaged[at] = value;
        WriteBytes(folder.Path("damaged"), damaged);
        std::optional<Dib> loaded;
        driver.Load(folder.Path("damaged"), loaded);
        driver.Append(folder.Path("damaged"), folder.Path("new"), Picture(1));
        std::filesystem::remove(folder.Path("new"));
      }
    }
  }
}

TEST(Codecs, PagesThatLoopOrLeaveTheFileAreRefused) {
  TemporaryFolder folder;
  CodecDriver driver;
  driver.Save(Picture(8, true), folder.Path("f"), twTIFF);
  std::vector<Byte> bytes = FileBytes(folder.Path("f"));
  const std::size_t directory = bytes[4] | bytes[5] << 8 | bytes[6] << 16;
  const std::size_t link = directory + 2 + 12u * (bytes[directory] | bytes[directory + 1] << 8);
  for (const Byte next : {bytes[4], Byte{0xF1}}) {
    bytes[link] = next;
    bytes[link + 1] = next == bytes[4] ? bytes[5] : Byte{0xFF};
    bytes[link + 2] = next == bytes[4] ? bytes[6] : Byte{0xFF};
    WriteBytes(folder.Path("f"), bytes);
    EXPECT_EQ(driver.Append(folder.Path("f"), folder.Path("new"), Picture(1)),
              CodecStatus::GenericError);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("new")));
  }
}

TEST(Codecs, AFailedSaveLeavesTheOldFileAndNothingElse) {
  TemporaryFolder folder;
  CodecDriver driver;
  const std::vector<Byte> old{1, 2, 3};
  WriteBytes(folder.Path("old"), old);
  chmod((folder.Path("old")).c_str(), 0440);
  std::filesystem::create_directory(folder.Path("folder"));
  for (const IMAGE_TYPE type : kAll) {
    const Dib dib = Picture(8);
    EXPECT_EQ(driver.Save(dib, folder.Path("old"), type), CodecStatus::AccessDenied);
    EXPECT_EQ(driver.Save(dib, folder.Path("folder"), type), CodecStatus::Win32Error);
    EXPECT_EQ(driver.Save(dib, "", type), CodecStatus::InvalidParameter);
    EXPECT_EQ(driver.Save(dib, folder.Path("none/f"), type), CodecStatus::FileNotFound);
    // No system holds such a file: what is written fails at its end.
    if (type == twGIF) {
      EXPECT_EQ(driver.Save(Picture(1, true, 70000, 1), folder.Path("wide"), type),
                CodecStatus::ValueOverflow);
    }
  }
  EXPECT_EQ(FileBytes(folder.Path("old")), old);
  EXPECT_EQ(FilesIn(folder), 2);

  chmod((folder.Path("old")).c_str(), 0640);
  EXPECT_EQ(driver.Save(Picture(8), folder.Path("old"), twPNG), CodecStatus::Ok);
  EXPECT_EQ(std::filesystem::status(folder.Path("old")).permissions(),
            std::filesystem::perms{0640});
  EXPECT_EQ(driver.Save(Picture(8), folder.Path("Größe 名.png"), twPNG), CodecStatus::Ok);
  std::optional<Dib> loaded;
  EXPECT_EQ(driver.Load(folder.Path("Größe 名.png"), loaded), CodecStatus::Ok);
}

TEST(Codecs, HandlesTokensAndSequencesAreChecked) {
  TemporaryFolder folder;
  CodecDriver driver;
  PortableCodecs& codecs = driver.codecs;
  ImageHandle image{};
  EXPECT_EQ(codecs.GdipCreateBitmapFromHBITMAP(BitmapHandle::None, image),
            CodecStatus::InvalidParameter);
  EXPECT_EQ(codecs.GdipCreateBitmapFromFile(folder.Path("none"), image), CodecStatus::FileNotFound);
  WriteBytes(folder.Path("text"), {'t', 'e', 'x', 't'});
  EXPECT_EQ(codecs.GdipCreateBitmapFromFile(folder.Path("text"), image),
            CodecStatus::UnknownImageFormat);
  EXPECT_EQ(codecs.GdipDisposeImage(ImageHandle{12345}), CodecStatus::InvalidParameter);

  image = driver.ImageOf(Picture(8));
  const char* const flag = "{292266FC-AC40-47BF-8CFC-A85B89A655DE}";
  EXPECT_EQ(codecs.GdipSaveAdd(image, driver.List(flag, 20)), CodecStatus::WrongState);
  EXPECT_EQ(codecs.GdipSaveAddImage(image, image, driver.List(flag, 23)), CodecStatus::WrongState);
  EXPECT_EQ(codecs.GdipSaveImageToFile(image, folder.Path("f"), CLSID{}, driver.List(flag, 18)),
            CodecStatus::UnknownImageFormat);
  EXPECT_EQ(codecs.GdipSaveImageToFile(image, folder.Path("f"), driver.Encoder(twTIFF),
                                       driver.List(flag, 18)),
            CodecStatus::Ok);
  EXPECT_EQ(codecs.GdipDisposeImage(image), CodecStatus::Ok);
  EXPECT_EQ(codecs.GdipDisposeImage(image), CodecStatus::InvalidParameter);
  EXPECT_EQ(FilesIn(folder), 1);

  CLSID id;
  EXPECT_FALSE(codecs.CLSIDFromString("{557cf400-1a04-11D3-9A73-0000f81ef32g}", id));
  EXPECT_FALSE(codecs.CLSIDFromString(nullptr, id));
  PortableCodecs idle(driver.bitmaps);
  EXPECT_EQ(idle.GdipDisposeImage(image), CodecStatus::NotInitialized);
}

}  // namespace
}  // namespace quillet
