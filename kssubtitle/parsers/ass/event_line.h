// The value of a "Dialogue" line.
#pragma once

#include "kssubtitle/parsers/ass/format_level.h"
#include "kssubtitle/parsers/ass/override_tags.h"
#include "kssubtitle/parsers/column_reader.h"

namespace kssubtitle::internal {

/// Reads the columns in `reader`, which a NUL follows, into an event and adds its text after
/// a line feed.
template <typename Char, typename Event>
void readEventLine(ColumnReader<Char>& reader, FormatLevel level, OverrideTagRemover<Char>& tags,
                   Event& event);

}  // namespace kssubtitle::internal
