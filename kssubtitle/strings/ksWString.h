/// @file
/// `ksWString`, the library's wide text.
#pragma once

#include "kssubtitle/strings/ksBasicString.h"

/// Wide text, one code point in each 32-bit character; see ksBasicString for its operations.
///
/// What is its own, all of it on purpose:
/// - a number always becomes the **empty** text: `ksWString(42)` is empty, `+ 7` appends nothing,
/// and
///   so does `+= 'x'`, whose narrow character is taken for a number;
/// - `operator int` reads the number in the **base that equals the text's length**: "10" is 2,
///   "123" is 5 (base 3 reads "12"); a length of 0, 1 or more than 36 gives 0;
/// - case is mapped with `towupper` and `towlower` under the host's locale.
using ksWString = ksBasicString<wchar_t>;
