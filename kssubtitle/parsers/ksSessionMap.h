/// @file
/// The ordered map in which a parser keeps its records.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "kssubtitle/export.h"

namespace kssubtitle::internal {
struct SessionAccess;
}

/// An ordered map from `int` to `Record` that also answers which record covers a moment.
///
/// Reads like a `std::map<int, Record>` and converts to one. Looking never changes it, and reaches
/// no record that could be changed; what changes it is operator[], insert_or_assign(), erase() and
/// clear(). References stay valid as in a `std::map`.
///
/// covering() takes a binary search in a table that the parser makes with the records. After
/// operator[], insert_or_assign() or erase() the table is gone until clear(), which Open() begins
/// with, and covering() looks at every record: a change through a reference that was kept is never
/// missed. A copy has its own table.
template <typename Record>
class KSSUBTITLE_API ksSessionMap {
 public:
  /// @{
  /// The types of this map.
  using Map = std::map<int, Record>;
  using key_type = typename Map::key_type;
  using mapped_type = typename Map::mapped_type;
  using value_type = typename Map::value_type;
  using size_type = typename Map::size_type;
  using const_iterator = typename Map::const_iterator;
  using iterator = const_iterator;
  using const_reverse_iterator = typename Map::const_reverse_iterator;
  using reverse_iterator = const_reverse_iterator;
  /// @}

  /// @{
  /// Copies hold copies of the records; moves leave the source empty, and references to its records
  /// lead into the new map. A copy that throws leaves the map that is assigned to as it was.
  ksSessionMap() = default;
  ksSessionMap(const ksSessionMap& other);
  ksSessionMap(ksSessionMap&& other) noexcept { swap(other); }
  ksSessionMap& operator=(const ksSessionMap& other);
  ksSessionMap& operator=(ksSessionMap&& other) noexcept;
  ~ksSessionMap() = default;
  /// @}

  /// The record with the greatest key that covers `t` milliseconds, both its ends included; null if
  /// none does or `t` is negative. Belongs to the map, and is valid until its next change.
  const Record* covering(long long t) const noexcept;

  /// The records as a plain map, which belongs to this one.
  operator const Map&() const noexcept { return map_; }

  /// @{
  /// As in `std::map`.
  const_iterator begin() const noexcept { return map_.begin(); }
  const_iterator end() const noexcept { return map_.end(); }
  const_iterator cbegin() const noexcept { return map_.begin(); }
  const_iterator cend() const noexcept { return map_.end(); }
  const_reverse_iterator rbegin() const noexcept { return map_.rbegin(); }
  const_reverse_iterator rend() const noexcept { return map_.rend(); }
  const_iterator find(int key) const { return map_.find(key); }
  const_iterator lower_bound(int key) const { return map_.lower_bound(key); }
  const_iterator upper_bound(int key) const { return map_.upper_bound(key); }
  /// The record of `key`.
  /// @throws std::out_of_range if there is none.
  const Record& at(int key) const { return map_.at(key); }
  size_type count(int key) const { return map_.count(key); }
  bool contains(int key) const { return map_.contains(key); }
  size_type size() const noexcept { return map_.size(); }
  bool empty() const noexcept { return map_.empty(); }
  friend bool operator==(const ksSessionMap& a, const ksSessionMap& b) { return a.map_ == b.map_; }
  /// @}

  /// @{
  /// As in `std::map`; the table is gone until clear(), as said above.
  Record& operator[](int key) { return changed()[key]; }
  template <typename Value>
  std::pair<const_iterator, bool> insert_or_assign(int key, Value&& record) {
    return changed().insert_or_assign(key, std::forward<Value>(record));
  }
  size_type erase(int key) { return changed().erase(key); }
  /// @}
  /// Removes every record, and with them every reference that was handed out.
  void clear() noexcept;

 private:
  friend struct kssubtitle::internal::SessionAccess;

  /// Up to the next segment's begin, no other record than this one answers; null: none does.
  struct Segment {
    long long begin;
    const Record* record;
  };

  Map& changed() noexcept {
    isChanged_ = true;
    table_.clear();
    return map_;
  }
  void swap(ksSessionMap& other) noexcept {
    map_.swap(other.map_);
    std::swap(isChanged_, other.isChanged_);
    table_.swap(other.table_);
  }
  KSSUBTITLE_LOCAL void buildTable();

  Map map_;
  bool isChanged_ = false;      // by the host, which may hold a reference to a record
  std::vector<Segment> table_;  // ascending, from 0 on; empty if it is not built
};
