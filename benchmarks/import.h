// The import library beside what its work costs at least, and beside other libraries.
#pragma once

#include <string>
#include <vector>

#include "benchmarks/inputs.h"
#include "benchmarks/table.h"

namespace bench {

/// What is measured of the import library.
class ImportBenchmarks {
 public:
  /// Adds them to what is run.
  explicit ImportBenchmarks(const std::vector<Input>& inputs);
  /// Prints their tables.
  void print(const Results& results) const;

 private:
  /// Files of `cues` cues with many at once.
  struct Stack {
    int cues;
    int atOnce;
    Input input;
  };

  void printOpening(const Results& results) const;
  void printQueries(const Results& results) const;
  void printStacks(const Results& results) const;
  void printMemory() const;

  std::vector<Input> inputs_;
  Input codePage_;
  std::vector<Stack> stacks_;
};

}  // namespace bench
