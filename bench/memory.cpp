#include "bench/memory.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "bench/hosted_page.h"
#include "bench/process.h"

namespace quillet::bench {
namespace {

// Three pictures while an operation runs, the small one in the view besides; at rest those that are
// alive, and a little for what the allocator and the page size round up.
constexpr double kPeakGoal = 3;
constexpr double kRestGoal = 1.05;

// The part of the page that the view shows is a picture of its own.
constexpr double kViewBytes = 3.0 * 800 * 600;

double BytesOf(HostedPage& host) {
  return 3.0 * host.BitmapWidth() * host.BitmapHeight();
}

struct Step {
  const char* name;
  void (*run)(HostedPage& host);
};

constexpr Step kSteps[] = {
    {"Flip", [](HostedPage& host) { host.Call("Flip"); }},
    {"Reverse", [](HostedPage& host) { host.Call("Reverse"); }},
    {"Rotate", [](HostedPage& host) { host.Call("Rotate"); }},
    {"Crop, half by half",
     [](HostedPage& host) {
       const Long width = host.BitmapWidth() / 2;
       const Long height = host.BitmapHeight() / 2;
       host.Call("Crop", width / 2, height / 2, width, height);
     }},
    {"Resize to half",
     [](HostedPage& host) {
       host.Call("Resize", host.BitmapWidth() / 2, host.BitmapHeight() / 2);
     }},
    {"Resize to double",
     [](HostedPage& host) {
       host.Call("Resize", host.BitmapWidth() * 2, host.BitmapHeight() * 2);
     }},
};

}  // namespace

void MeasureMemory(int dotsPerInch, Results& results) {
  std::printf(
      "\nMemory, %d dpi page, in multiples of the picture (the larger one, where the size"
      " changes)\n",
      dotsPerInch);
  if (!ResetPeak() || StatusOf("VmHWM") == 0) {
    std::printf("  cannot be measured here\n");
    return;
  }
  HostedPage host(0);
  // One picture before the first measurement: what a first use leaves in the heap is not a picture.
  host.PutPage(50);
  host.PutPage(0);
  const double base = Resident();
  std::printf("  %-18s %5s %5s   %5s %5s   %s\n", "operation", "peak", "goal", "rest", "goal",
              "met");
  for (const Step& step : kSteps) {
    host.PutPage(dotsPerInch);
    const double before = BytesOf(host);
    Resident();
    ResetPeak();
    step.run(host);
    const double after = BytesOf(host);
    const double peak = (StatusOf("VmHWM") - base - kViewBytes) / std::max(before, after);
    const double rest = (Resident() - base - kViewBytes) / after;
    const bool peakMet = peak <= kPeakGoal;
    const bool restMet = rest <= kRestGoal;
    std::printf("  %-18s %5.2f %5.2f   %5.2f %5.2f   %s\n", step.name, peak, kPeakGoal, rest,
                kRestGoal, peakMet && restMet ? "yes" : "NO");
    results.Count(peakMet, std::string("peak memory of ") + step.name);
    results.Count(restMet, std::string("memory at rest after ") + step.name);
  }
}

}  // namespace quillet::bench
