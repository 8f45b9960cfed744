#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "base/types.h"
#include "embed/stage.h"
#include "host/text.h"
#include "imagefile/cGDI.h"
#include "tests/contracts/platform_traits.h"
#include "tests/support/pictures.h"
#include "tests/support/print_census.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/tiff_pages.h"

namespace quillet {
namespace {

constexpr IMAGE_TYPE kAll[] = {twBITMAP, twJPEG, twGIF, twTIFF, twPNG};

// The platform's codecs, by the calls that the control makes.
class CodecsContract : public testing::Test {
 protected:
  ~CodecsContract() override { EXPECT_EQ(m_stage->Census(), CensusCounts{}); }

  Long Save(const PictureRef& picture, const std::string& name, Long type, Byte quality = 75) {
    cGDI gdi(m_platform);
    gdi.PutBitmapPicture(picture);
    return gdi.SaveImage(name, type, quality, 0);
  }
  Long Append(const PictureRef& picture, const std::string& name) {
    cGDI gdi(m_platform);
    gdi.PutBitmapPicture(picture);
    return gdi.SaveAddImage(name);
  }
  PictureRef Load(const std::string& name) { return cGDI(m_platform).LoadImage(name); }
  PixelRows24 Pixels(const PictureRef& picture) { return PixelsOf(m_platform, picture); }
  int DepthOf(const PictureRef& picture) {
    BITMAP record;
    return m_platform.bitmaps.GetObjectA(picture->Handle(), record) ? record.bmBitsPixel : 0;
  }

