/// @file
/// The ordered map in which a parser keeps its records.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

#include "kssubtitle/export.h"

namespace kssubtitle::internal {
struct SessionAccess;
}

/// An ordered map from `int` to `Record` that also answers which record covers a moment.
///
/// Offers what code written for a `std::map<int, Record>` uses: iteration in ascending key order,
/// references and iterators that stay valid, `operator[]` that inserts, and the members below.
///
/// covering() takes a binary search in a table that is built when it is first needed after a
/// change. What hands out a record that may be changed through it (operator[], and the members that
/// are not const) leaves the map without its table until clear(): covering() then looks at every
/// record, so that a later change is never missed. A host that only reads does so through a const
/// reference, or `std::as_const`.
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
  using iterator = typename Map::iterator;
  using const_iterator = typename Map::const_iterator;
  using reverse_iterator = typename Map::reverse_iterator;
  using const_reverse_iterator = typename Map::const_reverse_iterator;
  /// @}

  /// @{
  /// Copies hold copies of the records; moves leave the source empty, and references to its records
  /// lead into the new map.
  ksSessionMap() = default;
  ksSessionMap(std::initializer_list<value_type> records) : map_(records) {}
  ksSessionMap(const ksSessionMap& other) : map_(other.map_) {}
  ksSessionMap(ksSessionMap&& other) noexcept
      : map_(std::move(other.map_)), isShared_(other.isShared_) {
    other.clear();
  }
  ksSessionMap& operator=(const ksSessionMap& other);
  ksSessionMap& operator=(ksSessionMap&& other) noexcept;
  ~ksSessionMap() = default;
  /// @}

  /// The record with the greatest key that covers `t` milliseconds, both its ends included; null if
  /// none does or `t` is negative. Belongs to the map, and is valid until its next change.
  /// @throws std::bad_alloc only if the table is not built yet.
  const Record* covering(long long t) const;

  /// @{
  /// As in `std::map`, for a host that only reads.
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
  /// @}

  /// @{
  /// As in `std::map`; leaves the map without its table until clear(), as said above.
  iterator begin() noexcept { return shared().begin(); }
  iterator end() noexcept { return shared().end(); }
  reverse_iterator rbegin() noexcept { return shared().rbegin(); }
  reverse_iterator rend() noexcept { return shared().rend(); }
  iterator find(int key) { return shared().find(key); }
  iterator lower_bound(int key) { return shared().lower_bound(key); }
  iterator upper_bound(int key) { return shared().upper_bound(key); }
  /// The record of `key`, through which it may be changed.
  /// @throws std::out_of_range if there is none.
  Record& at(int key) { return shared().at(key); }
  /// The record of `key`, through which it may be changed; a new one if there is none.
  Record& operator[](int key) { return shared()[key]; }
  std::pair<iterator, bool> insert(const value_type& record) { return shared().insert(record); }
  template <typename... Arguments>
  std::pair<iterator, bool> emplace(Arguments&&... arguments) {
    return shared().emplace(std::forward<Arguments>(arguments)...);
  }
  template <typename... Arguments>
  std::pair<iterator, bool> try_emplace(int key, Arguments&&... arguments) {
    return shared().try_emplace(key, std::forward<Arguments>(arguments)...);
  }
  template <typename Value>
  std::pair<iterator, bool> insert_or_assign(int key, Value&& record) {
    return shared().insert_or_assign(key, std::forward<Value>(record));
  }
  size_type erase(int key) { return shared().erase(key); }
  iterator erase(iterator position) { return shared().erase(position); }
  iterator erase(const_iterator position) { return shared().erase(position); }
  iterator erase(const_iterator first, const_iterator last) { return shared().erase(first, last); }
  /// @}
  /// Removes every record, and with them every reference that was handed out.
  void clear() noexcept;

  /// Whether both maps hold the same keys and equal records. Requires: records can be compared.
  friend bool operator==(const ksSessionMap& a, const ksSessionMap& b) { return a.map_ == b.map_; }

 private:
  friend struct kssubtitle::internal::SessionAccess;

  /// Up to the next segment's begin, no other record than this one answers.
  struct Segment {
    long long begin;
    const Record* record;
  };

  Map& shared() noexcept {
    isShared_ = true;
    return map_;
  }
  KSSUBTITLE_LOCAL void buildTable() const;
  KSSUBTITLE_LOCAL bool buildTableInOneWalk() const;
  KSSUBTITLE_LOCAL const Record* scan(long long t) const noexcept;

  Map map_;
  bool isShared_ = false;  // the host may hold a reference through which it changes a record
  mutable bool isBuilt_ = false;
  mutable std::vector<Segment> table_;  // ascending
};
