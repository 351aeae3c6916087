// Measures opening and queries of the library beside the yardsticks.
//
//   --override-growth  measures also how the removal of override tags grows with the line
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "benchmarks/inputs.h"
#include "benchmarks/memory.h"
#include "benchmarks/table.h"
#include "benchmarks/yardsticks.h"
#include "kssubtitle/kssubtitle.h"

namespace {

using namespace bench;
using Moments = std::vector<long long>;

constexpr std::size_t kQueries = 10'000;

std::unique_ptr<ksSubtitleManager> openFile(const std::string& path) {
  auto manager = std::make_unique<ksSubtitleManager>();
  if (!manager->Open(path.c_str())) throw std::runtime_error("the library refuses " + path);
  return manager;
}

/// What answers the queries of one width: the library, or the yardstick.
template <typename Char>
auto library(const Input& input) {
  if constexpr (std::is_same_v<Char, char>) {
    return [manager = openFile(input.path)](long long t) { return manager->GetSubTitle(t); };
  } else {
    return [manager = openFile(input.widePath)](long long t) { return manager->GetSubTitleU(t); };
  }
}

template <typename Char>
auto search(const Input& input) {
  return [segments = SegmentSearch<Char>(plainLoop(input.path).cues)](long long t) {
    return segments.at(t);
  };
}

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

Moments randomMoments(std::size_t count, long long duration) {
  std::mt19937 random(1);
  std::uniform_int_distribution<long long> distribution(0, duration);
  Moments moments(count);
  for (long long& t : moments) t = distribution(random);
  return moments;
}

/// A clock of 60 Hz.
Moments clockMoments(std::size_t count, long long start) {
  Moments moments;
  for (std::size_t tick = 0; tick < count; ++tick) {
    moments.push_back(start + static_cast<long long>(tick) * 1000 / 60);
  }
  return moments;
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

template <typename Char>
void addQueries(const std::string& name, const Input& input, const Moments& moments) {
  requireSameAnswers(moments, library<Char>(input), search<Char>(input));
  measureQueries("query/" + name, moments, [input] { return library<Char>(input); });
  measureQueries("search/" + name, moments, [input] { return search<Char>(input); });
}

void addOpening(const Input& input) {
  measureReading("open/" + input.name, [path = input.path] { return openFile(path); });
}

/// Moments under the names of their orders; fewer for the few cues whose copies take long.
std::map<std::string, Moments> momentsOf(const Input& input) {
  const PlainFile plain = plainLoop(input.path);
  if (onePass(input.path).cues.size() != plain.cues.size()) {
    throw std::runtime_error("the yardsticks disagree on " + input.path);
  }
  const std::size_t count = std::min(kQueries, plain.cues.size() * 20);
  const auto middle = std::next(plain.cues.begin(), static_cast<long>(plain.cues.size() / 2));
  return {{"/random", randomMoments(count, openFile(input.path)->DurationTime())},
          {"/clock", clockMoments(count, middle->second.start)}};
}

void addAll(const Input& input) {
  addOpening(input);
  measureReading("open/wide-" + input.name, [path = input.widePath] { return openFile(path); });
  measureReading("plain/" + input.name, [path = input.path] { return plainLoop(path); });
  measureReading("pass/" + input.name, [path = input.path] { return onePass(path); });
  for (const auto& [order, moments] : momentsOf(input)) {
    addQueries<char>(input.name + order, input, moments);
    addQueries<wchar_t>("wide-" + input.name + order, input, moments);
  }
}

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

/// Texts of `{}` pairs, then of many `{` before one `}`, each twice as long as the one before.
std::vector<std::vector<Input>> writeOverrideTexts() {
  std::vector<std::vector<Input>> series(2);
  for (const int count : {125'000, 250'000, 500'000}) {
    const std::string number = std::to_string(count);
    series[0].push_back(writeEvent(number + " {}", repeated("{}", count)));
    series[1].push_back(writeEvent(number + " { and one }", repeated("{", count) + "}"));
  }
  return series;
}

void run(bool withGrowth) {
  const std::vector<Input> inputs = writeInputs();
  for (const Input& input : inputs) addAll(input);
  std::vector<std::vector<Input>> growth;
  if (withGrowth) growth = writeOverrideTexts();
  for (const auto& series : growth) {
    for (const Input& input : series) addOpening(input);
  }
  Results results;
  benchmark::RunSpecifiedBenchmarks(&results);
  printTables(inputs, results);
  for (const auto& series : growth) printGrowth(series, results);
}

/// Lets the C library keep freed memory: otherwise the cost of a reading depends on what was freed
/// before it.
void keepHeap() {
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, -1);
}

}  // namespace

int main(int argc, char** argv) try {
  keepHeap();
  benchmark::Initialize(&argc, argv);
  const bool withGrowth = argc == 2 && std::strcmp(argv[1], "--override-growth") == 0;
  if (!withGrowth && benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  run(withGrowth);
  return 0;
} catch (const std::exception& error) {
  std::cerr << "kssubtitle_benchmarks: " << error.what() << '\n';
  return 1;
}
