// What the import library answers, by a look at every cue.
#pragma once

#include <algorithm>
#include <climits>
#include <map>
#include <span>
#include <string>

#include "kssubtitle/import.h"

struct ShownText {
  long long start = -1;
  long long end = -1;
  std::string text;

  bool operator==(const ShownText&) const = default;
};

inline ShownText shownAt(std::span<const ksImportCue> cues, long long t) {
  ShownText shown{0, LLONG_MAX, {}};
  std::map<int, std::string> texts;  // by place in the file
  bool oneEnds = false;
  for (const ksImportCue& cue : cues) {
    const long long start = std::max(cue.start, 0LL);
    if (t < 0 || cue.end <= start || cue.isDuplicate) continue;
    for (const long long boundary : {start, cue.end}) {
      if (boundary <= t) shown.start = std::max(shown.start, boundary);
      if (boundary > t) shown.end = std::min(shown.end, boundary);
    }
    if (start <= t && t < cue.end) texts[cue.index] = cue.text;
    oneEnds = oneEnds || cue.end == t;
  }
  if (texts.empty()) return oneEnds ? shownAt(cues, t - 1) : ShownText();
  for (const auto& [index, text] : texts) shown.text += '\n' + text;
  return shown;
}

inline ShownText ask(ksImportParser& parser, long long t) {
  const SUBTITLE_ST answer = parser.GetSubTitle(t);
  return {answer.start, answer.end, answer.text.getData()};
}
