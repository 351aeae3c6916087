// The table in which the covering record of a moment is found: what each format's source needs to
// instantiate the map of its records and to fill it.
#pragma once

#include <algorithm>
#include <iterator>
#include <limits>
#include <queue>
#include <utility>
#include <vector>

#include "kssubtitle/parsers/ksSessionMap.h"

namespace kssubtitle::internal {

template <typename Record>
long long startOf(const Record& record) noexcept {
  if constexpr (requires { record.start; }) {
    return record.start;
  } else {
    return record.startTime;
  }
}

template <typename Record>
long long endOf(const Record& record) noexcept {
  if constexpr (requires { record.end; }) {
    return record.end;
  } else {
    return record.endTime;
  }
}

/// The first moment of the record that can be asked for.
template <typename Record>
long long firstMoment(const Record& record) noexcept {
  return std::max(startOf(record), 0LL);
}

/// How a parser reaches the records of its own map, of which no reference leaves it.
struct SessionAccess {
  /// operator[], fast for keys in ascending order. The table is gone until it is built anew.
  template <typename Record>
  static Record& record(ksSessionMap<Record>& sessions, int key) {
    sessions.table_.clear();
    return sessions.map_.try_emplace(sessions.map_.end(), key)->second;
  }

  /// For when all records are complete; does nothing if the host may hold a reference to one.
  template <typename Record>
  static void buildTable(ksSessionMap<Record>& sessions) {
    if (!sessions.isChanged_) sessions.buildTable();
  }
};

/// The answer to a query: the last record in key order that covers `t`; the empty answer if none
/// does.
template <typename Answer, typename Record>
Answer answerAt(const ksSessionMap<Record>& sessions, long long t) {
  const Record* const record = sessions.covering(t);
  if (record == nullptr) return {};
  return {startOf(*record), endOf(*record), record->text};
}

struct HasLesserKey {
  template <typename Entry>
  bool operator()(const Entry* a, const Entry* b) const noexcept {
    return a->first < b->first;
  }
};

/// The entries that can be an answer, in the order of their first moments.
template <typename Record>
auto entriesByFirstMoment(const std::map<int, Record>& map) {
  std::vector<const std::pair<const int, Record>*> entries;
  for (const auto& entry : map) {
    if (firstMoment(entry.second) <= endOf(entry.second)) entries.push_back(&entry);
  }
  std::sort(entries.begin(), entries.end(), [](const auto* a, const auto* b) {
    return firstMoment(a->second) < firstMoment(b->second);
  });
  return entries;
}

}  // namespace kssubtitle::internal

template <typename Record>
ksSessionMap<Record>::ksSessionMap(const ksSessionMap& other) : map_(other.map_) {
  buildTable();
}

template <typename Record>
ksSessionMap<Record>& ksSessionMap<Record>::operator=(const ksSessionMap& other) {
  ksSessionMap copy(other);
  swap(copy);
  return *this;
}

template <typename Record>
ksSessionMap<Record>& ksSessionMap<Record>::operator=(ksSessionMap&& other) noexcept {
  ksSessionMap taken(std::move(other));
  swap(taken);
  return *this;
}

template <typename Record>
const Record* ksSessionMap<Record>::covering(long long t) const noexcept {
  using kssubtitle::internal::endOf;
  using kssubtitle::internal::startOf;
  if (t < 0) return nullptr;
  if (table_.empty()) {
    const auto found = std::find_if(map_.rbegin(), map_.rend(), [t](const value_type& entry) {
      return startOf(entry.second) <= t && t <= endOf(entry.second);
    });
    return found == map_.rend() ? nullptr : &found->second;
  }
  const auto after =
      std::upper_bound(table_.begin(), table_.end(), t,
                       [](long long time, const Segment& s) { return time < s.begin; });
  const Record* const record = std::prev(after)->record;
  return record != nullptr && t <= endOf(*record) ? record : nullptr;
}

template <typename Record>
void ksSessionMap<Record>::clear() noexcept {
  map_.clear();
  table_.clear();
  isChanged_ = false;
}

// A sweep over the moments at which records begin or end. Of the active records, which have begun,
// the one with the greatest key answers; one below it may have ended already.
template <typename Record>
void ksSessionMap<Record>::buildTable() {
  using kssubtitle::internal::endOf;
  using kssubtitle::internal::firstMoment;
  std::vector<Segment> table{{0, nullptr}};
  const auto answerFrom = [&table](long long begin, const Record& record) {
    if (table.back().record != &record) table.push_back({begin, &record});
  };
  std::priority_queue active{kssubtitle::internal::HasLesserKey{},
                             std::vector<const value_type*>{}};
  const auto endThoseBefore = [&active, answerFrom](long long moment) {
    while (!active.empty() && endOf(active.top()->second) < moment) {
      const long long last = endOf(active.top()->second);
      while (!active.empty() && endOf(active.top()->second) <= last) active.pop();
      if (!active.empty()) answerFrom(last + 1, active.top()->second);
    }
  };
  for (const value_type* const entry : kssubtitle::internal::entriesByFirstMoment(map_)) {
    endThoseBefore(firstMoment(entry->second));
    active.push(entry);
    answerFrom(firstMoment(entry->second), active.top()->second);
  }
  endThoseBefore(std::numeric_limits<long long>::max());
  table_ = std::move(table);
}
