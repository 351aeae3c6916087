// What the tests of the import library share.
#pragma once

#include <algorithm>
#include <random>
#include <string>

#include "kssubtitle/import.h"
#include "tests/support.h"

struct Random {
  explicit Random(unsigned seed) : engine(seed) {}
  unsigned operator()() { return static_cast<unsigned>(engine()); }
  std::mt19937 engine;
};

/// "START-END TEXT" of every cue, with '|' between lines, "@N" before an unusual alignment.
inline std::string cuesOf(const ksImportParser& parser) {
  std::string all;
  for (const ksImportCue& cue : parser.cues()) {
    all += (all.empty() ? "" : "; ") + std::to_string(cue.start) + "-" + std::to_string(cue.end);
    all += ' ' + (cue.alignment == 2 ? "" : "@" + std::to_string(cue.alignment) + " ");
    all += cue.text;
  }
  std::replace(all.begin(), all.end(), '\n', '|');
  return all;
}

/// "LINE PROBLEM" of every note.
inline std::string notesOf(const ksImportParser& parser) {
  constexpr const char* kNames[] = {"NumberMissing",     "NumberDoubled",
                                    "NumberFalling",     "CueWithoutText",
                                    "EndNotBehindStart", "Overlap",
                                    "TimeRepaired",      "TimeUnreadable",
                                    "LineIgnored",       "TagUnclosed",
                                    "Undecodable",       "NulCharacter",
                                    "CueCutOff",         "ColumnsMissing",
                                    "UnknownStyle",      "NoFrameRate",
                                    "EndAssumed",        "Duplicate",
                                    "PictureDamaged",    "ColorsChange",
                                    "OutsideParent",     "ContainerWithoutTime",
                                    "Unsupported",       "IndexUnreadable"};
  std::string all;
  for (const ksImportNote& note : parser.report().notes()) {
    all += (all.empty() ? "" : "; ") + std::to_string(note.line) + " " +
           kNames[static_cast<std::size_t>(note.problem)];
  }
  return all;
}

inline bool openText(ksImportParser& parser, const std::string& text,
                     const ksImportOptions& options = {}) {
  return parser.OpenMemory(text.data(), text.size(), options);
}

/// "@N" becomes the time line of a SubRip cue from second N to the next, "#N" the columns of an ASS
/// event before its text.
inline std::string withTimes(std::string_view text) {
  std::string full;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isSubRip = text[i] == '@';
    if ((!isSubRip && text[i] != '#') || i + 1 == text.size() || text[i + 1] < '1' ||
        text[i + 1] > '8') {
      full += text[i];
      continue;
    }
    const char start = text[++i];
    const char end = static_cast<char>(start + 1);
    full += isSubRip ? std::string("00:00:0") + start + ",000 --> 00:00:0" + end + ",000\n"
                     : std::string("Dialogue: 0,0:00:0") + start + ".00,0:00:0" + end +
                           ".00,Default,,0,0,0,,";
  }
  return full;
}
