// The map's covering record against a look at every record.
#include <iterator>
#include <limits>
#include <random>
#include <stdexcept>
#include <utility>

#include "support.h"

namespace {

using Sessions = ksSessionMap<SRC_SESSION_ST>;

constexpr long long kLeast = std::numeric_limits<long long>::min();
constexpr long long kGreatest = std::numeric_limits<long long>::max();

/// The record that answers, found by a walk over all.
const SRC_SESSION_ST* walk(const Sessions& sessions, long long t) {
  const SRC_SESSION_ST* answer = nullptr;
  for (const auto& [key, cue] : sessions) {
    if (t >= 0 && cue.start <= t && t <= cue.end) answer = &cue;
  }
  return answer;
}

void expectEqualAnswers(const Sessions& sessions) {
  for (long long t = -3; t < 45; ++t) ASSERT_EQ(sessions.covering(t), walk(sessions, t)) << t;
  for (const long long t : {kLeast, kGreatest - 1, kGreatest}) {
    ASSERT_EQ(sessions.covering(t), walk(sessions, t)) << t;
  }
}

TEST(SessionMap, covering_matchesAWalkOverRandomRecords) {
  std::mt19937 random{20261122};
  const auto number = [&random](int least, int greatest) {
    return std::uniform_int_distribution<int>(least, greatest)(random);
  };
  const auto time = [&number] {
    const long long extremes[] = {kLeast, kLeast + 1, -1, 0, 1, kGreatest - 1, kGreatest};
    return number(0, 9) == 0 ? extremes[number(0, 6)] : number(-5, 40);
  };
  Sessions assigned;
  for (int round = 0; round < 1000; ++round) {
    Sessions filled;
    for (int i = number(0, 60); i > 0; --i) {
      filled[number(0, 99)] = {time(), time(), {}};  // reversed times too
    }
    const Sessions sessions = filled;  // a copy that nobody else refers to has its table
    expectEqualAnswers(sessions);
    assigned = sessions;
    expectEqualAnswers(assigned);
    Sessions moved = std::move(assigned);
    expectEqualAnswers(assigned);
    expectEqualAnswers(moved);
    assigned = std::move(moved);
    EXPECT_EQ(assigned.size(), sessions.size());
    expectEqualAnswers(moved);
    expectEqualAnswers(assigned);
    ASSERT_NO_FATAL_FAILURE(expectEqualAnswers(filled));
  }
}

TEST(SessionMap, changesThroughKeptReferences_areSeen) {
  Sessions sessions{{1, {10, 20, {}}}, {2, {15, 30, {}}}};
  SRC_SESSION_ST& kept = sessions[2];
  expectEqualAnswers(sessions);
  kept.start = 25;
  expectEqualAnswers(sessions);
  Sessions moved = std::move(sessions);
  EXPECT_TRUE(sessions.empty());
  kept.start = 5;
  expectEqualAnswers(moved);
  sessions = moved;
  expectEqualAnswers(sessions);
  sessions = std::move(moved);
  EXPECT_TRUE(moved.empty());
  expectEqualAnswers(sessions);
  kept.start = 25;
  expectEqualAnswers(sessions);
  sessions.clear();
  EXPECT_EQ(sessions.covering(27), nullptr);
}

TEST(SessionMap, changesThroughEveryWayToARecord_areSeen) {
  using Way = SRC_SESSION_ST* (*)(Sessions&);
  const Way ways[] = {
      [](auto& s) { return &s.begin()->second; },
      [](auto& s) { return &std::prev(s.end())->second; },
      [](auto& s) { return &s.rbegin()->second; },
      [](auto& s) { return &std::prev(s.rend())->second; },
      [](auto& s) { return &s.find(4)->second; },
      [](auto& s) { return &s.lower_bound(4)->second; },
      [](auto& s) { return &std::prev(s.upper_bound(4))->second; },
      [](auto& s) { return &s.at(4); },
      [](auto& s) { return &s[4]; },
      [](auto& s) { return &s.insert(*s.cbegin()).first->second; },
      [](auto& s) { return &s.emplace(4, SRC_SESSION_ST()).first->second; },
      [](auto& s) { return &s.try_emplace(4).first->second; },
      [](auto& s) { return &s.insert_or_assign(4, SRC_SESSION_ST()).first->second; }};
  for (const Way& way : ways) {
    Sessions sessions{{4, {10, 20, {}}}};
    expectEqualAnswers(sessions);
    SRC_SESSION_ST* const record = way(sessions);
    expectEqualAnswers(sessions);
    record->start = 15;
    expectEqualAnswers(sessions);
  }
}

TEST(SessionMap, actsAsAnOrderedMap) {
  Sessions sessions{{7, {}}, {3, {2, 0, {}}}};
  const Sessions& fixed = sessions;
  EXPECT_FALSE(sessions.insert({7, {1, 1, {}}}).second);
  EXPECT_EQ(sessions[5].start, 0);
  EXPECT_TRUE(fixed.rbegin()->first == 7 && std::prev(fixed.rend())->first == 3);
  EXPECT_TRUE(fixed.lower_bound(3)->first == 3 && fixed.upper_bound(3)->first == 5);
  EXPECT_TRUE(fixed.find(3) == fixed.cbegin() && fixed.find(4) == fixed.cend());
  EXPECT_TRUE(fixed.size() == 3 && fixed.count(3) == 1 && !fixed.contains(4));
  EXPECT_EQ(fixed.at(3).start, 2);
  EXPECT_THROW(sessions.at(4), std::out_of_range);
  EXPECT_EQ(sessions.erase(sessions.find(3))->first, 5);
  EXPECT_EQ(sessions.erase(fixed.find(5))->first, 7);
  EXPECT_EQ(sessions.erase(7) + sessions.erase(7), 1U);
  EXPECT_TRUE(sessions.empty());
  sessions = {{1, {}}, {2, {}}};
  EXPECT_TRUE(sessions.erase(fixed.begin(), fixed.end()) == sessions.end() && fixed.empty());
}

}  // namespace
