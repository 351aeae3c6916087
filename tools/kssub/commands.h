// What the program can be asked to do, one function for each of its commands.
#pragma once

#include <string>
#include <vector>

#include "tools/kssub/subtitle_file.h"

namespace kssub {

// All write to std::cout, whose state tells of failed writes, and throw std::runtime_error when the
// file cannot be read.

enum class Output { kTable, kJson };

/// Prints the duration, and what is shown at each of `times`; as JSON an object for each time.
void at(const FileRequest& request, const std::vector<long long>& times, Output output);

/// Prints every cue, as a table by time with a line on the file below it, or as JSON an object for
/// each cue. With `withNotes` the problems of the file go to standard error.
void list(const FileRequest& request, Output output, bool withNotes);

/// Shows each cue while a clock, started at `from` and running `speed` times as fast as real time,
/// passes it. Returns after the last one, or at SIGINT or SIGTERM, which it sends on to its own
/// process when the terminal is as it was. If the file ends before `from`, it says so on standard
/// error.
void play(const FileRequest& request, long long from, double speed);

/// Writes the picture that the VobSub index at `index` shows near `time` as a PNG file.
void picture(const std::string& index, long long time, const std::string& output);

/// Writes the picture of every entry of the index into `directory`, which is made if need be.
/// Throws std::runtime_error when all are tried if some of them are broken.
void allPictures(const std::string& index, const std::string& directory);

}  // namespace kssub
