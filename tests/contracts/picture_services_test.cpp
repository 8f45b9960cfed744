#include "platform/contracts/picture_services.h"

#include <gtest/gtest.h>

#include "embed/stage.h"
#include "tests/support/bmp_file.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_platform.h"
#include "tests/support/pictures.h"
#include "tests/support/print_census.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

class PictureServicesContract : public testing::Test {
 protected:
  ~PictureServicesContract() override { EXPECT_EQ(m_platform->Census(), CensusCounts{}); }

  std::unique_ptr<Stage> m_platform = MakeStage();
  Platform& platform = m_platform->Contracts();
  PictureServices& services = platform.pictures;
};

TEST_F(PictureServicesContract, AnEmptyPictureHoldsNothing) {
  const PictureRef picture = services.EmptyPicture();
  EXPECT_EQ(picture->Kind(), PictureKind::None);
  EXPECT_EQ(picture->Handle(), BitmapHandle::None);
  EXPECT_FALSE(SameObject(picture, services.EmptyPicture()));
}

TEST_F(PictureServicesContract, ABitmapGoesWithTheLastReferenceToItsPicture) {
  UniqueBitmap bitmap = MakeBitmap(platform, 3, 2, Gradient);
  PictureRef picture = services.OleCreatePictureIndirect(bitmap.get());
  ASSERT_TRUE(picture);
  const BitmapHandle handle = bitmap.release();
  EXPECT_EQ(picture->Kind(), PictureKind::Bitmap);
  EXPECT_EQ(picture->Handle(), handle);
  PictureRef second = picture;
  picture.reset();
  EXPECT_EQ(PixelsOf(platform, second), RowsOf(3, 2, Gradient));
  second.reset();
  BITMAP record;
  EXPECT_FALSE(platform.bitmaps.GetObjectA(handle, record));
}

TEST_F(PictureServicesContract, ABitmapMayBeSelectedWhenItBecomesAPicture) {
  PictureRef picture;
  {
    UniqueBitmap bitmap = MakeBitmap(platform, 3, 2, Gradient);
    const UniqueDC dc(platform.bitmaps);
    const SelectGuard selected(platform.bitmaps, dc.get(), bitmap.get());
    picture = services.OleCreatePictureIndirect(bitmap.get());
    static_cast<void>(bitmap.release());
  }
  EXPECT_EQ(PixelsOf(platform, picture), RowsOf(3, 2, Gradient));
}

TEST_F(PictureServicesContract, FilesThatAreNoPicturesAreTold) {
  const TemporaryFolder folder;
  const BmpFile bmp{.width = 8, .height = 8, .pixels = std::vector<Byte>(8 * 24)};
  std::vector<Byte> cut = bmp.Bytes();
  cut.resize(cut.size() - 4);
  const struct {
    std::string path;
    ErrorNumber error;
  } cases[] = {
      {folder.Path("missing.bmp"), ErrorNumber::FileNotFound},
      {"", ErrorNumber::FileNotFound},
      {folder.Path("no/such/folder.bmp"), ErrorNumber::PathNotFound},
      {folder.Path(""), ErrorNumber::PathFileAccess},
      {folder.Write("empty.bmp", {}), ErrorNumber::InvalidPicture},
      {folder.Write("text.bmp", std::vector<Byte>(100, 'x')), ErrorNumber::InvalidPicture},
      {folder.Write("cut.bmp", cut), ErrorNumber::InvalidPicture},
  };
  for (const auto& [path, error] : cases) {
    EXPECT_EQ(ErrorOf([&] { services.LoadPicture(path); }), error) << path;
  }
}

TEST_F(PictureServicesContract, FilesMayHaveNamesInAnyScript) {
  const TemporaryFolder folder;
  BmpFile bmp{.width = 2, .height = -1};
  bmp.PackPixels([](Long x, Long) { return x ? 0x102030u : 0u; });
  const std::string name = "\xC3\x84rger \xE7\x94\xBB\xE5\x83\x8F.bmp";
  EXPECT_EQ(PixelsOf(platform, services.LoadPicture(folder.Write(name, bmp.Bytes()))).At(1, 0),
            (Pixel{0x30, 0x20, 0x10}));
}

TEST_F(PictureServicesContract, CompressedAndMaskedFilesAreRead) {
  const TemporaryFolder folder;
  const BmpFile compressed{.width = 4,
                           .height = 2,
                           .depth = 8,
                           .compression = 1,
                           .palette = {{0, 0, 0}, {1, 2, 3}},
                           .pixels = {4, 1, 0, 0, 2, 0, 2, 1, 0, 1}};
  EXPECT_EQ(PixelsOf(platform, services.LoadPicture(folder.Write("rle", compressed.Bytes()))),
            RowsOf(4, 2, [](Long x, Long y) {
              return x > 1 || y ? Pixel{1, 2, 3} : Pixel{};
            }));
  for (const int depth : {16, 32}) {
    BmpFile masked{.width = 3, .height = 2, .depth = depth, .compression = 3};
    masked.masks = {0x1F, 0x3E0, 0x7C00};
    masked.PackPixels([](Long x, Long) { return x == 0 ? 0x1Fu : x == 1 ? 0x3E0u : 0x7C00u; });
    EXPECT_EQ(
        PixelsOf(platform, services.LoadPicture(folder.Write("masked", masked.Bytes()))),
        RowsOf(3, 2,
               [](Long x, Long) {
                 return x == 0 ? Pixel{0, 0, 255} : x == 1 ? Pixel{0, 255, 0} : Pixel{255, 0, 0};
               }))
        << depth;
  }
}

TEST_F(PictureServicesContract, FilesGiveBitmapsOfTheirOwnDepthAndIcons) {
  const std::vector<Pixel> palette{{0, 0, 0}, {10, 20, 30}, {255, 255, 255}};
  for (const int depth : {4, 8}) {
    const PictureRef picture = PalettePicture(platform, depth, palette, 7, 3, [](Long x, Long y) {
      return static_cast<Byte>((x + y) % 4);
    });
    ASSERT_EQ(picture->Kind(), PictureKind::Bitmap);
    BITMAP record;
    ASSERT_TRUE(platform.bitmaps.GetObjectA(picture->Handle(), record));
    EXPECT_EQ(record.bmBitsPixel, depth);
    EXPECT_EQ(PixelsOf(platform, picture), RowsOf(7, 3, [&](Long x, Long y) {
                const std::size_t index = static_cast<std::size_t>((x + y) % 4);
                return index < palette.size() ? palette[index] : Pixel{};
              }));
  }
  const PictureRef icon = IconPicture(platform);
  EXPECT_EQ(icon->Kind(), PictureKind::Icon);
  EXPECT_NE(icon->Handle(), BitmapHandle::None);
  EXPECT_EQ(PixelsOf(platform, icon).width, 0);
}

TEST_F(PictureServicesContract, ABitmapStaysTheCallersWhenItsPictureCannotBeMade) {
  EXPECT_FALSE(services.OleCreatePictureIndirect(BitmapHandle::None));
  FaultyPlatform faulty(platform);
  PictureOf(faulty.Contracts(), 3, 2, Gradient);
  const int calls = faulty.Calls();
  ASSERT_GE(calls, 3);
  for (int call = 1; call <= calls; ++call) {
    faulty.FailCall(call);
    PictureOf(faulty.Contracts(), 3, 2, Gradient);
    EXPECT_TRUE(faulty.HasFailed());
    EXPECT_EQ(m_platform->Census(), CensusCounts{}) << call;
  }
}

}  // namespace
}  // namespace quillet
