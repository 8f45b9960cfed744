#pragma once

#include <atomic>

#define GTEST_HAS_NOTIFICATION_ 1

namespace testing::internal {

// Lets one thread wait for another. GoogleTest's own needs std::mutex and std::condition_variable,
// which compilers with win32 threads have not got; it is used only while a thread starts, so
// spinning is good enough.
class Notification {
 public:
  void Notify() { m_notified = true; }
  void WaitForNotification() const {
    while (!m_notified) __builtin_ia32_pause();
  }

 private:
  std::atomic<bool> m_notified = false;
};

}  // namespace testing::internal
