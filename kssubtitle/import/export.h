/// @file
/// KSSUBTITLE_IMPORT_API marks what the import library exports, KSSUBTITLE_IMPORT_LOCAL the members
/// of exported classes that are none of the interface; everything else stays hidden.
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
/// What hosts cannot reach.
#define KSSUBTITLE_IMPORT_LOCAL __attribute__((visibility("hidden")))
#endif
