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

/// The key of the record that answers, found by a walk over all; -1 for none.
int walk(const Sessions& sessions, long long t) {
  int answer = -1;
  for (const auto& [key, cue] : sessions) {
    if (t >= 0 && cue.start <= t && t <= cue.end) answer = key;
  }
  return answer;
}

int covering(const Sessions& sessions, long long t) {
  const SRC_SESSION_ST* const found = sessions.covering(t);
  for (const auto& [key, cue] : sessions) {
    if (&cue == found) return key;
  }
  return -1;
}

class SessionMap : public testing::Test {
 protected:
  long long time() {
    const long long extremes[] = {kLeast, kLeast + 1, -1, 0, 1, kGreatest - 1, kGreatest};
    return number(0, 9) == 0 ? extremes[number(0, 6)] : number(-5, 40);
  }
  int number(int least, int greatest) {
    return std::uniform_int_distribution<int>(least, greatest)(random);
  }

  static void expectEqualAnswers(const Sessions& sessions) {
    for (long long t = -3; t < 45; ++t) ASSERT_EQ(covering(sessions, t), walk(sessions, t)) << t;
    for (const long long t : {kLeast, kGreatest - 1, kGreatest}) {
      ASSERT_EQ(covering(sessions, t), walk(sessions, t)) << t;
    }
  }

  std::mt19937 random{20261122};
};

TEST_F(SessionMap, covering_matchesAWalkOverRandomRecords) {
  Sessions assigned;
  for (int round = 0; round < 1000; ++round) {
    Sessions filled;
    for (int i = number(0, 60); i > 0; --i) {
      filled[number(0, 99)] = {time(), time(), {}};  // reversed times too
    }
    const Sessions sessions = filled;  // a copy that nobody else refers to has its table
    expectEqualAnswers(sessions);
    round % 2 == 0 ? assigned = sessions : assigned = Sessions(sessions);
    expectEqualAnswers(assigned);
    ASSERT_NO_FATAL_FAILURE(expectEqualAnswers(filled));
  }
}

TEST_F(SessionMap, changesThroughKeptReferences_areSeen) {
  Sessions sessions{{1, {10, 20, {}}}, {2, {15, 30, {}}}};
  expectEqualAnswers(sessions);
  SRC_SESSION_ST& kept = sessions[2];
  expectEqualAnswers(sessions);
  kept.start = 25;
  expectEqualAnswers(sessions);
  sessions.erase(1);
  expectEqualAnswers(sessions);
  Sessions moved = std::move(sessions);
  moved.at(2).end = 40;
  expectEqualAnswers(moved);
  EXPECT_TRUE(sessions.empty());
  kept.start = 5;
  expectEqualAnswers(moved);
  sessions = moved;
  EXPECT_EQ(covering(sessions, 5), 2);
  sessions = std::move(moved);
  EXPECT_TRUE(moved.empty());
  expectEqualAnswers(sessions);
  kept.start = 25;
  expectEqualAnswers(sessions);
  sessions.clear();
  EXPECT_EQ(sessions.covering(7), nullptr);
}

TEST_F(SessionMap, changesThroughEveryWayToARecord_areSeen) {
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
    record->end = 40;
    expectEqualAnswers(sessions);
  }
}

TEST_F(SessionMap, actsAsAnOrderedMap) {
  Sessions sessions;
  sessions[7].start = 1;
  sessions.emplace(3, SRC_SESSION_ST{2, 0, {}});
  EXPECT_FALSE(sessions.insert({7, {}}).second);
  int keys = 0;
  for (auto& [key, cue] : sessions) keys = keys * 10 + key + static_cast<int>(cue.end);
  EXPECT_EQ(keys, 37);
  const Sessions& fixed = sessions;
  EXPECT_EQ(fixed.rbegin()->first, 7);
  EXPECT_EQ(std::prev(fixed.rend())->first, 3);
  EXPECT_EQ(fixed.lower_bound(3)->first, 3);
  EXPECT_EQ(fixed.upper_bound(3)->first, 7);
  EXPECT_TRUE(fixed.find(3) == fixed.cbegin() && fixed.find(4) == fixed.cend());
  EXPECT_EQ(fixed.at(7).start, 1);
  EXPECT_EQ(fixed.count(3) + fixed.count(4), 1U);
  EXPECT_THROW(sessions.at(4), std::out_of_range);
  EXPECT_EQ(sessions.erase(sessions.find(3))->first, 7);
  EXPECT_TRUE(sessions.contains(7) && sessions.size() == 1 && sessions.find(3) == sessions.end());
  EXPECT_EQ(sessions.erase(7) + sessions.erase(7), 1U);
  EXPECT_TRUE(sessions.empty());
  sessions = {{1, {}}, {2, {}}, {3, {}}};
  EXPECT_EQ(sessions.erase(fixed.find(1))->first, 2);
  EXPECT_TRUE(sessions.erase(fixed.begin(), fixed.end()) == sessions.end() && fixed.empty());
}

// Once with the table that Open() has built, once after the host has reached for a record.
TEST_F(SessionMap, answersOfAParser_followTheRecords) {
  TempDir dir;
  ksAssParser parser;
  ASSERT_TRUE(parser.Open(dir.write("x", "no event\n").c_str()));
  EXPECT_EQ(parser.GetSubTitle(0).start, -1);
  parser.sessions[5].endTime = 9;
  EXPECT_EQ(parser.GetSubTitle(9).end, 9);
}

}  // namespace
