// What the program can be asked to do, one function for each of its commands.
#pragma once

#include <string>
#include <vector>

namespace kssub {

// All write to std::cout, whose state tells of failed writes, and throw FileError when the file
// cannot be opened.

/// Prints the duration, and the cue shown at each of `times`.
void at(const std::string& path, const std::vector<long long>& times);

/// Prints every cue that is the answer for some time, as a table.
void list(const std::string& path);

/// Shows each cue while a clock, started at `from` and running `speed` times as fast as real time,
/// passes it. Returns after the last one, or at SIGINT or SIGTERM, which it sends on to its own
/// process when the terminal is as it was. If the file ends before `from`, it says so on standard
/// error.
void play(const std::string& path, long long from, double speed);

/// Writes the picture that the VobSub index at `index` shows near `time` as a PNG file.
void picture(const std::string& index, long long time, const std::string& output);

/// Writes the picture of every entry of the index into `directory`, which is made if need be.
/// Throws std::runtime_error when all are tried if some of them are broken.
void allPictures(const std::string& index, const std::string& directory);

}  // namespace kssub
