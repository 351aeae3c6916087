// How a piece of work is measured, and when a parser is asked.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/inputs.h"
#include "benchmarks/memory.h"
#include "benchmarks/table.h"

namespace bench {

using Moments = std::vector<long long>;

template <typename Run>
void addBenchmark(const std::string& name, Run run) {
  benchmark::RegisterBenchmark(name.c_str(), run)->MinTime(0.005);
}

/// Everything that `read` builds is destroyed within the measured time.
template <typename Read>
void measureReading(const std::string& name, Read read) {
  const auto run = [read](benchmark::State& state) {
    for (auto _ : state) {
      auto result = read();
      benchmark::DoNotOptimize(result);
    }
    state.counters[kPeak] = static_cast<double>(peakDuring(read));
  };
  addBenchmark(name, run);
}

/// Opens anew each time: kept files would leave the others a heap in pieces.
template <typename Open>
void measureQueries(const std::string& name, const Moments& moments, Open open) {
  const auto run = [=](benchmark::State& state) {
    const auto ask = open();
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(moments.size()))) {
      for (const long long t : moments) {
        auto answer = ask(t);
        benchmark::DoNotOptimize(answer);
      }
    }
  };
  addBenchmark(name, run);
}

/// No ratio means anything unless both sides do the same.
template <typename Ask, typename Search>
void requireSameAnswers(const Moments& moments, const Ask& ask, const Search& search) {
  for (const long long t : moments) {
    const auto answer = ask(t);
    const auto expected = search(t);
    if (answer.start != expected.start || answer.end != expected.end ||
        answer.text.getData() != expected.text) {
      throw std::runtime_error("the library and the yardstick disagree at " + std::to_string(t));
    }
  }
}

Moments randomMoments(std::size_t count, long long duration);
/// Moments under the names of their orders, random and those of a clock; fewer for the few cues
/// whose copies take long.
std::map<std::string, Moments> momentsOf(const Input& input);

}  // namespace bench
