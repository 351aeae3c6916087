/// @file
/// The library's version. This is the only place that has it; the build reads it from here.
#pragma once

/// Raised by a change that breaks hosts; the SONAME is this number.
#define KSSUBTITLE_VERSION_MAJOR 0
/// Raised by what is new.
#define KSSUBTITLE_VERSION_MINOR 1
/// Raised by corrections alone.
#define KSSUBTITLE_VERSION_PATCH 0
