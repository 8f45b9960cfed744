#include <gtest/gtest.h>

#include <cstdio>

#include "platform/win32/sdk.h"

// A dialog or a message loop waits for a person, and nobody is there: a test that takes far too
// long fails by name and ends the run.

namespace quillet {
namespace {

constexpr DWORD kDeadline = 60'000;  // milliseconds; the slowest test takes a few thousand

class Deadline : public testing::EmptyTestEventListener {
 public:
  Deadline() = default;

  void OnTestStart(const testing::TestInfo& test) override {
    if (!::CreateTimerQueueTimer(&m_timer, nullptr, Fail, const_cast<testing::TestInfo*>(&test),
                                 kDeadline, 0, WT_EXECUTEONLYONCE | WT_EXECUTEINTIMERTHREAD))
      ADD_FAILURE() << "no timer for its deadline";
  }
  void OnTestEnd(const testing::TestInfo&) override {
    ::DeleteTimerQueueTimer(nullptr, m_timer, INVALID_HANDLE_VALUE);
  }

 private:
  static void CALLBACK Fail(void* context, BOOLEAN) {
    const auto& test = *static_cast<const testing::TestInfo*>(context);
    std::printf("[  FAILED  ] %s.%s (waits for somebody: over %lu ms)\n", test.test_suite_name(),
                test.name(), kDeadline);
    std::fflush(stdout);
    ::TerminateProcess(::GetCurrentProcess(), 1);
  }

  HANDLE m_timer = nullptr;
};

[[maybe_unused]] const bool listens = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new Deadline);
  return true;
}();

}  // namespace
}  // namespace quillet
