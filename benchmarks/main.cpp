// Measures opening and queries of the libraries beside the yardsticks.
//
//   --override-growth  measures also how the removal of override tags grows with the line
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "benchmarks/formats.h"
#include "benchmarks/import.h"
#include "benchmarks/inputs.h"
#include "benchmarks/measure.h"
#include "benchmarks/table.h"
#include "benchmarks/yardsticks.h"
#include "kssubtitle/kssubtitle.h"

namespace {

using namespace bench;

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

template <typename Char>
void addQueries(const std::string& name, const Input& input, const Moments& moments) {
  requireSameAnswers(moments, library<Char>(input), search<Char>(input));
  measureQueries("query/" + name, moments, [input] { return library<Char>(input); });
  measureQueries("search/" + name, moments, [input] { return search<Char>(input); });
}

void addOpening(const Input& input) {
  measureReading("open/" + input.name, [path = input.path] { return openFile(path); });
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
  const ImportBenchmarks import(inputs);
  const FormatBenchmarks formats(inputs[1]);
  std::vector<std::vector<Input>> growth;
  if (withGrowth) growth = writeOverrideTexts();
  for (const auto& series : growth) {
    for (const Input& input : series) addOpening(input);
  }
  Results results;
  benchmark::RunSpecifiedBenchmarks(&results);
  printTables(inputs, results);
  import.print(results);
  formats.print(results);
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
