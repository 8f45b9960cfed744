#include "platform/win32/win32_platform.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/win32/gdi_handles.h"
#include "platform/win32/text.h"
#include "tests/support/bmp_file.h"
#include "tests/support/error_of.h"
#include "tests/support/pictures.h"
#include "tests/support/print_census.h"
#include "tests/support/temporary_folder.h"

namespace quillet {
namespace {

class Win32Objects : public testing::Test {
 protected:
  ~Win32Objects() override { EXPECT_EQ(m_platform.Census(), CensusCounts{}); }

  Win32Platform m_platform;
  Platform& platform = m_platform.Contracts();
  Win32Pictures& pictures = m_platform.Pictures();
};

TEST_F(Win32Objects, AHostsPictureGoesOutAsTheVeryObjectThatCameIn) {
  ComPtr<::IPictureDisp> hosts = Win32Pictures::ObjectOf(PictureOf(platform, 3, 2, Gradient));
  EXPECT_EQ(m_platform.Census().pictures, 0);
  EXPECT_EQ(m_platform.Census().bitmaps, 1) << "the host's reference keeps it";

  PictureRef picture = pictures.Wrap(hosts.get());
  EXPECT_EQ(picture->Kind(), PictureKind::Bitmap);
  EXPECT_EQ(PixelsOf(platform, picture), RowsOf(3, 2, Gradient));
  ComPtr<::IPicture> otherInterface;
  ASSERT_EQ(hosts->QueryInterface(IID_IPicture, otherInterface.ReceiveVoid()), S_OK);
  EXPECT_TRUE(SameObject(picture, pictures.Wrap(otherInterface.get())));
  EXPECT_FALSE(SameObject(picture, PictureOf(platform, 3, 2, Gradient)));
  EXPECT_EQ(Win32Pictures::ObjectOf(picture).get(), hosts.get());

  hosts = {};
  otherInterface = {};
  EXPECT_EQ(PixelsOf(platform, picture), RowsOf(3, 2, Gradient));
}

TEST_F(Win32Objects, NothingIsNoPictureAndAnotherObjectIsError13) {
  EXPECT_EQ(pictures.Wrap(nullptr), nullptr);
  EXPECT_FALSE(Win32Pictures::ObjectOf(nullptr));
  ComPtr<::IStream> stream;
  ASSERT_EQ(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()), S_OK);
  EXPECT_EQ(ErrorOf([&] { pictures.Wrap(stream.get()); }), ErrorNumber::TypeMismatch);
}

TEST_F(Win32Objects, AMetafilePictureHoldsNoBitmap) {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ENHMETAFILE;
  const HDC recorder = ::CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  ::Rectangle(recorder, 0, 0, 9, 9);
  description.emf.hemf = ::CloseEnhMetaFile(recorder);
  ComPtr<::IPicture> object;
  ASSERT_EQ(::OleCreatePictureIndirect(&description, IID_IPicture, TRUE, object.ReceiveVoid()),
            S_OK);

  const PictureRef picture = pictures.Wrap(object.get());
  EXPECT_EQ(picture->Kind(), PictureKind::Metafile);
  EXPECT_NE(picture->Handle(), BitmapHandle::None);
  BITMAP record{.bmWidth = 77};
  EXPECT_FALSE(platform.bitmaps.GetObjectA(picture->Handle(), record));
  EXPECT_FALSE(platform.bitmaps.DeleteObject(picture->Handle()));
  EXPECT_EQ(pictures.OleCreatePictureIndirect(picture->Handle()), nullptr);
}

TEST_F(Win32Objects, AnIconPictureIsAnIconOfTheSystem) {
  const PictureRef picture = IconPicture(platform);
  ::ICONINFO icon{};
  ASSERT_TRUE(::GetIconInfo(reinterpret_cast<HICON>(picture->Handle()), &icon));
  EXPECT_TRUE(icon.fIcon);
  ::DeleteObject(icon.hbmColor);
  ::DeleteObject(icon.hbmMask);
}

TEST(Win32Platform, PicturesOutliveIt) {
  PictureRef picture;
  {
    Win32Platform platform;
    picture = PictureOf(platform.Contracts(), 3, 2, Gradient);
  }
  Win32Platform other;
  EXPECT_EQ(PixelsOf(other.Contracts(), picture), RowsOf(3, 2, Gradient));
}

TEST_F(Win32Objects, DeviceContextsOfWindowsAreNotTaken) {
  const UniqueBitmap bitmap = MakeBitmap(platform, 2, 2, Gradient);
  const HDC screen = ::GetDC(nullptr);
  const DCHandle dc = ToDCHandle(screen);
  Byte block[16] = {};
  BitmapServices& services = platform.bitmaps;
  EXPECT_EQ(services.SelectObject(dc, bitmap.get()), BitmapHandle::None);
  EXPECT_EQ(services.SetDIBitsToDevice(dc, 2, 2, block, Header24(2, -2)), 0);
  EXPECT_FALSE(services.DeleteDC(dc));
  ::ReleaseDC(nullptr, screen);
}

TEST_F(Win32Objects, ABitmapThatAHostHasSelectedIsReleasedWhenItIsLetGo) {
  UniqueBitmap bitmap = MakeBitmap(platform, 2, 2, Gradient);
  const HDC hosts = ::CreateCompatibleDC(nullptr);
  const HGDIOBJ first = ::SelectObject(hosts, SystemHandle(bitmap.get()));
  const BitmapHandle handle = bitmap.get();
  bitmap.reset();
  ::SelectObject(hosts, first);
  BITMAP record;
  EXPECT_FALSE(platform.bitmaps.GetObjectA(handle, record));
  ::DeleteDC(hosts);
}

TEST_F(Win32Objects, HandlesAreTheSameByWhicheverWayTheyCame) {
  const std::uintptr_t narrow = 0x8A050123u;
  const std::uintptr_t wide = HandleValue(LongToHandle(static_cast<LONG>(0x8A050123u)));
  EXPECT_EQ(HandleValue(reinterpret_cast<HANDLE>(narrow)), wide);
  EXPECT_EQ(HandleValue(reinterpret_cast<HANDLE>(wide)), wide);
}

TEST_F(Win32Objects, FilesThatCannotBeReadAreTold) {
  const TemporaryFolder folder;
  const std::string locked = folder.Write("locked.bmp", std::vector<Byte>(9));
  const HANDLE lock = ::CreateFileW(Utf16(locked).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  const std::string folderItself = folder.Path("");
  const struct {
    std::string name;
    ErrorNumber error;
  } cases[] = {{locked, ErrorNumber::PathFileAccess},
               {"NUL", ErrorNumber::PathFileAccess},
               {folderItself.substr(0, folderItself.size() - 1), ErrorNumber::PathFileAccess},
               {folder.Path("what?.bmp"), ErrorNumber::FileNotFound},
               {std::string("a\0.bmp", 6), ErrorNumber::FileNotFound}};
  for (const auto& [name, error] : cases) {
    EXPECT_EQ(ErrorOf([&] { pictures.LoadPicture(name); }), error) << name;
  }
  ::CloseHandle(lock);
}

}  // namespace
}  // namespace quillet
