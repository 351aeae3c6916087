// Answers that are kept as numbers, to show what a change does to them.
#pragma once

#include <cstdlib>
#include <iostream>

#include "tests/support.h"

/// Compares lines of a name and a number with those kept in a file, and prints the ones that
/// differ; writes the file instead if KSSUBTITLE_KEEP_ANSWERS is set. Returns what main() should.
inline int compareWithKept(const std::string& answers, const char* path) {
  if (std::getenv("KSSUBTITLE_KEEP_ANSWERS") != nullptr) {
    std::ofstream(path) << answers;
    return 0;
  }
  const std::string kept = contentOf(path);
  std::istringstream lines(answers);
  for (std::string line; std::getline(lines, line);) {
    if (kept.find(line + '\n') == kept.npos) std::cerr << "not as kept: " << line << '\n';
  }
  return kept == answers ? 0 : 1;
}
