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
    ASSERT_NO_FATAL_FAILURE(expectEqualAnswers(filled));
    const Sessions sessions = filled;  // a copy has its table
    ASSERT_NO_FATAL_FAILURE(expectEqualAnswers(sessions));
    assigned = sessions;
    Sessions moved = std::move(assigned);
    EXPECT_TRUE(assigned.empty());
    expectEqualAnswers(assigned);
    expectEqualAnswers(moved);
    assigned = std::move(moved);
    EXPECT_EQ(assigned.size(), sessions.size());
    ASSERT_NO_FATAL_FAILURE(expectEqualAnswers(assigned));
  }
}

TEST(SessionMap, changesThroughKeptReferences_areSeenUntilClear) {
  ksSrtParser parser;
  parser.lines = {"1", "00:00:00,010 --> 00:00:00,020", "a"};
  SRC_SESSION_ST& kept = parser.sessions[1];
  parser.ConvertBufToSrtMap();
  expectEqualAnswers(parser.sessions);
  kept.start = 15;
  expectEqualAnswers(parser.sessions);
  Sessions moved = std::move(parser.sessions);
  kept.start = 5;
  expectEqualAnswers(moved);
  parser.sessions = std::move(moved);
  kept.end = 30;
  expectEqualAnswers(parser.sessions);
  parser.sessions.clear();
  EXPECT_EQ(parser.sessions.covering(7), nullptr);
}

TEST(SessionMap, everyChange_isSeen) {
  Sessions filled;
  filled[4] = {10, 20, {}};
  Sessions sessions = filled;
  SRC_SESSION_ST& kept = sessions[4];
  expectEqualAnswers(sessions);
  kept.start = 15;
  expectEqualAnswers(sessions);
  sessions = filled;
  EXPECT_TRUE(sessions.insert_or_assign(5, SRC_SESSION_ST{12, 14, {}}).second);
  expectEqualAnswers(sessions);
  sessions = Sessions(sessions);
  EXPECT_EQ(sessions.erase(5) + sessions.erase(5), 1U);
  expectEqualAnswers(sessions);
}

TEST(SessionMap, readsAsAnOrderedMap) {
  Sessions sessions;
  for (const int key : {7, 3, 5}) sessions[key].start = key;
  const std::map<int, SRC_SESSION_ST>& plain = sessions;
  EXPECT_EQ(&plain.at(5), &sessions.at(5));
  EXPECT_EQ(sessions.begin()->first, 3);
  EXPECT_EQ(std::prev(sessions.cend())->first, 7);
  EXPECT_EQ(sessions.rbegin()->first, 7);
  EXPECT_EQ(std::prev(sessions.rend())->first, 3);
  EXPECT_EQ(sessions.lower_bound(3)->first, 3);
  EXPECT_EQ(sessions.upper_bound(3)->first, 5);
  EXPECT_EQ(sessions.find(3), sessions.cbegin());
  EXPECT_EQ(sessions.find(4), sessions.end());
  EXPECT_EQ(sessions.count(3), 1U);
  EXPECT_FALSE(sessions.contains(4));
  EXPECT_THROW(sessions.at(4), std::out_of_range);
}

}  // namespace
