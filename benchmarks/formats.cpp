// Every other format of the import library beside a pass over its own files.
#include "benchmarks/formats.h"

#include <kssubtitle/import.h>

#include <charconv>
#include <cstdio>
#include <fstream>
#include <pugixml.hpp>
#include <stdexcept>
#include <string_view>

#include "benchmarks/measure.h"
#include "benchmarks/peers.h"
#include "benchmarks/yardsticks.h"

namespace bench {
namespace {

using Cues = std::vector<CueView>;

/// A format: how a cue is written in it, and how its cues are found at least.
struct Format {
  const char* name;  // and the extension
  const char* head;
  std::string (*write)(const CueView& cue);
  Cues (*pass)(std::string_view text);
};

/// "h:mm:ss", and `digits` of the fraction.
std::string clock(long long t, char point, int digits) {
  char text[40];
  int size = std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld", t / 3600000, t / 60000 % 60,
                           t / 1000 % 60);
  if (digits > 0) size += std::snprintf(text + size, 10, "%c%03lld", point, t % 1000) - 3 + digits;
  return {text, static_cast<std::size_t>(size)};
}

std::string joined(std::string_view text, std::string_view lineBreak) {
  std::string line;
  for (const char c : text) line += c == '\n' ? lineBreak : std::string_view(&c, 1);
  return line;
}

std::string frames(long long t) { return std::to_string(t / 40); }
std::string tenths(long long t) { return std::to_string(t / 100); }

// How cues are found: numbers and delimiters are taken where a well made file has them.

std::string_view takeTo(std::string_view& rest, std::string_view end) {
  const std::size_t length = std::min(rest.find(end), rest.size());
  const std::string_view piece = rest.substr(0, length);
  rest.remove_prefix(std::min(length + end.size(), rest.size()));
  return piece;
}

/// Takes a number and the character behind it.
long long takeNumber(std::string_view& rest) {
  long long number = 0;
  const char* const end = std::from_chars(rest.data(), rest.data() + rest.size(), number).ptr;
  const auto length = static_cast<std::size_t>(end - rest.data()) + 1;
  rest.remove_prefix(std::min(length, rest.size()));
  return number;
}

/// Takes "h:m:s" and the character behind it.
long long takeClock(std::string_view& rest) {
  const long long hours = takeNumber(rest);
  const long long minutes = takeNumber(rest);
  return ((hours * 60 + minutes) * 60 + takeNumber(rest)) * 1000;
}

void skip(std::string_view& rest, std::size_t count) {
  rest.remove_prefix(std::min(count, rest.size()));
}

/// Cues of one line: two numbers in brackets, and the text.
template <int kUnit>
Cues spanLines(std::string_view rest) {
  Cues cues;
  while (!rest.empty()) {
    std::string_view line = takeTo(rest, "\n");
    CueView cue;
    skip(line, 1);
    cue.start = takeNumber(line) * kUnit;
    skip(line, 1);
    cue.end = takeNumber(line) * kUnit;
    cue.text = line;
    cues.push_back(cue);
  }
  return cues;
}

/// Cues of one line: a time, and the text.
Cues clockLines(std::string_view rest) {
  Cues cues;
  while (!rest.empty()) {
    std::string_view line = takeTo(rest, "\n");
    const long long start = takeClock(line);
    cues.push_back({start, 0, line});
  }
  return cues;
}

Cues stampLines(std::string_view rest) {
  Cues cues;
  while (!rest.empty()) {
    std::string_view line = takeTo(rest, "\n");
    skip(line, 1);
    const long long minutes = takeNumber(line);
    const long long seconds = takeNumber(line);
    cues.push_back({(minutes * 60 + seconds) * 1000 + takeNumber(line) * 10, 0, line});
  }
  return cues;
}

/// Cues of a line of times, and text up to a blank line.
template <int kUnit, std::size_t kBetween>
Cues blocks(std::string_view rest) {
  Cues cues;
  while (!rest.empty()) {
    CueView cue;
    cue.start = takeClock(rest);
    cue.start += takeNumber(rest) * kUnit;
    skip(rest, kBetween);
    cue.end = takeClock(rest);
    cue.end += takeNumber(rest) * kUnit;
    cue.text = takeTo(rest, "\n\n");
    cues.push_back(cue);
  }
  return cues;
}

Cues headedBlocks(std::string_view rest) {
  takeTo(rest, "\n\n");
  return blocks<1, 4>(rest);
}

Cues waits(std::string_view rest) {
  takeTo(rest, "\n");
  Cues cues;
  long long end = 0;
  while (!rest.empty()) {
    CueView cue;
    const auto hundredths = [&rest] {
      const long long seconds = takeNumber(rest);
      return seconds * 1000 + takeNumber(rest) * 10;
    };
    cue.start = end + hundredths();
    cue.end = end = cue.start + hundredths();
    cue.text = takeTo(rest, "\n\n");
    cues.push_back(cue);
  }
  return cues;
}

Cues timesAround(std::string_view rest) {
  takeTo(rest, "[BEGIN]\n");
  Cues cues;
  while (!rest.empty()) {
    CueView cue;
    skip(rest, 1);
    cue.start = takeClock(rest);
    skip(rest, 1);
    cue.text = takeTo(rest, "\n");
    skip(rest, 1);
    cue.end = takeClock(rest);
    skip(rest, 2);
    cues.push_back(cue);
  }
  return cues;
}

/// A text, and a paragraph that says where it ends.
Cues syncs(std::string_view rest) {
  takeTo(rest, "<BODY>\n");
  Cues cues;
  while (rest.starts_with("<SYNC")) {
    CueView cue;
    takeTo(rest, "=");
    cue.start = takeNumber(rest);
    takeTo(rest, ">");
    cue.text = takeTo(rest, "\n<SYNC Start=");
    cue.end = takeNumber(rest);
    takeTo(rest, "\n");
    cues.push_back(cue);
  }
  return cues;
}

/// What the XML parser does alone; the elements that it finds are counted, not read.
Cues xmlElements(std::string_view text) {
  std::string copy(text);
  pugi::xml_document document;
  document.load_buffer_inplace(copy.data(), copy.size(),
                               pugi::parse_ws_pcdata | pugi::parse_cdata | pugi::parse_embed_pcdata,
                               pugi::encoding_utf8);
  const pugi::xml_node division = document.document_element().child("body").child("div");
  Cues cues;
  for (pugi::xml_node cue = division.child("p"); cue; cue = cue.next_sibling("p")) {
    cues.emplace_back();
  }
  return cues;
}

constexpr Format kFormats[] = {
    {"microdvd", "",
     [](const CueView& cue) {
       return "{" + frames(cue.start) + "}{" + frames(cue.end) + "}" + joined(cue.text, "|") + "\n";
     },
     spanLines<40>},
    {"mpl2", "",
     [](const CueView& cue) {
       return "[" + tenths(cue.start) + "][" + tenths(cue.end) + "]" + joined(cue.text, "|") + "\n";
     },
     spanLines<100>},
    {"tmplayer", "",
     [](const CueView& cue) {
       return clock(cue.start, ' ', 0) + ":" + joined(cue.text, "|") + "\n";
     },
     clockLines},
    {"subviewer", "",
     [](const CueView& cue) {
       return clock(cue.start, '.', 2) + "," + clock(cue.end, '.', 2) + "\n" +
              joined(cue.text, "[br]") + "\n\n";
     },
     blocks<10, 0>},
    {"sbv", "",
     [](const CueView& cue) {
       return clock(cue.start, '.', 3).substr(1) + "," + clock(cue.end, '.', 3).substr(1) + "\n" +
              std::string(cue.text) + "\n\n";
     },
     blocks<1, 0>},
    {"lrc", "",
     [](const CueView& cue) {
       char stamp[40];
       std::snprintf(stamp, sizeof stamp, "[%02lld:%02lld.%02lld]",
                     static_cast<long long>(cue.start / 60000),
                     static_cast<long long>(cue.start / 1000 % 60),
                     static_cast<long long>(cue.start / 10 % 100));
       return stamp + joined(cue.text, " ") + "\n";
     },
     stampLines},
    {"mpsub", "FORMAT=TIME\n",
     [](const CueView& cue) {
       const long long length = cue.end - cue.start;
       return "1.50 " + std::to_string(length / 1000) + "." + std::to_string(length / 100 % 10) +
              "0\n" + std::string(cue.text) + "\n\n";
     },
     waits},
    {"subviewer1", "[TITLE]\n\n******** START SCRIPT ********\n[BEGIN]\n",
     [](const CueView& cue) {
       return "[" + clock(cue.start, ' ', 0) + "]\n" + joined(cue.text, "|") + "\n[" +
              clock(cue.end, ' ', 0) + "]\n\n";
     },
     timesAround},
    {"webvtt", "WEBVTT\n\n",
     [](const CueView& cue) {
       return clock(cue.start, '.', 3) + " --> " + clock(cue.end, '.', 3) + "\n" +
              std::string(cue.text) + "\n\n";
     },
     headedBlocks},
    {"sami",
     "<SAMI>\n<HEAD>\n<STYLE TYPE=\"text/css\">\n<!--\n.ENCC {Name: English; lang: en-US;}\n-->\n"
     "</STYLE>\n</HEAD>\n<BODY>\n",
     [](const CueView& cue) {
       return "<SYNC Start=" + std::to_string(cue.start) + "><P Class=ENCC>\n" +
              joined(cue.text, "<br>\n") + "\n<SYNC Start=" + std::to_string(cue.end) +
              "><P Class=ENCC>&nbsp;\n";
     },
     syncs},
    {"ttml",
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tt xmlns=\"http://www.w3.org/ns/ttml\" "
     "xmlns:tts=\"http://www.w3.org/ns/ttml#styling\" xml:lang=\"en\">\n<head>\n<styling>\n"
     "<style xml:id=\"s1\" tts:color=\"white\" tts:textAlign=\"center\"/>\n</styling>\n<layout>\n"
     "<region xml:id=\"r1\" tts:displayAlign=\"after\"/>\n</layout>\n</head>\n<body>\n<div>\n",
     [](const CueView& cue) {
       return "<p begin=\"" + clock(cue.start, '.', 3) + "\" end=\"" + clock(cue.end, '.', 3) +
              "\" region=\"r1\" style=\"s1\">" + joined(cue.text, "<br/>") + "</p>\n";
     },
     xmlElements},
};

std::string tailOf(std::string_view format) {
  return format == "ttml" ? "</div>\n</body>\n</tt>\n" : "";
}

std::string writeFile(const Format& format, const Cues& film) {
  std::string path = std::string(INPUT_DIRECTORY "/film.") + format.name;
  std::ofstream file(path, std::ios::binary);
  file << format.head;
  for (const CueView& cue : film) file << format.write(cue);
  file << tailOf(format.name);
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
  return path;
}

OnePassFile passOver(const Format& format, const std::string& path) {
  OnePassFile file = readOnly(path);
  file.cues = format.pass({file.bytes.get(), file.size});
  return file;
}

ksImportParser openFile(const std::string& path) {
  ksImportParser parser;
  if (!parser.Open(path.c_str())) throw std::runtime_error("the import library refuses " + path);
  return parser;
}

}  // namespace

