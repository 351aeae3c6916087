/// @file
/// KSSUBTITLE_API marks what the shared library exports, KSSUBTITLE_LOCAL what it keeps of that for
/// itself; everything else stays hidden.
#pragma once

#if defined(_WIN32)
#if defined(KSSUBTITLE_BUILDING)
#define KSSUBTITLE_API __declspec(dllexport)
#else
#define KSSUBTITLE_API __declspec(dllimport)
#endif
#define KSSUBTITLE_LOCAL
#else
/// What hosts may call.
#define KSSUBTITLE_API __attribute__((visibility("default")))
/// A private member of an exported class.
#define KSSUBTITLE_LOCAL __attribute__((visibility("hidden")))
#endif
