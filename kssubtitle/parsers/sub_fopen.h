/// @file
/// The library's only way to open a file.
#pragma once

#include <cstdio>

#include "kssubtitle/export.h"

/// Exactly `std::fopen(path, mode)`: null if the file cannot be opened. The caller owns the stream.
KSSUBTITLE_API std::FILE* sub_fopen(const char* path, const char* mode);
