#include <gtest/gtest.h>

#include "tests/support/run_command.h"

namespace quillet {
namespace {

TEST(PortableControlFile, AControlInAFileCannotBeHadHere) {
  const std::string reason =
      "run-time error 445: Object doesn't support this action (controls are in files on Windows "
      "only)\n";
  const Outcome file = Quillet({"--ocx", "quillet.ocx", "Quality"});
  EXPECT_EQ(file.err, "quillet: --ocx quillet.ocx: " + reason);
  EXPECT_EQ(file.status, 2);
  const Outcome registered = Quillet({"--registered", "Quality"});
  EXPECT_EQ(registered.err, "quillet: --registered: " + reason);
  EXPECT_EQ(registered.out, "");
}

}  // namespace
}  // namespace quillet
