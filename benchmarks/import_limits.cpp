// Files that are made against the import library: one thing again and again.
#include <kssubtitle/import.h>

#include <cstdio>
#include <stdexcept>
#include <string_view>

#include "benchmarks/limits.h"
#include "benchmarks/memory.h"

namespace bench {
namespace {

constexpr std::string_view kCue = "1\n00:00:01,000 --> 00:00:02,000\n";
constexpr std::string_view kStyledCue =
    "1\n00:00:01,000 --> 00:00:02,000\n<i><b><u><s><font color=#123456>";
constexpr std::string_view kScript =
    "[Script Info]\nScriptType: v4.00+\n[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,";

struct Hostile {
  const char* series;
  std::string_view head;
  std::string_view again;
};

constexpr Hostile kHostile[] = {
    {"less-than", kCue, "<"},
    {"italics", kCue, "<i>x"},
    {"crossing", kCue, "<i>a<b>b</i>c</b>"},
    {"restyled", kStyledCue, "</i>a<i>b"},
    {"fonts", kCue, "<font color=#123456>x</font>y"},
    {"alignments", kCue, "{\\an8}"},
    {"ampersands", kCue, "&"},
    {"entities", kCue, "&lt;"},
    {"arrows", kCue, "-->"},
    {"digits", kCue, "1\n\n"},
    {"time-lines", {}, "00:00:01,000 --> 00:00:02,000\n"},
    {"braces", kScript, "{"},
    {"drawings", kScript, "{\\p1}"},
    {"bold", kScript, "{\\b1}a{\\b0}b"},
    {"transforms", kScript, "{\\t("},
};

void measureHtml(const char* series, int times, const std::string& content) {
  const std::string path = write("hostile.txt", content);
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  ksImportParser parser;
  const auto open = [&] {
    if (!parser.Open(path.c_str(), options)) throw std::runtime_error("refused: " + path);
  };
  measure(series, times, open);
  parser = ksImportParser();
  const std::size_t kept = keptBy(open);
  std::printf("%s-kept %d %.3g\n", series, times,
              static_cast<double>(kept) / static_cast<double>(content.size()));
}

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

/// Every cue is shown at the same moment.
std::string cuesAtOnce(int cues) {
  std::string content;
  for (int i = 1; i <= cues; ++i) {
    content += "00:00:01,000 --> 00:00:02,000\n" + std::to_string(i) + "x\n\n";
  }
  return content;
}

/// A script of so many columns that has one event.
std::string columns(int count) {
  return "[Events]\nFormat: Start,End," + repeated("x,", count) +
         "Text\nDialogue: 0:00:01.00,0:00:02.00," + repeated(",", count) + "x\n";
}

}  // namespace

void measureImportLimits() {
  for (int times = 125'000; times <= 1'000'000; times *= 2) {
    for (const Hostile& hostile : kHostile) {
      measureHtml(hostile.series, times,
                  std::string(hostile.head) + repeated(hostile.again, times) + "\n");
    }
    measureHtml("cues-at-once", times, cuesAtOnce(times));
    measureHtml("columns", times, columns(times));
  }
}

}  // namespace bench
