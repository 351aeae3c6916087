// Every other format of the import library beside libavformat, which reads most of them.
#pragma once

#include <string>
#include <vector>

#include "benchmarks/inputs.h"
#include "benchmarks/table.h"

namespace bench {

/// `Open` of one film in each format that libavformat reads; nothing without it.
class FormatBenchmarks {
 public:
  /// Adds them to what is run. `film` is a SubRip file.
  explicit FormatBenchmarks(const Input& film);
  /// Prints their table.
  void print(const Results& results) const;

 private:
  struct File {
    std::string format;
    std::string title;
  };

  std::vector<File> files_;
};

}  // namespace bench
