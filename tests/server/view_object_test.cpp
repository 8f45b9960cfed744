#include <gtest/gtest.h>

#include "tests/server/container.h"
#include "tests/server/control_library.h"

namespace quillet {
namespace {

// A memory bitmap to draw on, green before.
class Canvas {
 public:
  Canvas(int width, int height) : m_dc(::CreateCompatibleDC(nullptr)) {
    ::BITMAPINFO header{};
    header.bmiHeader = {sizeof header.bmiHeader, width, -height, 1, 32, 0, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    m_bitmap = ::CreateDIBSection(m_dc, &header, DIB_RGB_COLORS, &bits, nullptr, 0);
    m_previous = ::SelectObject(m_dc, m_bitmap);
    const RECT whole{0, 0, width, height};
    ::SetDCBrushColor(m_dc, RGB(0, 255, 0));
    ::FillRect(m_dc, &whole, static_cast<HBRUSH>(::GetStockObject(DC_BRUSH)));
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    ::SelectObject(m_dc, m_previous);
    ::DeleteObject(m_bitmap);
    ::DeleteDC(m_dc);
  }

  HDC get() const { return m_dc; }
  COLORREF At(int x, int y) const { return ::GetPixel(m_dc, x, y); }

 private:
  HDC m_dc;
  HBITMAP m_bitmap = nullptr;
  HGDIOBJ m_previous = nullptr;
};

constexpr COLORREF kUntouched = RGB(0, 255, 0);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kRed = RGB(255, 0, 0);

HRESULT DrawOn(const ComPtr<::_Twain>& control, HDC dc, RECTL bounds) {
  return As<IViewObject2>(control)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc,
                                         &bounds, nullptr, nullptr, 0);
}

class ViewObject : public testing::Test {
 protected:
  // 240 x 240 outside, a picture of 20 x 10 in it, beside it red.
  ViewObject() {
    control->put_BackColor(0xFF);
    control->putref_Picture(BlackPicture(20, 10).get());
  }

  ControlLibrary library;
  ComPtr<::_Twain> control = library.Make();
};

TEST_F(ViewObject, AControlThatIsNotShownIsDrawnInItsPlace) {
  const Canvas canvas(300, 300);
  ASSERT_EQ(DrawOn(control, canvas.get(), {30, 40, 270, 280}), S_OK);
  EXPECT_EQ(canvas.At(29, 40), kUntouched);
  EXPECT_EQ(canvas.At(270, 279), kUntouched);
  EXPECT_NE(canvas.At(30, 40), kUntouched);  // the border
  EXPECT_EQ(canvas.At(32, 42), kBlack);
  EXPECT_EQ(canvas.At(51, 51), kBlack);
  EXPECT_EQ(canvas.At(52, 51), kRed);
  EXPECT_EQ(canvas.At(51, 52), kRed);
  EXPECT_EQ(canvas.At(267, 277), kRed);
}

TEST_F(ViewObject, ItIsScaledToItsBounds) {
  const Canvas canvas(600, 600);
  ASSERT_EQ(DrawOn(control, canvas.get(), {0, 0, 480, 480}), S_OK);
  EXPECT_EQ(canvas.At(42, 22), kBlack);
  EXPECT_EQ(canvas.At(46, 22), kRed);
  EXPECT_EQ(canvas.At(480, 470), kUntouched);
}

TEST_F(ViewObject, AMetafilePlaysWhatWasDrawn) {
  const HDC recording = ::CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  ASSERT_EQ(DrawOn(control, recording, {0, 0, 240, 240}), S_OK);
  const HENHMETAFILE file = ::CloseEnhMetaFile(recording);
  const Canvas canvas(300, 300);
  ENHMETAHEADER header{};
  ::GetEnhMetaFileHeader(file, sizeof header, &header);
  const RECT frame{header.rclBounds.left, header.rclBounds.top, header.rclBounds.right + 1,
                   header.rclBounds.bottom + 1};
  EXPECT_TRUE(::PlayEnhMetaFile(canvas.get(), file, &frame));
  ::DeleteEnhMetaFile(file);
  EXPECT_EQ(canvas.At(10, 6), kBlack);
  EXPECT_EQ(canvas.At(150, 150), kRed);
}

TEST_F(ViewObject, TheBarsAreDrawnAsTheyStand) {
  control->putref_Picture(BlackPicture(500, 500).get());
  const Canvas canvas(240, 240);
  ASSERT_EQ(DrawOn(control, canvas.get(), {0, 0, 240, 240}), S_OK);
  const int bar = ::GetSystemMetrics(SM_CXVSCROLL);
  EXPECT_EQ(canvas.At(237 - bar, 100), kBlack);
  // An arrow's button is of more than one colour, and none of it is the picture's alone.
  int light = 0;
  for (int y = 3; y < bar; ++y) light += canvas.At(238 - bar / 2, y) != kBlack;
  EXPECT_GT(light, bar / 2);
}

TEST_F(ViewObject, AShownControlIsDrawnAlike) {
  Container container(240, 240);
  const Canvas before(240, 240), after(240, 240);
  ASSERT_EQ(DrawOn(control, before.get(), {0, 0, 240, 240}), S_OK);
  container.Show(*As<IOleObject>(control).get());
  ASSERT_EQ(DrawOn(control, after.get(), {0, 0, 240, 240}), S_OK);
  for (int y = 0; y < 240; y += 3)
    for (int x = 0; x < 240; x += 3) ASSERT_EQ(before.At(x, y), after.At(x, y)) << x << ' ' << y;
  As<IOleObject>(control)->SetClientSite(nullptr);
}

TEST_F(ViewObject, WhatCannotBeDrawnIsRefused) {
  const Canvas canvas(10, 10);
  const auto view = As<IViewObject2>(control);
  RECTL bounds{0, 0, 10, 10};
  EXPECT_EQ(view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, canvas.get(), &bounds, nullptr,
                       nullptr, 0),
            DV_E_DVASPECT);
  EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, canvas.get(), nullptr,
                       nullptr, nullptr, 0),
            E_POINTER);
  EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, nullptr, &bounds, nullptr,
                       nullptr, 0),
            E_INVALIDARG);
}

}  // namespace
}  // namespace quillet
