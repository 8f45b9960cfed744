#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "host/command.h"

namespace quillet {

// What a run of the quillet command came to.
struct Outcome {
  int status;
  std::string out, err;
};

inline Outcome Quillet(const std::vector<std::string>& arguments, const std::string& input = "") {
  std::istringstream in(input);
  std::ostringstream out, err;
  const int status = RunCommand(arguments, in, out, err);
  return {status, out.str(), err.str()};
}

}  // namespace quillet
