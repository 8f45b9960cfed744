#include "platform/win32/win32_surface.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embed/win32_dialog_user.h"
#include "embed/win32_window.h"
#include "platform/win32/win32_platform.h"
#include "tests/support/error_of.h"
#include "tests/support/pictures.h"
#include "tests/support/recording_surface_events.h"

namespace quillet {
namespace {

using Log = std::vector<std::string>;

class HostsWindow {
 public:
  HostsWindow()
      : m_window(::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 300, 200, nullptr, nullptr,
                                   nullptr, nullptr)) {
    // Without a window manager Wine waits two seconds for the end of a window that was active.
    ::ShowWindow(m_window, SW_SHOWNOACTIVATE);
  }
  HostsWindow(const HostsWindow&) = delete;
  HostsWindow& operator=(const HostsWindow&) = delete;
  ~HostsWindow() { ::DestroyWindow(m_window); }

  HWND Get() const { return m_window; }

 private:
  HWND m_window;
};

TEST(Win32Surface, WorksBeforeAHostTakesItAndAfterOneGivesItBack) {
  Win32Platform platform;
  const auto surface = platform.CreateSurface(100, 80);
  RecordingSurfaceEvents events;
  surface->Connect(&events);
  const DCHandle dc = surface->picTwain().hDC();
  const HWND control = surface->UserControl().Window();
  const auto use = [&] {
    surface->picTwain().Move(0, 0, 750, 600);
    surface->HScroll1().PutValue(5);
    surface->picTwain().Move(0, 0, 1500, 1200);
    surface->HScroll1().PutValue(0);
    return events.Take();
  };
  const Log used{"BoxResize", "H Change", "BoxResize", "H Change"};
  EXPECT_EQ(surface->UserControl().Width(), 100 * 15 + 60);
  EXPECT_FALSE(::IsWindowVisible(control));
  EXPECT_EQ(use(), used);
  {
    const HostsWindow host;
    surface->Site(host.Get(), {10, 20, 210, 120});
    EXPECT_EQ(events.Take(), Log{"Resize"});
    EXPECT_TRUE(::IsWindowVisible(control));
    EXPECT_EQ(surface->UserControl().Width(), 200 * 15);
    surface->picTwain().Refresh();
    EXPECT_EQ(events.Take(), Log{"Paint"});
    surface->Site(host.Get(), {0, 0, 200, 100});
    surface->Unsite();
    EXPECT_EQ(events.Take(), Log{}) << "only its place changed";
  }
  EXPECT_FALSE(::IsWindowVisible(control));
  EXPECT_EQ(use(), used);
  {
    const HostsWindow host;
    surface->Site(host.Get(), {0, 0, 200, 100});
  }
  EXPECT_EQ(platform.Census().windows, 0);
  EXPECT_EQ(ErrorOf([&] { surface->HScroll1().PutValue(9); }), ErrorNumber::InvalidPropertyValue);
  EXPECT_EQ(ErrorOf([&] {
              surface->Site(nullptr, {0, 0, 9, 9});
            }),
            ErrorNumber::InvalidPropertyValue);
  EXPECT_EQ(surface->picTwain().hDC(), dc);
  EXPECT_EQ(events.Take(), Log{});
}

TEST(Win32Surface, GoesBeforeItsHostsWindowWithoutATrace) {
  const HostsWindow host;
  const Win32Platform other;  // its window classes stand beside the first one's
  Win32Platform platform;
  auto surface = platform.CreateSurface(100, 80);
  surface->Site(host.Get(), {0, 0, 104, 84});
  surface->picTwain().PutToolTipText("tip");
  const HWND box = surface->picTwain().Window();
  ::PostMessageW(box, WM_LBUTTONDOWN, MK_LBUTTON, 0);
  surface.reset();
  EXPECT_FALSE(::IsWindow(box));
  EXPECT_EQ(::GetWindow(host.Get(), GW_CHILD), nullptr);
  EXPECT_EQ(platform.Census(), CensusCounts{});
}

TEST(Win32Surface, AClassThatAWindowKeptIsTakenAgain) {
  std::optional<WindowClass> windowClass(std::in_place, L"Quillet.Test", 0u, nullptr);
  const std::wstring name = windowClass->Name();
  const HWND left = ::CreateWindowExW(0, name.c_str(), L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr,
                                      ThisModule(), nullptr);
  windowClass.reset();
  windowClass.emplace(L"Quillet.Test", 0u, nullptr);
  EXPECT_EQ(windowClass->Name(), name) << "as the memory of the first one was free again";
  ::DestroyWindow(left);
}

TEST(Win32Surface, TheSystemsBarShowsEveryRangeFromMinToMax) {
  Win32Platform platform;
  const auto surface = platform.CreateSurface(100, 80);
  Win32ScrollBar& bar = surface->HScroll1();
  const struct {
    Integer min, max, value, largeChange;
    int nMin, nMax, nPos;
  } cases[] = {
      {0, 1000, 30, 100, 0, 1099, 30},
      {-50, 50, -20, 10, -50, 59, -20},
      {0, -1000, -30, 100, -1000, 99, -970},
      {-32768, 32767, 32767, 32767, -32768, 65533, 32767},
      {7, 7, 7, 5, 7, 11, 7},
      {7, 9, 8, 5, 7, 13, 8},
  };
  bar.PutVisible(true);
  for (const auto& c : cases) {
    bar.PutMin(c.min);
    bar.PutMax(c.max);
    bar.PutLargeChange(c.largeChange);
    bar.PutValue(c.value);
    SCROLLINFO shown{};
    shown.cbSize = sizeof(shown);
    shown.fMask = SIF_ALL;
    ASSERT_TRUE(::GetScrollInfo(bar.Window(), SB_CTL, &shown));
    EXPECT_EQ(shown.nMin, c.nMin);
    EXPECT_EQ(shown.nMax, c.nMax);
    EXPECT_EQ(shown.nPos, c.nPos);
    EXPECT_EQ(static_cast<int>(shown.nPage), c.largeChange);
    // A drag tells the position's low word.
    bar.PutValue(c.min);
    ::SendMessageW(bar.Window(), OCM_HSCROLL, MAKEWPARAM(SB_THUMBTRACK, c.nPos), 0);
    EXPECT_EQ(bar.Value(), c.value);
    ::SendMessageW(bar.Window(), OCM_HSCROLL, SB_ENDSCROLL, 0);
  }
}

TEST(Win32Surface, ThePointerOverTheBoxIsTheChosenOne) {
  Win32Platform platform;
  Win32DialogUser user;
  Win32Window window(platform, user, 100, 80);
  PictureBox& box = window.ControlsSurface()->picTwain();
  const HWND boxWindow = reinterpret_cast<HWND>(box.hWnd());
  const auto shown = [&] {
    ::SendMessageW(boxWindow, WM_SETCURSOR, reinterpret_cast<WPARAM>(boxWindow),
                   MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return ::GetCursor();
  };
  const HCURSOR arrow = ::LoadCursorW(nullptr, IDC_ARROW);
  EXPECT_EQ(shown(), arrow);
  box.PutMousePointer(2);
  EXPECT_EQ(shown(), ::LoadCursorW(nullptr, IDC_CROSS));
  box.PutMousePointer(99);
  EXPECT_EQ(shown(), arrow) << "no icon yet";
  const PictureRef icon = IconPicture(platform.Contracts());
  box.PutMouseIcon(icon);
  EXPECT_EQ(shown(), reinterpret_cast<HCURSOR>(icon->Handle()));
  box.PutMouseIcon(PictureOf(platform.Contracts(), 8, 8, Gradient));
  EXPECT_EQ(shown(), arrow) << "a bitmap is no pointer";
}

Pixel PixelAt(const Snapshot& snapshot, int x, int y) {
  const auto at = static_cast<std::size_t>(3 * (y * snapshot.width + x));
  return {snapshot.rgb[at + 2], snapshot.rgb[at + 1], snapshot.rgb[at]};
}

TEST(Win32Surface, PaintsWhateverTheHostDoesToItsBitmapAndContext) {
  Win32Platform platform;
  Win32DialogUser user;
  Win32Window window(platform, user, 100, 80);
  const auto surface = window.ControlsSurface();
  surface->HScroll1().PutVisible(false);
  surface->VScroll1().PutVisible(false);
  PictureBox& box = surface->picTwain();
  box.PutBackColor(0x0000FF);
  const PictureRef picture = PictureOf(platform.Contracts(), 30, 20, Gradient);
  box.PutPicture(picture);

  const HDC own = reinterpret_cast<HDC>(box.hDC());
  ::SetMapMode(own, MM_LOMETRIC);
  ::SetViewportOrgEx(own, 40, 40, nullptr);
  const HDC hosts = ::CreateCompatibleDC(nullptr);
  const HGDIOBJ previous = ::SelectObject(hosts, reinterpret_cast<HBITMAP>(picture->Handle()));
  ASSERT_NE(previous, nullptr);
  const Snapshot snapshot = window.Capture();
  for (const POINT& at : {POINT{0, 0}, POINT{29, 19}, POINT{13, 7}})
    EXPECT_EQ(PixelAt(snapshot, at.x + 2, at.y + 2), Gradient(at.x, at.y)) << at.x;
  for (const POINT& at : {POINT{30, 0}, POINT{0, 20}, POINT{99, 79}})
    EXPECT_EQ(PixelAt(snapshot, at.x + 2, at.y + 2), (Pixel{0, 0, 255})) << at.x;
  EXPECT_EQ(::GetMapMode(own), MM_LOMETRIC) << "what the host set stays";
  ::SelectObject(hosts, previous);
  ::DeleteDC(hosts);

  box.PutPicture(IconPicture(platform.Contracts()));
  EXPECT_EQ(PixelAt(window.Capture(), 2, 2), (Pixel{0, 0, 255})) << "an icon is not shown";
}

}  // namespace
}  // namespace quillet
