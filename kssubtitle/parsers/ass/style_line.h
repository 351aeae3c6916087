// The value of a "Style" line.
#pragma once

#include "kssubtitle/parsers/ass/format_level.h"
#include "kssubtitle/parsers/column_reader.h"

namespace kssubtitle::internal {

/// Reads the columns in `reader` into the style members of the parser.
template <typename Char, typename Parser>
void readStyleLine(ColumnReader<Char>& reader, FormatLevel level, Parser& parser);

}  // namespace kssubtitle::internal
