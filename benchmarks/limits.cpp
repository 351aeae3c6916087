// Measures what the documented limits cost against size: one line per measurement with the name of
// the series, the size, the milliseconds of one call and the megabytes that it takes.
#include "benchmarks/limits.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>

#include "benchmarks/memory.h"
#include "kssubtitle/kssubtitle.h"

namespace {

using bench::measure;
using bench::Work;
using bench::write;

/// CPU time: the least of three, or what it takes once if that is long.
double millisecondsOf(const Work& work) {
  constexpr double kLong = 1000;
  double least = 1e9;
  for (int i = 0; i < 3 && (i == 0 || least < kLong); ++i) {
    const std::clock_t start = std::clock();
    work();
    least = std::min(least, 1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return least;
}

void report(const char* series, double size, double milliseconds, std::size_t bytes) {
  std::printf("%s %g %.4g %.4g\n", series, size, milliseconds, static_cast<double>(bytes) / 1e6);
}

std::string utf16(const std::string& text) {
  std::string units = "\xFF\xFE";
  for (const char c : text) (units += c) += '\0';
  return units;
}

void measureOpen(const char* series, double size, const std::string& path) {
  measure(series, size, [&] { ksSubtitleManager().Open(path.c_str()); });
}

/// Every text line brings along every second line after it.
void measureTextLines() {
  std::string content;
  for (int lines = 1250; lines <= 20000; lines *= 2) {
    while (content.size() < 20U * static_cast<unsigned>(lines)) content += "A line of subtitles\n";
    measureOpen("text-lines", lines, write("lines.srt", content.substr(0, content.size() - 1)));
  }
}

/// What follows the tag, moved to its place, is a tag again that ends where this one did.
void measureTags() {
  for (std::size_t length = 12500; length <= 200000; length *= 2) {
    const std::string tag = "{" + std::string(length / 2 - 1, 'x') + "}";
    const std::string rest = "{" + std::string(length / 2 - 2, 'x') + "\n";
    measureOpen("tags", static_cast<double>(length),
                write("tags.ass", "Dialogue: 0,0:00:00.00,0:00:01.00,,,0,0,0,," + tag + rest));
  }
}

void measureLongLines() {
  for (int megabytes = 1; megabytes <= 64; megabytes *= 4) {
    const std::string line(static_cast<std::size_t>(megabytes) * 1000000, 'x');
    measureOpen("long-line", megabytes, write("line.srt", line));
    measureOpen("long-wide-line", megabytes, write("line.srt", utf16(line)));
  }
}

void measureDurations() {
  const std::string path = write("none.ass", "no event\n");
  for (int calls = 1000; calls <= 1000000; calls *= 10) {
    measure("durations", calls, [&] {
      ksAssParser parser;
      parser.Open(path.c_str());
      for (int i = 0; i < calls; ++i) parser.DurationTime();
    });
  }
}

/// A changed map is without its table.
void measureScans() {
  for (int records = 600; records <= 9600; records *= 2) {
    std::string content;
    for (int i = 0; i < records; ++i) content += std::to_string(i) + "\nx\n";
    content.pop_back();
    ksSrtParser parser;
    parser.Open(write("records.srt", content).c_str());
    constexpr int kQueries = 1000;
    const auto ask = [&] {
      for (int i = 0; i < kQueries; ++i) parser.GetSubTitle(1);
    };
    parser.sessions[0].start = 0;
    report("scan", records, millisecondsOf(ask) / kQueries, 0);
  }
}

/// Every key up to the greatest gets an entry.
void measureEntries() {
  for (int lines = 312; lines <= 5000; lines *= 2) {
    std::string content;
    for (int i = 1; i < lines; ++i) content += "x:\n";
    const std::string path = write("x.idx", content + "timestamp: 99:00:00:000, filepos: 0\n");
    measure("entries", lines, [&] {
      ksIdxParser parser;
      parser.Open(path.c_str());
      for (int i = 0; i < lines; ++i) parser.GetFilePos(1000000);
    });
  }
}

}  // namespace

double bench::measure(const char* series, double size, const Work& work) {
  const std::size_t bytes = peakDuring(work);
  const double milliseconds = millisecondsOf(work);
  report(series, size, milliseconds, bytes);
  return milliseconds;
}

std::string bench::write(const std::string& name, const std::string& content) {
  mkdir(INPUT_DIRECTORY, 0777);
  const std::string path = INPUT_DIRECTORY "/" + name;
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

/// With an argument, of the import library alone.
int main(int argc, char**) {
  if (argc == 1) {
    measureTextLines();
    measureTags();
    measureLongLines();
    measureDurations();
    measureScans();
    measureEntries();
  }
  return bench::measureImportLimits() ? 0 : 1;
}
