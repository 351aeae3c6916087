// Files that are made against the import library: one thing again and again.
#include <kssubtitle/import.h>

#include <cstdio>
#include <new>
#include <pugixml.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "benchmarks/limits.h"
#include "benchmarks/memory.h"

namespace bench {
namespace {

/// In what is repeated, '@' is the number of the time, '~' that of the time before, and
/// '^' how often it is still to come.
struct Hostile {
  const char* format;  // that it is to be taken for; empty if for none
  const char* series;
  std::string head;
  std::string_view again;
  std::string tail = "\n";
};

const std::string kSubRip = "1\n00:00:01,000 --> 00:00:02,000\n";
const std::string kScript =
    "[Script Info]\nScriptType: v4.00+\n[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,";

const Hostile kSubRips[] = {
    {"subrip", "less-than", kSubRip, "<"},
    {"subrip", "italics", kSubRip, "<i>x"},
    {"subrip", "crossing", kSubRip, "<i>a<b>b</i>c</b>"},
    {"subrip", "restyled", kSubRip + "<i><b><u><s><font color=#123456>", "</i>a<i>b"},
    {"subrip", "fonts", kSubRip, "<font color=#123456>x</font>y"},
    {"subrip", "alignments", kSubRip, "{\\an8}"},
    {"subrip", "ampersands", kSubRip, "&"},
    {"subrip", "entities", kSubRip, "&lt;"},
    {"subrip", "arrows", kSubRip, "-->"},
    {"subrip", "digits", kSubRip, "1\n\n"},
    {"subrip", "time-lines", {}, "00:00:01,000 --> 00:00:02,000\n"},
    {"subrip", "cues-at-once", {}, "00:00:01,000 --> 00:00:02,000\n@x\n\n", {}},
    {"ass", "braces", kScript, "{"},
    {"ass", "drawings", kScript, "{\\p1}"},
    {"ass", "bold", kScript, "{\\b1}a{\\b0}b"},
    {"ass", "transforms", kScript, "{\\t("},
};

const std::string kWebVtt = "WEBVTT\n\n00:01.000 --> 00:02.000";

const Hostile kWebVtts[] = {
    {"webvtt", "vtt-less-than", kWebVtt + '\n', "<"},
    {"webvtt", "vtt-nested", kWebVtt + '\n', "<i>x"},
    {"webvtt", "vtt-crossing", kWebVtt + '\n', "<i>a<b>b</i>c</b>"},
    {"webvtt", "vtt-ruby", kWebVtt + '\n', "<ruby><rt>x</ruby>"},
    {"webvtt", "vtt-colours", kWebVtt + '\n', "<c.red>x</c>y"},
    {"webvtt", "vtt-classes", kWebVtt + "\n<c", ".red", ">x\n"},
    {"webvtt", "vtt-entities", kWebVtt + '\n', "&notin;&a"},
    {"webvtt", "vtt-settings", kWebVtt, " line:0", "\nx\n"},
    {"webvtt", "vtt-arrows", "WEBVTT\n\n", "-->\n"},
    {"webvtt", "vtt-regions", "WEBVTT\n\n", "REGION\nid:a@\n\n"},
    {"webvtt", "vtt-times", "WEBVTT\n\n", "0:^ --> 9:0\nx\n"},
};

const std::string kSami = "<SAMI><BODY><SYNC Start=1><P>";

const Hostile kSamis[] = {
    {"sami", "smi-less-than", kSami, "<"},
    {"sami", "smi-nested", kSami, "<b>x"},
    {"sami", "smi-crossing", kSami, "<i>a<b>b</i>c</b>"},
    {"sami", "smi-comments", kSami, "<!-- <-- "},
    {"sami", "smi-entities", kSami, "&lt&#x41&a"},
    {"sami", "smi-attributes", "<SAMI><BODY><SYNC", " a=b c='d'", " Start=1><P>x\n"},
    {"sami", "smi-quotes", "<SAMI><BODY><SYNC", " a=\" b='", " Start=1><P>x\n"},
    {"sami", "smi-syncs-at-once", kSami, "<SYNC Start=1><P>@x"},
    {"sami", "smi-backwards", kSami, "<SYNC Start=^><P>x"},
    {"sami", "smi-paragraphs", kSami, "<P>x"},
    {"sami", "smi-classes", kSami, "<P Class=c@>x"},
    {"sami", "smi-rules", "<SAMI><STYLE>", ".c@{lang:en}", "</STYLE>" + kSami},
    {"sami", "smi-properties", "<SAMI><STYLE>.a{", "b:c;", "}</STYLE>" + kSami},
    {"sami", "smi-braces", "<SAMI><STYLE>", ".{", "</STYLE>" + kSami},
    {"sami", "smi-sheets", "<SAMI>", "<STYLE>", kSami},
};

const std::string kTtml = "<tt><body>";
const std::string kParagraph = "<tt><body><p begin='1s' end='9s'>";

const Hostile kTtmls[] = {
    {"ttml", "tt-less-than", kParagraph, "<"},
    {"ttml", "tt-nested-spans", kParagraph, "<span>x"},
    {"ttml", "tt-nested-divisions", kTtml, "<div>"},
    {"ttml", "tt-crossing", kTtml, "<p end='1s'>a<b>b</p>"},
    {"ttml", "tt-errors", kTtml, "</p><p <"},
    {"ttml", "tt-comments", kTtml, "<!-- <! <?x "},
    {"ttml", "tt-entities", kParagraph, "&lt;&a"},
    {"ttml", "tt-line-breaks", kParagraph, "<br/>"},
    {"ttml", "tt-cues-at-once", kTtml, "<p end='1s'>@</p>"},
    {"ttml", "tt-backwards", kTtml, "<p begin='^s' end='9s'>x</p>"},
    {"ttml", "tt-spans-at-once", kParagraph, "<span begin='1s' end='2s'>x</span>"},
    {"ttml", "tt-spans-in-time", kParagraph, "<span begin='@t'>x</span>"},
    {"ttml", "tt-pieces", kTtml, "<p end='9s'>a<i end='1s'>b</i><i end='2s'>c</i></p>"},
    {"ttml", "tt-long-pieces",
     "<tt><body><p end='9s'><i end='1s'>1</i><i end='2s'>2</i><i end='3s'>3</i><i end='4s'>4</i>",
     "x "},
    {"ttml", "tt-absolute", kTtml, "<p begin='8s' end='9s'><i begin='8s' end='9s'>a</i></p>"},
    {"ttml", "tt-style-chain", "<tt><head><styling>", "<style xml:id='s@' style='s~'/>",
     "</styling></head><body><p end='1s' style='s9'>x</p></body></tt>"},
    {"ttml", "tt-style-names",
     "<tt><head><styling><style xml:id='a'/></styling></head><body><p end='1s' style='", "a ",
     "'>x</p>"},
    {"ttml", "tt-regions", "<tt><head><layout>", "<region xml:id='r@'><style style='r~'/></region>",
     "</layout></head>"},
    {"ttml", "tt-attributes", "<tt><body><p end='1s'", " a@='b'", ">x</p>"},
    {"ttml", "tt-languages", kTtml, "<p end='1s' xml:lang='l@'>x</p>"},
};

const Hostile kOthers[] = {
    {"microdvd", "dvd-braces", "{1}{25}", "{"},
    {"microdvd", "dvd-codes", "{1}{25}", "{y:i}x{C:$0000FF}"},
    {"microdvd", "dvd-cut-codes", "{1}{25}{DEFAULT}", "{y:{c:$"},
    {"microdvd", "dvd-defaults", "{1}{25}x\n{DEFAULT}{}", "{y:{C:$0000FF}"},
    {"microdvd", "dvd-bars", "{1}{25}", "/x|"},
    {"microdvd", "dvd-digits", "{1}{25}x\n{", "1", "}{2}x\n"},
    {"microdvd", "dvd-backwards", {}, "{^}{}x\n", {}},
    {"mpl2", "mpl2-signs", "[1][25]", "/\\_|"},
    {"mpl2", "mpl2-brackets", "[1][25]x\n", "["},
    {"mpl2", "mpl2-cues-at-once", {}, "[1][]@\n", {}},
    {"tmplayer", "tmp-bars", "00:00:01:", "/x|"},
    {"tmplayer", "tmp-lines", {}, "00:00:01,2=x\n", {}},
    {"tmplayer", "tmp-tags", "00:00:01:", "<x><i>y</"},
    {"subviewer", "sub-breaks", "00:00:01.00,00:00:02.00\n", "[br][x"},
    {"subviewer", "sub-tags", "00:00:01.00,00:00:02.00\n", "<i>a<b>b</i>c</b>\n"},
    {"sbv", "sbv-times", {}, "0:00:01.000,0:00:02.000\n@\n", {}},
    {"subviewer1", "sub1-times", {}, "[00:00:01]\n@\n", {}},
    {"lrc", "lrc-times", {}, "[00:01.00]", "x\n"},
    {"lrc", "lrc-lines", {}, "[00:01.00][00:01.00]x\n", {}},
    {"lrc", "lrc-words", "[00:01.00]", "<00:01.00> [00:01]<[0"},
    {"lrc", "lrc-tags", "[00:01.00]x\n", "[ti:x]\n"},
    {"mpsub", "mp-waits", "FORMAT=TIME\n", "0 1\n@\n\n", {}},
    {"mpsub", "mp-formats", "FORMAT=TIME\n1 1\nx\n\n", "FORMAT=@\n"},
    {"", "none-times", "x\n", "x\n10:30:00 x\n"},
    {"", "none-brackets", "x", "[[00:00:01]\n"},
    {"", "none-tags", {}, "<!-- <sync x='"},
};

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) {
    for (const char c : text) {
      const int number = c == '@' ? i : c == '~' ? i - 1 : times - i;
      if (c == '@' || c == '~' || c == '^') {
        result += std::to_string(number);
      } else {
        result += c;
      }
    }
  }
  return result;
}

