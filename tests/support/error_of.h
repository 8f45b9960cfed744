#pragma once

#include <gtest/gtest.h>

#include "base/runtime_error.h"

namespace quillet {

// The number of the run-time error that the action raises; a test failure when it raises none.
template <typename Action>
ErrorNumber ErrorOf(Action&& action) {
  try {
    action();
  } catch (const RunTimeError& error) {
    return error.Number();
  }
  ADD_FAILURE() << "no run-time error";
  return ErrorNumber{};
}

}  // namespace quillet
