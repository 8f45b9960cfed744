// Measures every operation beside a memcpy of the same page and a peer, in one run.
//
// A round runs the memcpy, ours and the peer one after the other, so that whatever slows the
// machine meets all three, and none finds its pixels in the caches; of each the fastest of all
// rounds counts. Every other round the peer comes before ours: what the one before left in the
// caches, or still to be written to memory, favours neither.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <limits>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "bench/image_files.h"
#include "bench/memory.h"
#include "bench/operation.h"
#include "bench/peer.h"
#include "bench/process.h"
#include "bench/results.h"
#include "bench/scan.h"

namespace quillet::bench {
namespace {

constexpr int kResolutions[] = {300, 600};

constexpr char kHelp[] =
    "usage: quillet_bench [--instructions=scalar|sse2|avx2] [--rounds=N] [--benchmark_...]\n"
    "  --instructions=SET  what the buffer's operations and resampling use (the control picks its\n"
    "                      own); default: the best the processor has\n"
    "  --rounds=N          rounds for each row; default 15\n"
    "  --benchmark_filter=REGEX  only these rows, and of what follows them Memory, Scan, Files;\n"
    "                      other flags of Google Benchmark are understood too\n";

struct Options {
  InstructionSet instructions = BestKernels().set;
  int rounds = 15;
};

const char* NameOf(InstructionSet set) {
  switch (set) {
    case InstructionSet::Scalar:
      return "scalar";
    case InstructionSet::Sse2:
      return "sse2";
    case InstructionSet::Avx2:
      return "avx2";
  }
  return "";
}

std::optional<InstructionSet> SetNamed(std::string_view name) {
  for (const auto set : {InstructionSet::Scalar, InstructionSet::Sse2, InstructionSet::Avx2}) {
    if (name == NameOf(set) && KernelsFor(set)) return set;
  }
  return std::nullopt;
}

// None for an argument that is not understood.
std::optional<Options> Parse(int count, char** arguments) {
  constexpr std::string_view kInstructions = "--instructions=";
  constexpr std::string_view kRounds = "--rounds=";
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument.starts_with(kInstructions)) {
      const auto set = SetNamed(argument.substr(kInstructions.size()));
      if (!set) return std::nullopt;
      options.instructions = *set;
    } else if (argument.starts_with(kRounds)) {
      options.rounds = std::atoi(arguments[i] + kRounds.size());
      if (options.rounds < 1) return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

// The smallest time of many, in seconds.
class Fastest {
 public:
  double Time(const std::function<void()>& action) {
    const double start = ThreadTime();
    action();
    const double taken = ThreadTime() - start;
    m_seconds = std::min(m_seconds, taken);
    return taken;
  }
  double Seconds() const { return m_seconds; }

 private:
  double m_seconds = std::numeric_limits<double>::infinity();
};

void Measure(benchmark::State& state, const Operation& operation, const Page& page) {
  try {
    const Trial trial = operation.make(page);
    Fastest copy, ours, deducted, theirs;
    const auto timeOurs = [&] {
      if (trial.prepare) trial.prepare();
      state.SetIterationTime(ours.Time(trial.run));
      if (trial.deducted) deducted.Time(trial.deducted);
    };
    const auto timeTheirs = [&] {
      if (trial.peer) theirs.Time(trial.peer);
    };
    bool oursFirst = true;
    for (auto _ : state) {
      copy.Time([&] { page.Memcpy(); });
      if (oursFirst) timeOurs();
      timeTheirs();
      if (!oursFirst) timeOurs();
      oursFirst = !oursFirst;
    }
    state.counters[kMemcpyCounter] = copy.Seconds();
    state.counters[kOursCounter] = ours.Seconds() - (trial.deducted ? deducted.Seconds() : 0);
    if (trial.peer) state.counters[kPeerCounter] = theirs.Seconds();
  } catch (const std::exception& error) {
    state.SkipWithError(error.what());
  }
}

std::string Slug(std::string_view name) {
  std::string slug;
  for (const char c : name) slug += c == ' ' ? '_' : c;
  return slug;
}

// Whether the filter of the rows takes in what has no row.
bool IsChosen(const char* name) {
  const std::string filter = benchmark::GetBenchmarkFilter();
  return filter.empty() || filter == "all" || std::regex_search(name, std::regex(filter));
}

void Run(const Options& options) {
  std::printf("instructions: %s; peer: %s; the fastest of %d interleaved rounds\n\n",
              NameOf(options.instructions), peer::Version(), options.rounds);
  Results results;
  {
    const std::span<const Operation> allOperations[] = {GeometryOperations(), ToneOperations(),
                                                        ControlOperations()};
    std::vector<Page> pages;
    for (const int resolution : kResolutions) pages.emplace_back(resolution, options.instructions);
    for (const auto& operations : allOperations) {
      for (const Operation& operation : operations) {
        for (const Page& page : pages) {
          const std::string dpi = std::to_string(page.DotsPerInch());
          const std::string name = Slug(operation.name) + "/" + dpi;
          results.Announce(name, operation, dpi + " dpi");
          benchmark::RegisterBenchmark(
              name.c_str(),
              [&operation, &page](benchmark::State& state) { Measure(state, operation, page); })
              ->Iterations(options.rounds)
              ->UseManualTime();
        }
      }
    }
    benchmark::RunSpecifiedBenchmarks(&results);
    benchmark::ClearRegisteredBenchmarks();
  }
  if (IsChosen("Memory")) MeasureMemory(600, results);
  if (IsChosen("Scan")) MeasureScan(600, options.rounds, results);
  if (IsChosen("Files")) MeasureImageFiles(300, options.rounds, results);
  results.PrintMissed();
  results.PrintTotal();
}

}  // namespace
}  // namespace quillet::bench

int main(int argc, char** argv) {
  using namespace quillet::bench;
  for (int i = 1; i < argc; ++i) {
    if (std::string_view(argv[i]) == "--help") {
      std::fputs(kHelp, stdout);
      return 0;
    }
  }
  benchmark::Initialize(&argc, argv);
  const auto options = Parse(argc, argv);
  if (!options) {
    std::fprintf(stderr, "quillet_bench: an argument is wrong, or not for this processor\n%s",
                 kHelp);
    return 2;
  }
  try {
    Run(*options);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quillet_bench: %s\n", error.what());
    return 1;
  }
  return 0;
}
