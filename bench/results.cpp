#include "bench/results.h"

#include <cstdio>

namespace quillet::bench {
namespace {

std::optional<double> CounterOf(const benchmark::BenchmarkReporter::Run& run, const char* name) {
  const auto found = run.counters.find(name);
  if (found == run.counters.end()) return std::nullopt;
  return found->second.value;
}

std::string Number(std::optional<double> value, const char* unit = "") {
  if (!value) return "-";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f%s", *value, unit);
  return text;
}

}  // namespace

void Results::Announce(std::string benchmark, const Operation& operation, std::string page) {
  m_rows.emplace(std::move(benchmark), Row{operation, std::move(page)});
}

bool Results::ReportContext(const Context&) {
  std::printf("%-34s %-7s %9s   %8s %5s   %6s %5s   %s\n", "operation", "page", "ms", "x memcpy",
              "goal", "x peer", "goal", "met");
  return true;
}

std::string Results::Columns(const Row& row, std::optional<double> value,
                             std::optional<double> goal, const char* unit, bool& met) {
  if (value && goal) {
    const bool reached = *value <= *goal;
    met = met && reached;
    Count(reached, std::string(row.operation.name) + ", " + row.page + ": " + Number(value) + unit +
                       ", goal " + Number(goal));
  }
  return Number(goal);
}

void Results::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    const auto found = m_rows.find(run.run_name.function_name);
    if (found == m_rows.end() || run.run_type != Run::RT_Iteration) continue;
    const Row& row = found->second;
    if (run.error_occurred) {
      std::printf("%-34s %-7s failed: %s\n", row.operation.name, row.page.c_str(),
                  run.error_message.c_str());
      continue;
    }
    const auto& goals = row.operation.goals;
    const double ours = CounterOf(run, kOursCounter).value_or(0);
    const auto ratio = [&](const char* counter) -> std::optional<double> {
      const auto other = CounterOf(run, counter);
      return other ? std::optional(ours / *other) : std::nullopt;
    };
    bool met = true;
    const auto ofMemcpy = ratio(kMemcpyCounter);
    const auto ofPeer = ratio(kPeerCounter);
    const std::string memcpyGoal = Columns(row, ofMemcpy, goals.ofMemcpy, " x memcpy", met);
    const std::string peerGoal = Columns(row, ofPeer, goals.ofPeer, " x peer", met);
    Columns(row, 1000 * ours, goals.milliseconds, " ms", met);
    const std::string limit =
        goals.milliseconds ? "  (goal " + Number(goals.milliseconds, " ms)") : "";
    std::printf("%-34s %-7s %9s   %8s %5s   %6s %5s   %s%s\n", row.operation.name, row.page.c_str(),
                Number(1000 * ours).c_str(), Number(ofMemcpy).c_str(), memcpyGoal.c_str(),
                Number(ofPeer).c_str(), peerGoal.c_str(), met ? "yes" : "NO", limit.c_str());
    std::fflush(stdout);
  }
}

void Results::Count(bool met, std::string what) {
  ++m_goals;
  if (!met) m_missed.push_back(std::move(what));
}

void Results::PrintMissed() const {
  std::printf("\nGoals missed:%s\n", m_missed.empty() ? " none" : "");
  for (const std::string& goal : m_missed) std::printf("  %s\n", goal.c_str());
}

void Results::PrintTotal() const {
  const int missed = static_cast<int>(m_missed.size());
  std::printf("\ngoals: %d of %d met\n", m_goals - missed, m_goals);
}

}  // namespace quillet::bench
