/// @file
/// KSSUBTITLE_IMPORT_API marks what the import library exports; everything else stays hidden.
#pragma once

#if defined(_WIN32)
#if defined(KSSUBTITLE_IMPORT_BUILDING)
#define KSSUBTITLE_IMPORT_API __declspec(dllexport)
#else
#define KSSUBTITLE_IMPORT_API __declspec(dllimport)
#endif
#else
/// What hosts may call.
#define KSSUBTITLE_IMPORT_API __attribute__((visibility("default")))
#endif
