/// @file
/// `ksString`, the library's 8-bit text.
#pragma once

#include "kssubtitle/strings/ksBasicString.h"

/// 8-bit text in whatever encoding its file has; see ksBasicString for its operations.
///
/// What is its own:
/// - a number becomes its decimal text: `ksString(-5)` is "-5";
/// - `operator int` reads base 10 as `strtol` does and keeps the low 32 bits;
/// - case is mapped byte by byte with `toupper` and `tolower` under the host's locale.
using ksString = ksBasicString<char>;
