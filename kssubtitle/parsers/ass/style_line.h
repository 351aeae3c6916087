// The value of a "Style" line.
#pragma once

#include "kssubtitle/parsers/ass/field_reader.h"
#include "kssubtitle/parsers/ass/format_level.h"

namespace kssubtitle::internal {

/// Reads the columns in `reader` into the style members of the parser.
template <typename Char, typename Parser>
void readStyleLine(FieldReader<Char>& reader, FormatLevel level, Parser& parser);

}  // namespace kssubtitle::internal
