#include "platform/portable/portable_messages.h"

#include <gtest/gtest.h>

#include <vector>

namespace quillet {
namespace {

class PortableMessagesTest : public testing::Test {
 protected:
  WindowHandle Window() { return m_messages.CreateWindowExA("#32770", "", 0, 0, 1, 1); }
  // What GetMessageA answers; the message's number in m_last.
  int Get() {
    MSG message;
    const int answer = m_messages.GetMessageA(message);
    m_last = message.message;
    return answer;
  }

  std::shared_ptr<WindowTable> m_windows = std::make_shared<WindowTable>();
  PortableMessages m_messages{m_windows};
  std::uint32_t m_last = 0;
};

TEST_F(PortableMessagesTest, MessagesComeInOrderThenTheQuitThenNothingEverAgain) {
  const WindowHandle window = Window();
  m_messages.PostQuitMessage(9);
  EXPECT_TRUE(m_messages.PostMessageA(window, 1, 2, -3));
  EXPECT_TRUE(m_messages.PostMessageA(WindowHandle::None, 4, 0, 0));
  MSG message;
  EXPECT_GT(m_messages.GetMessageA(message), 0);
  EXPECT_EQ(message.hwnd, window);
  EXPECT_EQ(message.message, 1u);
  EXPECT_EQ(message.wParam, 2u);
  EXPECT_EQ(message.lParam, -3);
  EXPECT_GT(Get(), 0);
  EXPECT_EQ(m_last, 4u);
  EXPECT_EQ(m_messages.GetMessageA(message), 0);
  EXPECT_EQ(message.wParam, 9u);
  EXPECT_EQ(Get(), -1);
}

TEST_F(PortableMessagesTest, IdleTasksRunInOrderUntilOneOfThemPosts) {
  std::vector<int> ran;
  m_messages.AddIdleTask([&] { ran.push_back(1); });
  int second = 0;
  second = m_messages.AddIdleTask([&] {
    ran.push_back(2);
    m_messages.RemoveIdleTask(second);
    m_messages.PostMessageA(WindowHandle::None, 5, 0, 0);
  });
  m_messages.AddIdleTask([&] { ran.push_back(3); });
  EXPECT_GT(Get(), 0);
  EXPECT_EQ(ran, (std::vector<int>{1, 2}));
  EXPECT_EQ(Get(), -1);
  EXPECT_EQ(ran, (std::vector<int>{1, 2, 1, 3}));
}

TEST_F(PortableMessagesTest, AWindowTakesItsMessagesAndThoseItOwnsWithIt) {
  const WindowHandle owner = Window();
  int dispatched = 0;
  const WindowHandle owned = m_messages.CreateOwnedWindow(owner, [&](const MSG&) { ++dispatched; });
  m_messages.PostMessageA(owned, 1, 0, 0);
  m_messages.PostMessageA(owned, 2, 0, 0);
  MSG message;
  ASSERT_GT(m_messages.GetMessageA(message), 0);
  m_messages.DispatchMessageA(message);
  EXPECT_EQ(dispatched, 1);
  EXPECT_TRUE(m_messages.DestroyWindow(owner));
  EXPECT_FALSE(m_messages.DestroyWindow(owner));
  EXPECT_FALSE(m_messages.IsWindow(owned));
  m_messages.DispatchMessageA(message);  // to nobody
  EXPECT_EQ(dispatched, 1);
  EXPECT_EQ(Get(), -1);
  EXPECT_FALSE(m_messages.PostMessageA(owned, 1, 0, 0));
  EXPECT_EQ(m_messages.CreateOwnedWindow(owner, {}), WindowHandle::None);
  EXPECT_EQ(m_windows->Count(), 0);
}

TEST_F(PortableMessagesTest, AProcedureMayDestroyItsWindow) {
  const WindowHandle owner = Window();
  WindowHandle window = WindowHandle::None;
  window =
      m_messages.CreateOwnedWindow(owner, [&](const MSG&) { m_messages.DestroyWindow(window); });
  MSG message;
  message.hwnd = window;
  m_messages.DispatchMessageA(message);
  EXPECT_FALSE(m_messages.IsWindow(window));
}

}  // namespace
}  // namespace quillet
