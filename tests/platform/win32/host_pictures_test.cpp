#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/win32/gdi_handles.h"
#include "platform/win32/win32_pictures.h"
#include "tests/support/hosted_control.h"

// Picture objects as hosts make them: on bitmaps of every kind, and on what is no bitmap.

namespace quillet {
namespace {

constexpr int kWidth = 37, kHeight = 21;

class MemoryDC {
 public:
  explicit MemoryDC(HBITMAP bitmap)
      : m_dc(::CreateCompatibleDC(nullptr)), m_previous(::SelectObject(m_dc, bitmap)) {}
  MemoryDC(const MemoryDC&) = delete;
  MemoryDC& operator=(const MemoryDC&) = delete;
  ~MemoryDC() {
    ::SelectObject(m_dc, m_previous);
    ::DeleteDC(m_dc);
  }

  HDC Get() const { return m_dc; }
  bool HasSelected() const { return m_previous != nullptr; }

 private:
  HDC m_dc;
  HGDIOBJ m_previous;
};

struct BitmapKind {
  const char* name;
  HBITMAP (*make)();
  PixelFunction shows;
};

HBITMAP DeviceBitmap() {
  const HDC screen = ::GetDC(nullptr);
  const HBITMAP bitmap = ::CreateCompatibleBitmap(screen, kWidth, kHeight);
  ::ReleaseDC(nullptr, screen);
  return bitmap;
}
HBITMAP MonochromeBitmap() {
  return ::CreateBitmap(kWidth, kHeight, 1, 1, nullptr);
}
template <int Depth, int Order>
HBITMAP Section() {
  ::BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = kWidth;
  info.bmiHeader.biHeight = kHeight * Order;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = Depth;
  void* bits = nullptr;
  return ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
}

Pixel Checks(Long x, Long y) {
  return (x * y + x) % 3 ? Pixel{255, 255, 255} : Pixel{0, 0, 0};
}

const std::vector<BitmapKind>& BitmapKinds() {
  static const std::vector<BitmapKind> kinds{
      {"the screen's own", DeviceBitmap, Gradient},
      {"monochrome", MonochromeBitmap, Checks},
      {"24 bits, lowest row first", Section<24, 1>, Gradient},
      {"24 bits, top row first", Section<24, -1>, Gradient},
      {"32 bits, lowest row first", Section<32, 1>, Gradient},
      {"32 bits, top row first", Section<32, -1>, Gradient}};
  return kinds;
}

HBITMAP Drawn(const BitmapKind& kind) {
  const HBITMAP bitmap = kind.make();
  const MemoryDC dc(bitmap);
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) {
      const Pixel pixel = kind.shows(x, y);
      ::SetPixelV(dc.Get(), x, y, RGB(pixel.red, pixel.green, pixel.blue));
    }
  ::GdiFlush();
  return bitmap;
}

// The host's object, which owns what it holds.
ComPtr<::IPicture> ObjectOn(PICTDESC description) {
  description.cbSizeofstruct = sizeof description;
  ComPtr<::IPicture> object;
  ::OleCreatePictureIndirect(&description, IID_IPicture, TRUE, object.ReceiveVoid());
  return object;
}
ComPtr<::IPicture> ObjectOn(HBITMAP bitmap) {
  PICTDESC description{};
  description.picType = PICTYPE_BITMAP;
  description.bmp.hbitmap = bitmap;
  return ObjectOn(description);
}

void PutHosts(HostedControl& hosted, const ComPtr<::IPicture>& object) {
  hosted.PutPicture(dynamic_cast<Win32Pictures&>(hosted.contracts.pictures).Wrap(object.get()));
}

TEST(HostPictures, BitmapsOfEveryKindAreShownCutAndWorkedOnWhileTheHostDrawsOnThemOrNot) {
  for (const BitmapKind& kind : BitmapKinds()) {
    for (const bool selected : {false, true}) {
      SCOPED_TRACE(std::string(kind.name) + (selected ? ", selected" : ""));
      const HBITMAP bitmap = Drawn(kind);
      const auto hosts = std::make_unique<MemoryDC>(selected ? bitmap : nullptr);
      ASSERT_EQ(hosts->HasSelected(), selected);
      const ComPtr<::IPicture> object = ObjectOn(bitmap);
      HostedControl scrolled(30, 17);
      PutHosts(scrolled, object);
      EXPECT_EQ(scrolled.Number("BitmapWidth"), kWidth);
      EXPECT_EQ(scrolled.Number("BitmapHeight"), kHeight);
      scrolled.window->DragThumb(Bar::Horizontal, 11);
      scrolled.window->DragThumb(Bar::Vertical, 13);
      const PixelRows24 part = scrolled.Screen();
      ASSERT_GE(part.width, 1);
      EXPECT_EQ(part, RowsOf(part.width, part.height,
                             [&](Long x, Long y) { return kind.shows(x + 11, y + 13); }));

      HostedControl hosted(60, 50);
      PutHosts(hosted, object);
      EXPECT_EQ(hosted.Screen().At(kWidth - 1, kHeight - 1), kind.shows(kWidth - 1, kHeight - 1));
      EXPECT_EQ(hosted.Screen().At(kWidth, 0), (Pixel{255, 255, 255}));
      hosted.Call("Flip");
      hosted.Call("Crop", Long{3}, Long{2}, Long{11}, Long{7});
      EXPECT_EQ(PixelsOf(hosted.contracts, hosted.Picture()), RowsOf(11, 7, [&](Long x, Long y) {
                  return kind.shows(x + 3, kHeight - 1 - (y + 2));
                }));
    }
  }
}

ComPtr<::IPicture> Metafile() {
  const HDC recorder = ::CreateMetaFileW(nullptr);
  ::Rectangle(recorder, 0, 0, 9, 9);
  PICTDESC description{};
  description.picType = PICTYPE_METAFILE;
  description.wmf.hmeta = ::CloseMetaFile(recorder);
  description.wmf.xExt = description.wmf.yExt = 300;
  return ObjectOn(description);
}
ComPtr<::IPicture> EnhancedMetafile() {
  const HDC recorder = ::CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  ::Rectangle(recorder, 0, 0, 9, 9);
  PICTDESC description{};
  description.picType = PICTYPE_ENHMETAFILE;
  description.emf.hemf = ::CloseEnhMetaFile(recorder);
  return ObjectOn(description);
}
ComPtr<::IPicture> Icon() {
  PICTDESC description{};
  description.picType = PICTYPE_ICON;
  description.icon.hicon = ::CopyIcon(::LoadIconW(nullptr, IDI_APPLICATION));
  return ObjectOn(description);
}
ComPtr<::IPicture> EmptyPicture() {
  PICTDESC description{};
  description.picType = PICTYPE_NONE;
  return ObjectOn(description);
}
ComPtr<::IPicture> BitmapPictureWithoutBitmap() {
  return ObjectOn(HBITMAP{});
}

TEST(HostPictures, WhatIsNoBitmapMeasuresNothingAndComesBackUnchanged) {
  const struct {
    const char* name;
    ComPtr<::IPicture> (*make)();
  } cases[] = {{"metafile", Metafile},
               {"enhanced metafile", EnhancedMetafile},
               {"icon", Icon},
               {"empty", EmptyPicture},
               {"bitmap picture without a bitmap", BitmapPictureWithoutBitmap}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    HostedControl hosted(40, 30);
    hosted.Assign(200, 100);
    const ComPtr<::IPicture> object = c.make();
    ASSERT_TRUE(object);
    PutHosts(hosted, object);
    EXPECT_EQ(hosted.Number("BitmapWidth"), 0);
    const PixelRows24 screen = hosted.Screen();
    EXPECT_EQ(screen, RowsOf(screen.width, screen.height, [](Long, Long) {
                return Pixel{255, 255, 255};
              }));
    const PictureRef picture = hosted.Picture();
    ComPtr<::IUnknown> came, went;
    object->QueryInterface(IID_IUnknown, came.ReceiveVoid());
    Win32Pictures::ObjectOf(picture)->QueryInterface(IID_IUnknown, went.ReceiveVoid());
    EXPECT_EQ(came.get(), went.get());
    for (const char* const method : {"Flip", "Rotate", "Blur", "Invert", "Refresh"})
      hosted.Call(method);
    EXPECT_EQ(hosted.Number("BitmapHeight"), 0);
  }
}

}  // namespace
}  // namespace quillet