FormatBenchmarks::FormatBenchmarks(const Input& film) {
  const OnePassFile subRip = onePass(film.path);
  for (const Format& format : kFormats) {
    const std::string path = writeFile(format, subRip.cues);
    const ksImportParser parser = openFile(path);
    if (parser.report().format() != format.name ||
        parser.cues().size() != passOver(format, path).cues.size()) {
      throw std::runtime_error("the library and the yardstick disagree on " + path);
    }
    const std::string name = format.name;
    measureReading("import/film." + name, [path] { return openFile(path); });
    measureReading("pass/film." + name, [&format, path] { return passOver(format, path); });
    for (const Peer& peer : peers()) {
      const bool reads = peer.readsSubRip && name != "ttml";
      if (!reads || peer.read(path) != subRip.cues.size()) continue;
      measureReading(peer.name + "/film." + name, [read = peer.read, path] { return read(path); });
    }
    files_.push_back({name, name + ", " + std::to_string(parser.report().size() / 1000) + " KB"});
  }
}

void FormatBenchmarks::print(const Results& results) const {
  printHead({"`Open` of a film of 4,826 cues", "time", "/ one pass", "/ libavformat"});
  for (const File& file : files_) {
    const double open = results.of("import/film." + file.format).seconds;
    printRow({file.title, duration(open),
              ratio(open, results.of("pass/film." + file.format).seconds),
              ratio(open, results.of("libavformat/film." + file.format).seconds)});
  }
}

}  // namespace bench
