#pragma once

#include <functional>
#include <optional>
#include <span>

#include "bench/page.h"

namespace quillet::bench {

// One operation made ready on one page. What the functions need they hold themselves.
struct Trial {
  std::function<void()> prepare = nullptr;   // before each run, not timed
  std::function<void()> run = nullptr;       // what is measured
  std::function<void()> deducted = nullptr;  // timed too, and taken off the run
  std::function<void()> peer = nullptr;      // OpenCV's nearest equivalent
};

// A row of the table. Goals are upper limits: times the memcpy of the page, times the peer, and
// milliseconds.
struct Operation {
  const char* name;
  struct Goals {
    std::optional<double> ofMemcpy{};
    std::optional<double> ofPeer{};
    std::optional<double> milliseconds{};
  } goals;
  Trial (*make)(const Page& page);
};

// To measure more, write another such function and add it to AllOperations in main.cpp.
std::span<const Operation> GeometryOperations();
std::span<const Operation> ToneOperations();
std::span<const Operation> ControlOperations();

}  // namespace quillet::bench