/// A script of so many columns that has one event.
std::string columns(int count) {
  return "[Events]\nFormat: Start,End," + repeated("x,", count) +
         "Text\nDialogue: 0:00:01.00,0:00:02.00," + repeated(",", count) + "x\n";
}

/// Returns the milliseconds.
double measureHtml(const Hostile& hostile, int times, const std::string& content) {
  const std::string path = write("hostile.txt", content);
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  ksImportParser parser;
  const auto open = [&] {
    parser.Open(path.c_str(), options);
    if (parser.report().format() == hostile.format) return;
    throw std::runtime_error(std::string(hostile.series) + " is taken for " +
                             std::string(parser.report().format()));
  };
  const double milliseconds = measure(hostile.series, times, open);
  parser = ksImportParser();
  const std::size_t kept = keptBy(open);
  std::printf("%s-kept %d %.3g\n", hostile.series, times,
              static_cast<double>(kept) / static_cast<double>(content.size()));
  std::fflush(stdout);
  return milliseconds;
}

constexpr int kLeastTimes = 125'000;
constexpr int kMostTimes = 1'000'000;

/// Eight times the size may take eight times as long, and more where it no longer fits the caches
/// or is sorted; 64 times if what is done grows with the square.
bool isLinear(double least, double most) {
  constexpr double kMostGrowth = 32;
  constexpr double kTooShortToTell = 20;
  return most < kTooShortToTell || most < kMostGrowth * least;
}