  static std::vector<Byte> Content(const std::string& name) {
    std::ifstream file(PathOf(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::ptrdiff_t FilesThere() const {
    return std::distance(std::filesystem::directory_iterator(PathOf(m_folder.Path(""))), {});
  }

  // Every row ends within a byte; every index of the palette appears in it.
  PictureRef Indexed(int depth) {
    std::vector<Pixel> palette(std::size_t{1} << depth);
    for (std::size_t i = 0; i < palette.size(); ++i)
      palette[i] = {static_cast<Byte>(i), static_cast<Byte>(255 - i), static_cast<Byte>(7 * i)};
    return PalettePicture(m_platform, depth, palette, 37, 29, [depth](Long x, Long y) {
      return static_cast<Byte>((x * 7 + y * 3 + x * y) & ((1 << depth) - 1));
    });
  }
  PictureRef Colored(Long width = 37, Long height = 29) {
    return PictureOf(m_platform, width, height, Gradient);
  }
  // What a photograph has: soft changes only.
  PictureRef Soft() {
    return PictureOf(m_platform, 64, 48, [](Long x, Long y) {
      return Pixel{static_cast<Byte>(3 * x), static_cast<Byte>(4 * y), static_cast<Byte>(x + y)};
    });
  }
  double MeanDifference(const PictureRef& a, const PictureRef& b) {
    const PixelRows24 first = Pixels(a), second = Pixels(b);
    if (first.bytes.size() != second.bytes.size()) return 255;
    double sum = 0;
    for (std::size_t i = 0; i < first.bytes.size(); ++i)
      sum += std::abs(first.bytes[i] - second.bytes[i]);
    return sum / static_cast<double>(first.bytes.size());
  }

  const std::unique_ptr<Stage> m_stage = MakeStage();
  Platform& m_platform = m_stage->Contracts();
  const PlatformTraits m_traits = TraitsOfPlatform();
  TemporaryFolder m_folder;
  const std::string m_file = m_folder.Path("file");
};

TEST_F(CodecsContract, LosslessFormatsGiveBackEveryPixel) {
  for (const IMAGE_TYPE type : {twBITMAP, twGIF, twTIFF, twPNG}) {
    for (const int depth : {1, 4, 8, 24}) {
      SCOPED_TRACE(testing::Message() << "type " << type << " depth " << depth);
      if (type == twGIF && depth != 8) continue;
      const PictureRef picture = depth == 24 ? Colored() : Indexed(depth);
      ASSERT_EQ(Save(picture, m_file, type), 0);
      const PictureRef loaded = Load(m_file);
      ASSERT_TRUE(loaded);
      EXPECT_EQ(Pixels(loaded), Pixels(picture));
      EXPECT_EQ(DepthOf(loaded), m_traits.depthOfLoaded == 0 ? depth : m_traits.depthOfLoaded);
    }
  }
}

TEST_F(CodecsContract, TheTypeAloneSaysTheFormat) {
  const struct {
    Long type;
    std::string start;
  } cases[] = {{twBITMAP, "BM"}, {twJPEG, "\xFF\xD8\xFF"}, {twGIF, "GIF8"},
               {twTIFF, "II*"},  {twPNG, "\x89PNG"},       {99, "BM"},
               {-1, "BM"}};
  for (const auto& [type, start] : cases) {
    ASSERT_EQ(Save(Indexed(8), m_folder.Path("name.png"), type), 0);
    const std::vector<Byte> content = Content(m_folder.Path("name.png"));
    EXPECT_EQ(std::string(content.begin(), content.begin() + static_cast<int>(start.size())), start)
        << type;
  }
}

TEST_F(CodecsContract, JpegComesClose) {
  ASSERT_EQ(Save(Soft(), m_file, twJPEG, 100), 0);
  EXPECT_LT(MeanDifference(Load(m_file), Soft()), 6);
  ASSERT_EQ(Save(Soft(), m_file, twJPEG, 10), 0);
  EXPECT_LT(MeanDifference(Load(m_file), Soft()), 30);
}

TEST_F(CodecsContract, JpegHeedsTheQuality) {
  if (!m_traits.jpegHeedsQuality) GTEST_SKIP() << "this system has one quality";
  std::size_t before = 0;
  for (const Byte quality : {Byte{10}, Byte{75}, Byte{100}}) {
    ASSERT_EQ(Save(Soft(), m_file, twJPEG, quality), 0);
    EXPECT_GT(Content(m_file).size(), before) << int{quality};
    before = Content(m_file).size();
  }
}

TEST_F(CodecsContract, GifTakesEveryDepth) {
  if (!m_traits.gifTakesEveryDepth)
    GTEST_SKIP() << "this system refuses 1 and 4 bits, and 24 "
                    "bits become a broken file";
  for (const int depth : {1, 4}) {
    ASSERT_EQ(Save(Indexed(depth), m_file, twGIF), 0);
    EXPECT_EQ(Pixels(Load(m_file)), Pixels(Indexed(depth))) << depth;
  }
  ASSERT_EQ(Save(Soft(), m_file, twGIF), 0);
  EXPECT_LT(MeanDifference(Load(m_file), Soft()), 30);
}

TEST_F(CodecsContract, PagesAreAddedInOrderAndNoneIsLost) {
  std::vector<PictureRef> pictures{Colored()};
  ASSERT_EQ(Save(pictures[0], m_file, twTIFF), 0);
  for (const int depth : {24, 8, 1, 4}) {
    pictures.push_back(depth == 24 ? Colored(50, 11) : Indexed(depth));
    ASSERT_EQ(Append(pictures.back(), m_file), 0);
    const auto pages = PagesOfTiff(Content(m_file));
    ASSERT_EQ(pages.size(), pictures.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
      const PictureRef page = Load(m_folder.Write("page", pages[i]));
      ASSERT_TRUE(page) << i;
      EXPECT_EQ(Pixels(page), Pixels(pictures[i])) << "page " << i << " of " << pages.size();
    }
    std::filesystem::remove(m_folder.Path("page"));
  }
  EXPECT_EQ(FilesThere(), 1);
}

TEST_F(CodecsContract, AnyFormatBecomesTheFirstPage) {
  for (const IMAGE_TYPE type : {twBITMAP, twGIF, twPNG}) {
    ASSERT_EQ(Save(Indexed(8), m_file, type), 0);
    ASSERT_EQ(Append(Colored(), m_file), 0) << type;
    const auto pages = PagesOfTiff(Content(m_file));
    ASSERT_EQ(pages.size(), 2u) << type;
    EXPECT_EQ(Pixels(Load(m_folder.Write("page", pages[0]))), Pixels(Indexed(8))) << type;
    EXPECT_EQ(Pixels(Load(m_folder.Write("page", pages[1]))), Pixels(Colored())) << type;
  }
}

TEST_F(CodecsContract, WhatFailsLeavesTheOldFileAndNothingElse) {
  const std::vector<Byte> old{1, 2, 3};
  m_folder.Write("file", old);
  std::filesystem::create_directory(m_folder.Path("folder"));
  using std::filesystem::perms;
  std::filesystem::permissions(m_file, perms::owner_read);
  for (const IMAGE_TYPE type : kAll) {
    EXPECT_EQ(Save(Indexed(8), m_file, type), 12) << "access denied";
    EXPECT_NE(Save(Indexed(8), m_folder.Path("folder"), type), 0);
    EXPECT_NE(Save(Indexed(8), m_folder.Path("none/file"), type), 0);
    EXPECT_NE(Save(Indexed(8), "", type), 0);
    EXPECT_EQ(Save(nullptr, m_folder.Path("new"), type), 2) << "invalid parameter";
  }
  std::filesystem::permissions(m_file, perms::owner_read | perms::owner_write);
  EXPECT_EQ(Save(nullptr, m_file, twPNG), 2);
  EXPECT_NE(Append(Indexed(8), m_file), 0) << "not an image";
  EXPECT_NE(Append(Indexed(8), m_folder.Path("none")), 0);
  EXPECT_EQ(Content(m_file), old);
  EXPECT_EQ(FilesThere(), 2);
  ASSERT_EQ(Save(Indexed(8), m_file, twTIFF), 0);
  const std::vector<Byte> tiff = Content(m_file);
  EXPECT_NE(Append(nullptr, m_file), 0);
  EXPECT_EQ(Content(m_file), tiff);
}

TEST_F(CodecsContract, WhatIsNoImageIsNoPicture) {
  EXPECT_FALSE(Load(m_folder.Path("none")));
  EXPECT_FALSE(Load(m_folder.Path("none/file")));
  EXPECT_FALSE(Load(m_folder.Path("")));
  EXPECT_FALSE(Load(""));
  EXPECT_FALSE(Load(m_folder.Write("empty", {})));
  EXPECT_FALSE(Load(m_folder.Write("text", std::vector<Byte>{'t', 'e', 'x', 't'})));
}

TEST_F(CodecsContract, NamesAreOfAnyScript) {
  const std::string name = m_folder.Path("Gr\u00F6\u00DFe \u540D.tif");
  ASSERT_EQ(Save(Indexed(8), name, twTIFF), 0);
  ASSERT_EQ(Append(Colored(), name), 0);
  EXPECT_EQ(Pixels(Load(name)), Pixels(Indexed(8)));
  EXPECT_EQ(PagesOfTiff(Content(name)).size(), 2u);
}

TEST_F(CodecsContract, AFileIsSavedOverWhileAnImageOfItIsAliveOrKeepsItsContent) {
  ASSERT_EQ(Save(Indexed(8), m_file, twPNG), 0);
  const std::vector<Byte> old = Content(m_file);
  CodecLibrary& codecs = m_platform.codecs;
  std::uintptr_t token = 0;
  ASSERT_EQ(codecs.GdiplusStartup(token), CodecStatus::Ok);
  ImageHandle image{};
  ASSERT_EQ(codecs.GdipCreateBitmapFromFile(m_file, image), CodecStatus::Ok);
  if (Save(Colored(), m_file, twPNG) != 0) {
    EXPECT_EQ(Content(m_file), old);
  }
  EXPECT_EQ(codecs.GdipDisposeImage(image), CodecStatus::Ok);
  codecs.GdiplusShutdown(token);

  const PictureRef loaded = Load(m_file);
  EXPECT_EQ(Save(loaded, m_file, twPNG), 0) << "a picture keeps no file open";
  EXPECT_EQ(Append(loaded, m_file), 0);
  EXPECT_EQ(FilesThere(), 1);
}

}  // namespace
}  // namespace quillet
