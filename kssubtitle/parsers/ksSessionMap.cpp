// The table in which the covering record of a moment is found.
#include "kssubtitle/parsers/ksSessionMap.h"

#include <algorithm>
#include <limits>
#include <queue>

#include "kssubtitle/parsers/ass/ksAssParser.h"
#include "kssubtitle/parsers/session_queries.h"
#include "kssubtitle/parsers/srt/ksSrtParser.h"

namespace {

using kssubtitle::internal::endOf;
using kssubtitle::internal::startOf;

/// A record that can be an answer, and the place of its key.
template <typename Record>
struct Candidate {
  const Record* record;
  std::size_t order;

  /// The first moment of it that can be asked for.
  long long begin() const noexcept { return std::max(startOf(*record), 0LL); }
  long long end() const noexcept { return endOf(*record); }
};

template <typename Record>
struct LesserOrder {
  bool operator()(const Candidate<Record>& a, const Candidate<Record>& b) const noexcept {
    return a.order < b.order;
  }
};

/// The candidates in the order of their begins.
template <typename Record>
std::vector<Candidate<Record>> candidatesOf(const std::map<int, Record>& map) {
  std::vector<Candidate<Record>> all;
  all.reserve(map.size());
  for (const auto& [key, record] : map) {
    const Candidate<Record> candidate{&record, all.size()};
    if (candidate.begin() <= candidate.end()) all.push_back(candidate);
  }
  const auto earlier = [](const auto& a, const auto& b) { return a.begin() < b.begin(); };
  if (!std::is_sorted(all.begin(), all.end(), earlier)) std::sort(all.begin(), all.end(), earlier);
  return all;
}

/// Hands each moment at which the answer changes, in ascending order, to `add`.
template <typename Record, typename Add>
void sweep(const std::vector<Candidate<Record>>& candidates, Add add) {
  constexpr long long kNever = std::numeric_limits<long long>::max();
  std::priority_queue<Candidate<Record>, std::vector<Candidate<Record>>, LesserOrder<Record>>
      active;
  auto next = candidates.begin();
  long long now = 0;
  while (next != candidates.end() || !active.empty()) {
    if (active.empty()) now = next->begin();
    for (; next != candidates.end() && next->begin() <= now; ++next) active.push(*next);
    add(now, active.top().record);
    const long long last = active.top().end();
    if (next != candidates.end() && next->begin() <= last) {
      now = next->begin();
    } else if (last == kNever) {
      return;
    } else {
      now = last + 1;
    }
    while (!active.empty() && active.top().end() < now) active.pop();
  }
}

}  // namespace

template <typename Record>
ksSessionMap<Record>& ksSessionMap<Record>::operator=(const ksSessionMap& other) {
  if (this != &other) {
    isBuilt_ = false;  // first: the assignment may throw half way
    map_ = other.map_;
  }
  return *this;
}

template <typename Record>
ksSessionMap<Record>& ksSessionMap<Record>::operator=(ksSessionMap&& other) noexcept {
  if (this != &other) {
    map_ = std::move(other.map_);
    isShared_ = other.isShared_;
    isBuilt_ = false;
    other.clear();
  }
  return *this;
}

template <typename Record>
void ksSessionMap<Record>::clear() noexcept {
  map_.clear();
  table_.clear();
  isShared_ = isBuilt_ = false;
}

template <typename Record>
const Record* ksSessionMap<Record>::covering(long long t) const {
  if (t < 0) return nullptr;
  if (isShared_) return scan(t);
  if (!isBuilt_) buildTable();
  const auto after =
      std::upper_bound(table_.begin(), table_.end(), t,
                       [](long long time, const Segment& s) { return time < s.begin; });
  if (after == table_.begin()) return nullptr;
  const Record* const record = std::prev(after)->record;
  return t <= endOf(*record) ? record : nullptr;
}

template <typename Record>
const Record* ksSessionMap<Record>::scan(long long t) const noexcept {
  for (auto entry = map_.rbegin(); entry != map_.rend(); ++entry) {
    if (startOf(entry->second) <= t && t <= endOf(entry->second)) return &entry->second;
  }
  return nullptr;
}

template <typename Record>
void ksSessionMap<Record>::buildTable() const {
  table_.clear();
  table_.reserve(map_.size());
  if (!buildTableInOneWalk()) {
    table_.clear();
    sweep(candidatesOf(map_), [this](long long begin, const Record* record) {
      if (table_.empty() || table_.back().record != record) table_.push_back({begin, record});
    });
  }
  isBuilt_ = true;  // last: what is above may throw half way
}

/// The usual case: no record begins before another one with a lesser key has ended. False if one
/// does.
template <typename Record>
bool ksSessionMap<Record>::buildTableInOneWalk() const {
  long long latestEnd = -1;
  for (const auto& [key, record] : map_) {
    const long long begin = std::max(startOf(record), 0LL);
    if (begin > endOf(record)) continue;  // never an answer
    if (begin <= latestEnd) return false;
    table_.push_back({begin, &record});
    latestEnd = endOf(record);
  }
  return true;
}

template class ksSessionMap<SRC_SESSION_ST>;
template class ksSessionMap<SRC_SESSION_ST_U>;
template class ksSessionMap<ASS_SESSION_ST>;
template class ksSessionMap<ASS_SESSION_ST_U>;
