/// @file
/// KSSUBTITLE_IMPORT_API marks what the import library exports; everything else stays hidden.
#pragma once

#if defined(_WIN32)
#if defined(KSSUBTITLE_IMPORT_BUILDING)
#define KSSUBTITLE_IMPORT_API __declspec(dllexport)
#else
#define KSSUBTITLE_IMPORT_API __declspec(dllimport)
#endif
#define KSSUBTITLE_IMPORT_LOCAL
#else
/// What hosts may call.
#define KSSUBTITLE_IMPORT_API __attribute__((visibility("default")))
/// A member of an exported class that hosts cannot reach.
#define KSSUBTITLE_IMPORT_LOCAL __attribute__((visibility("hidden")))
#endif
