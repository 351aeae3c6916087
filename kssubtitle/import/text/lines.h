// The lines of a text and how they end.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "kssubtitle/import/ksImportReport.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

/// Returns how the lines of `text` end, and replaces each lone carriage return by a line feed. One
/// before a line feed stays: to every reader it is white space at the end of a line.
ksImportLineEnds settleLineEnds(std::string& text);

/// Drops the BOMs at the beginnings of lines, which files have that were joined or saved by two
/// editors, but not one before "WEBVTT".
void dropBoms(std::string& text);

/// A line of a text, without its line feed and the carriage returns before it.
struct Line {
  std::string_view text;
  int number = 0;         ///< From 1.
  std::size_t begin = 0;  ///< Its offset in the whole text.
  std::size_t next = 0;   ///< Where the next line begins.
};

/// The lines of a text, for loops over them. A line feed at the end begins no further line.
class Lines {
 public:
  class Iterator {
   public:
    Iterator(std::string_view text, std::size_t begin, int number) noexcept : text_(text) {
      read(begin, number);
    }

    const Line& operator*() const noexcept { return line_; }
    Iterator& operator++() noexcept {
      read(line_.next, line_.number + 1);
      return *this;
    }
    bool operator==(std::default_sentinel_t /*end*/) const noexcept {
      return line_.begin >= text_.size();
    }

   private:
    void read(std::size_t begin, int number) noexcept {
      const std::size_t end = std::min(text_.find('\n', begin), text_.size());
      std::string_view content = text_.substr(std::min(begin, end), end - std::min(begin, end));
      while (content.ends_with('\r')) content.remove_suffix(1);
      line_ = {content, number, begin, end + 1};
    }

    std::string_view text_;
    Line line_;
  };

  explicit Lines(std::string_view text, std::size_t begin = 0, int number = 1) noexcept
      : begin_(text, begin, number) {}

  Iterator begin() const noexcept { return begin_; }
  static std::default_sentinel_t end() noexcept { return {}; }

 private:
  Iterator begin_;
};

/// How many lines end in `text`, which has been through settleLineEnds().
inline int countLines(std::string_view text) noexcept {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

/// The line numbers of places, which must be asked for in order.
class LineNumbers {
 public:
  explicit LineNumbers(std::string_view text, std::size_t begin = 0, int number = 1) noexcept
      : text_(text), at_(begin), number_(number) {}

  int of(std::size_t place) noexcept {
    number_ += countLines(text_.substr(at_, place - at_));
    at_ = place;
    return number_;
  }

 private:
  std::string_view text_;
  std::size_t at_;
  int number_;
};

/// The length of the HTTP header ("Content-Type: ..." lines and a blank one) that a text begins
/// with; 0 without one.
std::size_t httpHeaderLength(std::string_view text) noexcept;

}  // namespace kssubtitle::importing
