// The lines of a text, and how they end.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "kssubtitle/import/ksImportReport.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

/// Tells how the lines of `text` end, and lets each lone carriage return be a line feed. One that
/// stands in front of a line feed stays: to every reader it is white space at a line's end.
ksImportLineEnds settleLineEnds(std::string& text);

/// Drops the marks of UTF-8 that stand at the fronts of lines, where files were put together, or
/// that a second editor added, but in front of WebVTT; whether there were any.
bool dropMarks(std::string& text);

/// A line of a text, without its line feed and the carriage returns in front of it.
struct Line {
  std::string_view text;
  int number = 0;         ///< From 1.
  std::size_t begin = 0;  ///< Its place in the whole text.
  std::size_t next = 0;   ///< Where the next line begins.
};

/// Hands out the lines of a text one after the other.
class Lines {
 public:
  explicit Lines(std::string_view text, std::size_t begin = 0, int number = 1) noexcept
      : text_(text), at_(begin), number_(number) {}

  /// False at the end; a line feed at the end of the text begins no further line.
  bool next(Line& line) noexcept {
    if (at_ >= text_.size()) return false;
    const std::size_t end = std::min(text_.find('\n', at_), text_.size());
    std::string_view content = text_.substr(at_, end - at_);
    while (!content.empty() && content.back() == '\r') content.remove_suffix(1);
    line = {content, number_++, at_, end + 1};
    at_ = end + 1;
    return true;
  }

 private:
  std::string_view text_;
  std::size_t at_;
  int number_;
};

/// How many lines end in `text`, which settleLineEnds() has seen.
int countLines(std::string_view text) noexcept;

/// The length of an HTTP header ("Content-Type: ..." lines and a blank one) in front; 0 without
/// one.
std::size_t httpHeaderLength(std::string_view text) noexcept;

}  // namespace kssubtitle::importing
