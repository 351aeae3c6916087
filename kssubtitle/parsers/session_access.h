// How the parsers reach the records of their own map, of which no reference leaves them.
#pragma once

#include "kssubtitle/parsers/ksSessionMap.h"

namespace kssubtitle::internal {

struct SessionAccess {
  /// operator[], fast for keys in ascending order. The record may be changed until covering() is
  /// next called.
  template <typename Record>
  static Record& record(ksSessionMap<Record>& sessions, int key) {
    sessions.isBuilt_ = false;
    auto& map = sessions.map_;
    if (map.empty() || map.rbegin()->first < key) {
      return map.try_emplace(map.end(), key)->second;
    }
    return map[key];
  }

  /// Builds the table that covering() searches, so that no query has to.
  template <typename Record>
  static void buildTable(const ksSessionMap<Record>& sessions) {
    if (!sessions.isShared_ && !sessions.isBuilt_) sessions.buildTable();
  }
};

}  // namespace kssubtitle::internal
