// Every other format of the import library beside libavformat, which reads most of them.
#include "benchmarks/formats.h"

#include <kssubtitle/import.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "benchmarks/measure.h"
#include "benchmarks/peers.h"
#include "benchmarks/yardsticks.h"

namespace bench {
namespace {

using Cues = std::vector<CueView>;

/// How a cue is written in a format.
struct Format {
  const char* name;  // and the extension
  const char* head;
  std::string (*write)(const CueView& cue);
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

constexpr Format kFormats[] = {
    {"microdvd", "",
     [](const CueView& cue) {
       return "{" + frames(cue.start) + "}{" + frames(cue.end) + "}" + joined(cue.text, "|") + "\n";
     }},
    {"mpl2", "",
     [](const CueView& cue) {
       return "[" + tenths(cue.start) + "][" + tenths(cue.end) + "]" + joined(cue.text, "|") + "\n";
     }},
    {"tmplayer", "",
     [](const CueView& cue) {
       return clock(cue.start, ' ', 0) + ":" + joined(cue.text, "|") + "\n";
     }},
    {"subviewer", "",
     [](const CueView& cue) {
       return clock(cue.start, '.', 2) + "," + clock(cue.end, '.', 2) + "\n" +
              joined(cue.text, "[br]") + "\n\n";
     }},
    {"sbv", "",
     [](const CueView& cue) {
       return clock(cue.start, '.', 3).substr(1) + "," + clock(cue.end, '.', 3).substr(1) + "\n" +
              std::string(cue.text) + "\n\n";
     }},
    {"lrc", "",
     [](const CueView& cue) {
       char stamp[40];
       std::snprintf(stamp, sizeof stamp, "[%02lld:%02lld.%02lld]",
                     static_cast<long long>(cue.start / 60000),
                     static_cast<long long>(cue.start / 1000 % 60),
                     static_cast<long long>(cue.start / 10 % 100));
       return stamp + joined(cue.text, " ") + "\n";
     }},
    {"mpsub", "FORMAT=TIME\n",
     [](const CueView& cue) {
       const long long length = cue.end - cue.start;
       return "1.50 " + std::to_string(length / 1000) + "." + std::to_string(length / 100 % 10) +
              "0\n" + std::string(cue.text) + "\n\n";
     }},
    {"subviewer1", "[TITLE]\n\n******** START SCRIPT ********\n[BEGIN]\n",
     [](const CueView& cue) {
       return "[" + clock(cue.start, ' ', 0) + "]\n" + joined(cue.text, "|") + "\n[" +
              clock(cue.end, ' ', 0) + "]\n\n";
     }},
    {"webvtt", "WEBVTT\n\n",
     [](const CueView& cue) {
       return clock(cue.start, '.', 3) + " --> " + clock(cue.end, '.', 3) + "\n" +
              std::string(cue.text) + "\n\n";
     }},
    {"sami",
     "<SAMI>\n<HEAD>\n<STYLE TYPE=\"text/css\">\n<!--\n.ENCC {Name: English; lang: en-US;}\n-->\n"
     "</STYLE>\n</HEAD>\n<BODY>\n",
     [](const CueView& cue) {
       return "<SYNC Start=" + std::to_string(cue.start) + "><P Class=ENCC>\n" +
              joined(cue.text, "<br>\n") + "\n<SYNC Start=" + std::to_string(cue.end) +
              "><P Class=ENCC>&nbsp;\n";
     }},
    {"ttml",
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tt xmlns=\"http://www.w3.org/ns/ttml\" "
     "xmlns:tts=\"http://www.w3.org/ns/ttml#styling\" xml:lang=\"en\">\n<head>\n<styling>\n"
     "<style xml:id=\"s1\" tts:color=\"white\" tts:textAlign=\"center\"/>\n</styling>\n<layout>\n"
     "<region xml:id=\"r1\" tts:displayAlign=\"after\"/>\n</layout>\n</head>\n<body>\n<div>\n",
     [](const CueView& cue) {
       return "<p begin=\"" + clock(cue.start, '.', 3) + "\" end=\"" + clock(cue.end, '.', 3) +
              "\" region=\"r1\" style=\"s1\">" + joined(cue.text, "<br/>") + "</p>\n";
     }},
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

ksImportParser openFile(const std::string& path) {
  ksImportParser parser;
  if (!parser.Open(path.c_str())) throw std::runtime_error("the import library refuses " + path);
  return parser;
}

}  // namespace

FormatBenchmarks::FormatBenchmarks(const Input& film) {
  const OnePassFile subRip = onePass(film.path);
  for (const Peer& peer : peers()) {
    for (const Format& format : kFormats) {
      const std::string path = writeFile(format, subRip.cues);
      if (!peer.readsSubRip || peer.read(path) != subRip.cues.size()) continue;
      const ksImportParser parser = openFile(path);
      if (parser.report().format() != format.name) {
        throw std::runtime_error("the library misreads " + path);
      }
      const std::string name = format.name;
      measureReading("import/film." + name, [path] { return openFile(path); });
      measureReading(peer.name + "/film." + name, [read = peer.read, path] { return read(path); });
      files_.push_back({name, name + ", " + std::to_string(parser.report().size() / 1000) + " KB"});
    }
  }
}

void FormatBenchmarks::print(const Results& results) const {
  if (files_.empty()) return;
  printHead({"`Open` of a film of 4,826 cues", "time", "/ libavformat"});
  for (const File& file : files_) {
    const double open = results.of("import/film." + file.format).seconds;
    printRow({file.title, duration(open),
              ratio(open, results.of("libavformat/film." + file.format).seconds)});
  }
}

}  // namespace bench
