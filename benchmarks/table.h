// The measured ratios as Markdown tables.
#pragma once

#include <benchmark/benchmark.h>

#include <limits>
#include <map>
#include <string>
#include <vector>

#include "benchmarks/inputs.h"

namespace bench {

/// The name of the counter in which a benchmark reports its peak memory.
inline constexpr const char* kPeak = "peak";

struct Result {
  double seconds = std::numeric_limits<double>::infinity();  ///< CPU time, the median.
  double peakBytes = std::numeric_limits<double>::infinity();
};

/// Collects results by the names of the benchmarks, and prints nothing itself.
class Results : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override;
  /// An infinite result if there is none of that name.
  Result of(const std::string& name) const;

 private:
  struct Repetitions {
    std::vector<double> seconds;
    double peakBytes = std::numeric_limits<double>::infinity();
  };

  std::map<std::string, Repetitions> results_;
};

// Cells and rows of tables. What is not measured is a dash.
std::string rounded(double value);  ///< To three significant digits.
std::string ratio(double value, double yardstick);
std::string duration(double seconds);
void printHead(const std::vector<std::string>& titles);
void printRow(const std::vector<std::string>& cells);

void printTables(const std::vector<Input>& inputs, const Results& results);
/// Prints how the time grows from each input to the next, a double one.
void printGrowth(const std::vector<Input>& inputs, const Results& results);

}  // namespace bench
