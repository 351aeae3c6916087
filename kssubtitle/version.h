/// @file
/// The library's version. This is the one place where it stands; the build reads it from here.
#pragma once

#define KSSUBTITLE_VERSION_MAJOR 0
#define KSSUBTITLE_VERSION_MINOR 1
#define KSSUBTITLE_VERSION_PATCH 0
