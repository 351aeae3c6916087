/// @file
/// The library's version. This is the one place where it stands; the build reads it from here.
#pragma once

/// Raised by a change that breaks hosts, from 1.0 on.
#define KSSUBTITLE_VERSION_MAJOR 0
/// Raised by what is new, before 1.0 also by a change that breaks hosts.
#define KSSUBTITLE_VERSION_MINOR 1
/// Raised by corrections alone.
#define KSSUBTITLE_VERSION_PATCH 0
