// Measures what pictures cost: one line per measurement with its name, how many things it is about,
// the microseconds of CPU that one of them takes, and the kilobytes of memory that all take.
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <random>
#include <string>

#include "benchmarks/memory.h"
#include "kssubtitle/import.h"
#include "tests/program_stream_writer.h"

namespace {

using Work = std::function<void()>;

double cpuMicroseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

/// The least of five.
double microsecondsOf(const Work& work) {
  double least = 1e12;
  for (int i = 0; i < 5; ++i) {
    const double start = cpuMicroseconds();
    work();
    least = std::min(least, cpuMicroseconds() - start);
  }
  return least;
}

void measure(const char* name, std::size_t count, const Work& work) {
  const std::size_t bytes = bench::peakDuring(work);
  std::printf("%-16s %8zu %10.3f us %10.1f KB\n", name, count,
              microsecondsOf(work) / static_cast<double>(count), static_cast<double>(bytes) / 1024);
}

/// Two lines of letters, more or less: short runs within long ones.
std::vector<std::string> letters() {
  std::mt19937 random(20261123);
  std::vector<std::string> rows(96, std::string(640, '0'));
  for (std::size_t y = 0; y < rows.size(); ++y) {
    if (y % 48 > 36) continue;  // between the lines
    for (std::size_t x = 80; x < 560;) {
      for (const char code : {'2', '1', '2', '0'}) {
        const std::size_t end = std::min<std::size_t>(560, x + 2 + random() % 8);
        std::fill(rows[y].begin() + static_cast<std::ptrdiff_t>(x),
                  rows[y].begin() + static_cast<std::ptrdiff_t>(end), code);
        x = end;
      }
    }
  }
  return rows;
}

std::string entry(std::size_t second, std::size_t position) {
  char line[64];
  std::snprintf(line, sizeof line, "timestamp: 0:0:%zu:0, filepos: %zx\n", second, position);
  return line;
}

/// The path of an index of `entries` entries, of which each leads to a unit of its own, or all to
/// the same.
std::string writeFiles(const std::string& name, const std::string& unit, std::size_t entries,
                       bool isShared) {
  const std::string path = INPUT_DIRECTORY "/" + name;
  std::string index = "palette: 0, ffffff, 222222, 777777\n";
  std::string stream;
  for (std::size_t i = 0; i < entries; ++i) {
    index += entry(3 * i, isShared ? 0 : stream.size());
    if (i == 0 || !isShared) stream += packsOf(unit, 3000 * static_cast<unsigned>(i));
  }
  std::ofstream(path + ".idx", std::ios::binary) << index;
  std::ofstream(path + ".sub", std::ios::binary) << stream;
  return path;
}

void measureFilm() {
  constexpr std::size_t kPictures = 1500;
  const std::string path =
      writeFiles("film", makeUnit({.rows = letters(), .left = 40, .top = 380}), kPictures, false);
  measure("open", kPictures, [&] { ksImportPictures().Open((path + ".idx").c_str()); });
  std::rename((path + ".idx").c_str(), (path + ".none").c_str());
  measure("open-sub-alone", kPictures, [&] { ksImportPictures().Open((path + ".sub").c_str()); });
  std::rename((path + ".none").c_str(), (path + ".idx").c_str());
  ksImportPictures pictures;
  pictures.Open((path + ".idx").c_str());
  measure("picture", kPictures, [&] {
    for (std::size_t i = 0; i < kPictures; ++i) pictures.Picture(i);
  });
  constexpr std::size_t kQuestions = 100000;
  measure("asked-again", kQuestions, [&] {
    for (std::size_t i = 0; i < kQuestions; ++i)
      pictures.PictureAt(3000 + static_cast<int>(i % 60));
  });
}

void measureHostile() {
  const UnitParts largest{.rows = std::vector(4096, std::string(4096, '1'))};
  const std::string path = writeFiles("largest", makeUnit(largest), 1, true);
  measure("largest", 1, [&] {
    ksImportPictures pictures;
    pictures.Open((path + ".idx").c_str());
    pictures.Picture(0);
  });
  for (const std::size_t entries : {25000U, 50000U, 100000U}) {
    const std::string same = writeFiles("same", makeUnit({}), entries, true);
    measure("same-place", entries, [&] { ksImportPictures().Open((same + ".idx").c_str()); });
  }
  for (const std::size_t megabytes : {8U, 16U, 32U}) {
    const std::string junk(megabytes << 20, '\0');
    measure("junk-megabytes", megabytes,
            [&] { ksImportPictures().OpenMemory(nullptr, 0, junk.data(), junk.size()); });
  }
}

}  // namespace

int main() {
  mkdir(INPUT_DIRECTORY, 0777);
  measureFilm();
  measureHostile();
}
