// What the library's work costs at least, in three designs: the measure of its own speed.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

struct Cue {
  std::int64_t start = 0;
  std::int64_t end = 0;
  std::string text;  ///< Begins with a line feed.
};

/// The least for a design that keeps lines and records.
struct PlainFile {
  std::vector<std::string> lines;
  std::map<int, Cue> cues;
};

PlainFile plainLoop(const std::string& path);

struct CueView {
  std::int64_t start = 0;
  std::int64_t end = 0;
  std::string_view text;  ///< As the file has it.
};

/// The least for any design: no byte of the file is copied.
struct OnePassFile {
  std::unique_ptr<char[]> bytes;
  std::size_t size;
  std::vector<CueView> cues;
};

/// The bytes alone.
OnePassFile readOnly(const std::string& path);
OnePassFile onePass(const std::string& path);

/// The least for an answer that owns its text: a binary search over disjoint segments.
template <typename Char>
class SegmentSearch {
 public:
  struct Answer {
    std::int64_t start = -1;
    std::int64_t end = -1;
    std::basic_string<Char> text;
  };

  explicit SegmentSearch(const std::map<int, Cue>& cues) {
    std::map<std::int64_t, int> cueFrom{{std::numeric_limits<std::int64_t>::min(), kNoCue}};
    for (const auto& [key, cue] : cues) {
      const int covered = std::prev(cueFrom.upper_bound(cue.end + 1))->second;
      cueFrom.erase(cueFrom.lower_bound(cue.start), cueFrom.upper_bound(cue.end + 1));
      cueFrom[cue.start] = static_cast<int>(cues_.size());
      cueFrom[cue.end + 1] = covered;
      cues_.push_back({cue.start, cue.end, {cue.text.begin(), cue.text.end()}});
    }
    for (const auto& [first, cue] : cueFrom) segments_.push_back({first, cue});
  }

  Answer at(std::int64_t t) const {
    const auto next = std::ranges::upper_bound(segments_, t, {}, &Segment::first);
    const int cue = std::prev(next)->cue;
    return cue == kNoCue ? Answer{} : cues_[static_cast<std::size_t>(cue)];
  }

 private:
  static constexpr int kNoCue = -1;

  /// Reaches to the next one.
  struct Segment {
    std::int64_t first;
    int cue;
  };

  std::vector<Segment> segments_;
  std::vector<Answer> cues_;
};

}  // namespace bench
