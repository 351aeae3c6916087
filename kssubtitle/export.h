/// @file
/// KSSUBTITLE_API marks what the shared library exports; everything else stays hidden.
#pragma once

#if defined(_WIN32)
#if defined(KSSUBTITLE_BUILDING)
#define KSSUBTITLE_API __declspec(dllexport)
#else
#define KSSUBTITLE_API __declspec(dllimport)
#endif
#else
#define KSSUBTITLE_API __attribute__((visibility("default")))
#endif
