#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bench/operation.h"

namespace quillet::bench {

// Prints a row of the table for each benchmark as it ends, and keeps count of the goals.
class Results : public benchmark::BenchmarkReporter {
 public:
  // Which operation and page a benchmark of that name measures.
  void Announce(std::string benchmark, const Operation& operation, std::string page);

  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;

  // A goal outside the table; `what` says both in words.
  void Count(bool met, std::string what);
  // The goals missed, a line each, and the total.
  void PrintMissed() const;
  void PrintTotal() const;

 private:
  struct Row {
    Operation operation;
    std::string page;
  };

  // The two columns of one goal.
  std::string Columns(const Row& row, std::optional<double> value, std::optional<double> goal,
                      const char* unit, bool& met);

  std::map<std::string, Row> m_rows;
  std::vector<std::string> m_missed;
  int m_goals = 0;
};

// Names of the counters that a benchmark hands to Results: seconds, the smallest of all rounds.
inline constexpr char kOursCounter[] = "ours";
inline constexpr char kMemcpyCounter[] = "memcpy";
inline constexpr char kPeerCounter[] = "peer";

}  // namespace quillet::bench
