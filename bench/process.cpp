#include "bench/process.h"

#include <malloc.h>
#include <time.h>

#include <fstream>

namespace quillet::bench {
namespace {

double TimeOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

}  // namespace

double ThreadTime() {
  return TimeOf(CLOCK_THREAD_CPUTIME_ID);
}

double WallTime() {
  return TimeOf(CLOCK_MONOTONIC);
}

double StatusOf(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kilobytes = 0;
    if (word == name + ":" && status >> kilobytes) return 1024 * kilobytes;
  }
  return 0;
}

double Resident() {
  malloc_trim(0);
  return StatusOf("VmRSS");
}

bool ResetPeak() {
  std::ofstream clear("/proc/self/clear_refs");
  clear << "5" << std::flush;
  return clear.good();
}

}  // namespace quillet::bench
