// The query that every format answers from its records.
#pragma once

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

/// The answer to a query: the last record in key order that covers `t`; the empty answer if none
/// does.
template <typename Answer, typename Record>
Answer answerAt(const ksSessionMap<Record>& sessions, long long t) {
  const Record* const record = sessions.covering(t);
  if (record == nullptr) return {};
  return {startOf(*record), endOf(*record), record->text};
}

}  // namespace kssubtitle::internal
