#pragma once

#include <stdexcept>

namespace quillet {

// Something in the command line that cannot be meant; `what()` says what is wrong.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace quillet
