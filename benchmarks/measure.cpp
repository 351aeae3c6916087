// When a parser is asked.
#include "benchmarks/measure.h"

#include <algorithm>
#include <iterator>
#include <random>

#include "benchmarks/yardsticks.h"

namespace bench {
namespace {

constexpr std::size_t kQueries = 10'000;

/// A clock of 60 Hz.
Moments clockMoments(std::size_t count, long long start) {
  Moments moments;
  for (std::size_t tick = 0; tick < count; ++tick) {
    moments.push_back(start + static_cast<long long>(tick) * 1000 / 60);
  }
  return moments;
}

}  // namespace

Moments randomMoments(std::size_t count, long long duration) {
  std::mt19937 random(1);
  std::uniform_int_distribution<long long> distribution(0, duration);
  Moments moments(count);
  for (long long& t : moments) t = distribution(random);
  return moments;
}

std::map<std::string, Moments> momentsOf(const Input& input) {
  const PlainFile plain = plainLoop(input.path);
  if (onePass(input.path).cues.size() != plain.cues.size()) {
    throw std::runtime_error("the yardsticks disagree on " + input.path);
  }
  const std::size_t count = std::min(kQueries, plain.cues.size() * 20);
  const auto middle = std::next(plain.cues.begin(), static_cast<long>(plain.cues.size() / 2));
  return {{"/random", randomMoments(count, plain.cues.rbegin()->second.end)},
          {"/clock", clockMoments(count, middle->second.start)}};
}

}  // namespace bench
