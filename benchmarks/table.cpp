// Turns results into tables.
#include "benchmarks/table.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace bench {
namespace {

constexpr const char* kNotMeasured = "-";

}  // namespace

std::string rounded(double value) {
  std::ostringstream out;
  out << std::fixed << std::setprecision(value < 10 ? 2 : value < 100 ? 1 : 0) << value;
  return out.str();
}

std::string ratio(double value, double yardstick) {
  const double quotient = value / yardstick;
  return std::isfinite(quotient) && quotient > 0 ? rounded(quotient) : kNotMeasured;
}

std::string duration(double seconds) {
  if (!std::isfinite(seconds)) return kNotMeasured;
  if (seconds < 1e-6) return rounded(seconds * 1e9) + " ns";
  if (seconds < 1e-3) return rounded(seconds * 1e6) + " µs";
  return rounded(seconds * 1e3) + " ms";
}

void printRow(const std::vector<std::string>& cells) {
  for (const std::string& cell : cells) std::cout << "| " << cell << ' ';
  std::cout << "|\n";
}

void printHead(const std::vector<std::string>& titles) {
  std::cout << '\n';
  printRow(titles);
  std::vector<std::string> rule(titles.size(), "---:");
  rule.front() = "---";
  printRow(rule);
}

namespace {

void printOpening(const std::vector<Input>& inputs, const Results& results) {
  printHead({"`Open`", "time", "/ plain loop", "/ one pass", "peak memory / plain loop",
             "UTF-16LE / 8-bit"});
  for (const Input& input : inputs) {
    const Result open = results.of("open/" + input.name);
    const Result plain = results.of("plain/" + input.name);
    printRow({input.title, duration(open.seconds), ratio(open.seconds, plain.seconds),
              ratio(open.seconds, results.of("pass/" + input.name).seconds),
              ratio(open.peakBytes, plain.peakBytes),
              ratio(results.of("open/wide-" + input.name).seconds, open.seconds)});
  }
}

std::string query(const Results& results, const std::string& name) {
  const double seconds = results.of("query/" + name).seconds;
  return ratio(seconds, results.of("search/" + name).seconds) + " (" + duration(seconds) + ")";
}

void printQueries(const std::vector<Input>& inputs, const Results& results) {
  printHead({"Query / binary search (time)", "8-bit, random", "8-bit, 60 Hz", "UTF-16LE, random",
             "UTF-16LE, 60 Hz"});
  for (const Input& input : inputs) {
    printRow({input.title, query(results, input.name + "/random"),
              query(results, input.name + "/clock"),
              query(results, "wide-" + input.name + "/random"),
              query(results, "wide-" + input.name + "/clock")});
  }
}

}  // namespace

void Results::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
    Repetitions& repetitions = results_[run.run_name.function_name];
    repetitions.seconds.push_back(run.cpu_accumulated_time / static_cast<double>(run.iterations));
    const auto peak = run.counters.find(kPeak);
    if (peak != run.counters.end()) repetitions.peakBytes = peak->second;
  }
}

Result Results::of(const std::string& name) const {
  const auto result = results_.find(name);
  if (result == results_.end()) return {};
  std::vector<double> seconds = result->second.seconds;
  std::ranges::sort(seconds);
  return {seconds[seconds.size() / 2], result->second.peakBytes};
}

void printTables(const std::vector<Input>& inputs, const Results& results) {
  printOpening(inputs, results);
  printQueries(inputs, results);
}

void printGrowth(const std::vector<Input>& inputs, const Results& results) {
  printHead({"`Open` of one long event", "time", "/ half as long"});
  double previous = 0;
  for (const Input& input : inputs) {
    const double seconds = results.of("open/" + input.name).seconds;
    printRow({input.title, duration(seconds), ratio(seconds, previous)});
    previous = seconds;
  }
}

}  // namespace bench
