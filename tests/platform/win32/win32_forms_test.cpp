#include <gtest/gtest.h>

#include <functional>

#include "embed/stage.h"
#include "platform/win32/sdk.h"
#include "tests/support/print_census.h"
#include "tests/support/thread_queue.h"

namespace quillet {
namespace {

constexpr FormPointer kPointer{.screen = {~0u}, .image = {0xF0}, .hotSpotX = 3, .hotSpotY = 0};

// A link and a button in a window of their own.
class Win32FormsTest : public testing::Test, public FormEvents {
 protected:
  ~Win32FormsTest() override {
    m_window.reset();
    EXPECT_EQ(m_stage->Census(), CensusCounts{});
  }

  Form Form_Load() override {
    Form form{.caption = "A form of a test", .scaleWidth = 3000, .scaleHeight = 1500};
    form.controls = {{.name = "link",
                      .left = 150,
                      .top = 150,
                      .width = 1500,
                      .height = 300,
                      .caption = "here",
                      .color = 0xFF0000u,
                      .pointer = &kPointer},
                     {.kind = FormControl::Kind::Button,
                      .name = "ok",
                      .left = 150,
                      .top = 750,
                      .width = 975,
                      .height = 375,
                      .caption = "OK"}};
    return form;
  }
  void Click(ShownForm& form, const std::string& control) override {
    m_clicked += control + " ";
    if (control == "ok") form.Unload();
  }

  // Shows the form. The actions take their turns while it is open, whenever nothing else is to do;
  // then the person goes.
  void Show(std::vector<std::function<void(HWND)>> actions) {
    std::size_t next = 0;
    m_window->WhileAFormIsOpen([&] {
      if (next == actions.size()) return false;
      actions[next++](::FindWindowW(nullptr, L"A form of a test"));
      return true;
    });
    m_stage->Contracts().forms.Show("test", *this);
    m_window->WhileAFormIsOpen({});
    EXPECT_EQ(next, actions.size());
    EXPECT_EQ(::FindWindowW(nullptr, L"A form of a test"), nullptr);
  }
  // In pixels of the client area.
  static ::POINT OnTheLink() {
    const HDC screen = ::GetDC(nullptr);
    const LONG dpi = ::GetDeviceCaps(screen, LOGPIXELSX);
    ::ReleaseDC(nullptr, screen);
    return {30 * dpi / 96, 20 * dpi / 96};
  }
  static HWND Child(HWND form, const wchar_t* kind) {
    return ::FindWindowExW(form, nullptr, kind, nullptr);
  }
  static void PressKey(HWND form, WPARAM key) {
    const HWND focus = ::GetFocus();
    EXPECT_TRUE(::IsChild(form, focus));
    ::PostMessageW(focus, WM_KEYDOWN, key, 1);
  }

  const std::unique_ptr<Stage> m_stage = MakeStage();
  std::unique_ptr<ControlWindow> m_window = m_stage->OpenWindow(200, 150);
  std::string m_clicked;
};

TEST_F(Win32FormsTest, ALinkHasItsColourAndItsPointer) {
  Show({[&](HWND form) {
    const Snapshot seen = m_window->Capture();
    int blue = 0;
    for (std::size_t i = 0; i + 2 < seen.rgb.size(); i += 3)
      if (seen.rgb[i + 2] > seen.rgb[i] + 100 && seen.rgb[i] == seen.rgb[i + 1]) ++blue;
    EXPECT_GT(blue, 5) << "in " << seen.width << "x" << seen.height;

    const auto pointerAt = [form](::POINT point) {
      ::ClientToScreen(form, &point);
      ::SetCursorPos(point.x, point.y);
      ::SendMessageW(form, WM_SETCURSOR, reinterpret_cast<WPARAM>(form),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
      ICONINFO pointer{};
      EXPECT_TRUE(::GetIconInfo(::GetCursor(), &pointer));
      ::DeleteObject(pointer.hbmMask);
      if (pointer.hbmColor) ::DeleteObject(pointer.hbmColor);
      return pointer;
    };
    EXPECT_EQ(pointerAt(OnTheLink()).xHotspot, 3u);
    EXPECT_NE(pointerAt({1, 1}).xHotspot, 3u);
  }});
}

TEST_F(Win32FormsTest, ClicksAndKeysOfTheSystemReachIt) {
  Show({[](HWND form) {
          const LPARAM point = MAKELPARAM(OnTheLink().x, OnTheLink().y);
          ::PostMessageW(form, WM_LBUTTONDOWN, MK_LBUTTON, point);
          ::PostMessageW(form, WM_LBUTTONUP, 0, point);
        },
        [](HWND form) { PressKey(form, VK_RETURN); }});
  EXPECT_EQ(m_clicked, "link ok ");
  Show({[](HWND form) { PressKey(form, VK_ESCAPE); }});
  Show({[](HWND form) { ::PostMessageW(form, WM_SYSCOMMAND, SC_CLOSE, 0); }});
  Show({[](HWND form) { ::PostMessageW(Child(form, L"BUTTON"), BM_CLICK, 0, 0); }});
  EXPECT_EQ(m_clicked, "link ok ok ");
}

TEST_F(Win32FormsTest, OtherWindowsWaitWhileTheirMessagesGoOn) {
  const auto queue = QueueOf(*m_stage);
  int heard = 0;
  const auto listener = queue->Listen([&](std::uint32_t) { ++heard; });
  const HWND host = ::GetAncestor(
      reinterpret_cast<HWND>(m_window->ControlsSurface()->UserControl().hWnd()), GA_ROOT);
  Show({[&](HWND form) {
          EXPECT_FALSE(::IsWindowEnabled(host));
          EXPECT_TRUE(::IsWindowEnabled(form));
          queue->Post(listener->Window(), ThreadQueue::kFirstHeard);
        },
        [&](HWND) { EXPECT_EQ(heard, 1); }});
  EXPECT_TRUE(::IsWindowEnabled(host));
}

TEST_F(Win32FormsTest, AQuitClosesItAndIsLeftToTheLoopOutside) {
  Show({[](HWND) { ::PostQuitMessage(7); }});
  ::MSG message{};
  ASSERT_TRUE(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 7u);
}

}  // namespace
}  // namespace quillet