template <typename Content>
bool measureSizes(const Hostile& hostile, Content content) {
  double least = 0;
  double most = 0;
  for (int times = kLeastTimes; times <= kMostTimes; times *= 2) {
    most = measureHtml(hostile, times, content(times));
    if (times == kLeastTimes) least = most;
  }
  if (!isLinear(least, most)) std::fprintf(stderr, "not linear: %s\n", hostile.series);
  return isLinear(least, most);
}

bool measureAll(std::span<const Hostile> rows) {
  bool areLinear = true;
  for (const Hostile& hostile : rows) {
    const auto content = [&](int times) {
      return hostile.head + repeated(hostile.again, times) + hostile.tail;
    };
    areLinear = measureSizes(hostile, content) && areLinear;
  }
  return areLinear;
}

}  // namespace

bool measureImportLimits() {
  // Where it is counted, unlike that of malloc().
  pugi::set_memory_management_functions([](std::size_t size) { return operator new(size); },
                                        [](void* block) { operator delete(block); });
  bool areLinear = measureSizes({"ass", "columns", {}, {}}, columns);
  for (const auto& rows : {std::span<const Hostile>(kSubRips), std::span<const Hostile>(kWebVtts),
                           std::span<const Hostile>(kSamis), std::span<const Hostile>(kTtmls),
                           std::span<const Hostile>(kOthers)}) {
    areLinear = measureAll(rows) && areLinear;
  }
  return areLinear;
}

}  // namespace bench
