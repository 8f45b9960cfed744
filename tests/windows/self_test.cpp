#include "tests/windows/self_test.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>

#include "tests/windows/measurements.h"
#include "tests/windows/wine.h"

namespace quillet {
namespace {

// A line for each check, and below it why it did not hold.
class Table : public testing::EmptyTestEventListener {
 public:
  explicit Table(std::ostream& out) : m_out(out) {}

  void OnTestEnd(const testing::TestInfo& test) override {
    const testing::TestResult& result = *test.result();
    const char* const verdict = result.Failed() ? "FAILED" : result.Skipped() ? "left out" : "held";
    std::string line = verdict;
    line.resize(10, ' ');
    line += test.test_suite_name();
    line.resize(std::max<std::size_t>(line.size() + 2, 34), ' ');
    m_out << line << test.name() << '\n';
    for (int i = 0; i < result.total_part_count(); ++i) {
      const testing::TestPartResult& part = result.GetTestPartResult(i);
      if (!part.passed()) m_out << "            " << Indented(part) << '\n';
    }
    m_out.flush();
  }

 private:
  static std::string Indented(const testing::TestPartResult& part) {
    std::string text = part.message();
    if (part.file_name() && part.failed()) {
      std::string file = part.file_name();
      file.erase(0, file.find_last_of("/\\") + 1);
      text = file + ":" + std::to_string(part.line_number()) + ": " + text;
    }
    while (text.ends_with('\n')) text.pop_back();
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 13)
      text.insert(at + 1, 12, ' ');
    return text;
  }

  std::ostream& m_out;
};

constexpr const char* kWithAScanner = R"(
With a scanner attached, please run these too; what they print belongs to the report.
  quillet --trace SelectSource                      choose a source that is not the marked one
  quillet --trace Resolution=75 Scan Picture        OPENDS should name the source chosen above
  quillet --trace ShowInterface=True Scan Picture   press Scan in the source's dialog, then once
                                                    more and press Cancel
)";

}  // namespace

int RunSelfTest(std::ostream& out) {
  int count = 1;
  char name[] = "quillet";
  char* arguments[] = {name, nullptr};
  testing::InitGoogleTest(&count, arguments);
  testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
  delete listeners.Release(listeners.default_result_printer());
  listeners.Append(new Table(out));

  out << "quillet --self-test. It takes about a minute. Windows and dialogs open and close by\n"
         "themselves meanwhile: please leave mouse and keyboard alone.\n\n"
      << DescribeSystem() << '\n';
  const int status = RUN_ALL_TESTS();
  const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
  out << '\n'
      << tests.successful_test_count() << " held, " << tests.failed_test_count() << " failed, "
      << tests.skipped_test_count() << " left out\n\nMeasured\n"
      << Measurements();
  if (IsWine())
    out << "\nThis is Wine, where four things cannot be seen: the JPEG quality, GIF files of "
           "other\n"
           "than 8 bits, the system's own resampling filter, and the source that a user chose.\n";
  out << kWithAScanner
      << "\nPlease send this whole text to whoever gave you the program:\n"
         "  quillet --self-test > self-test.txt\n";
  return status;
}

}  // namespace quillet
