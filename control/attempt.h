#pragma once

#include <new>

#include "base/runtime_error.h"

namespace quillet {

// Runs a step whose failure must not stop what comes after it.
template <typename Step>
void Attempt(Step&& step) noexcept {
  try {
    step();
  } catch (const RunTimeError&) {
  } catch (const std::bad_alloc&) {
  }
}

}  // namespace quillet
