// Times and lookups that the formats share.
#pragma once

#include "kssubtitle/parsers/ksSessionMap.h"

namespace kssubtitle::internal {

/// A time of day in milliseconds. Deliberate: it wraps at 32 bits before it is widened.
inline long long milliseconds32(int hours, int minutes, int seconds, int milliseconds) noexcept {
  const auto wrapped = static_cast<unsigned>(hours) * 3600000U +
                       static_cast<unsigned>(minutes) * 60000U +
                       static_cast<unsigned>(seconds) * 1000U + static_cast<unsigned>(milliseconds);
  return static_cast<int>(wrapped);
}

/// `value` times ten, wrapped at 32 bits.
inline int times10(int value) noexcept {
  return static_cast<int>(static_cast<unsigned>(value) * 10U);
}

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
