// Reads the columns of a line in turn: of scripts, and for the field readers that
// parsers have.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "kssubtitle/parsers/decimal.h"
#include "kssubtitle/parsers/times.h"
#include "kssubtitle/strings/trimming.h"
#include "kssubtitle/strings/view.h"
#include "kssubtitle/strings/width_rules.h"

namespace kssubtitle::internal {

/// The number that `sscanf` finds in a token with "%f" under the host's locale; -1.0 if none.
double scanFloat(const std::string& token);
double scanFloat(const std::wstring& token);

/// A decimal column; -1 if it is no number. Deliberate: hexadecimal ones ("&H...") never are.
template <typename Char>
int integerOf(std::basic_string_view<Char> token) {
  return scanDecimal(token).value_or(-1);
}

/// Takes columns off the front of a line without shifting it; trimming rewrites the line's
/// characters in place.
template <typename Char>
class ColumnReader {
 public:
  using View = std::basic_string_view<Char>;

  explicit ColumnReader(std::basic_string<Char>& line) noexcept
      : begin_(line.data()), end_(line.data() + line.size()) {}

  /// What is left of the line.
  View rest() const noexcept { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }

  /// Puts a NUL after the line.
  void trimBothSides() noexcept {
    begin_ = trimLeft(begin_, end_, Char{' '});
    end_ = trimRight(begin_, end_, Char{' '});
    *end_ = Char{};
  }

  /// The text before the next `separator`. Deliberate: without one, all that is left, which
  /// stays in place for the next column.
  View text(Char separator = Char{','}) noexcept {
    begin_ = trimLeft(begin_, end_, Char{' '});
    return upTo(separator);
  }

  /// text() without trimming first.
  View upTo(Char separator) noexcept {
    Char* const found = std::find(begin_, end_, separator);
    if (found == end_) return rest();
    const View token(begin_, static_cast<std::size_t>(found - begin_));
    begin_ = found + 1;
    return token;
  }

  /// Takes text of this form, as readForm() does; false, with nothing taken, if another one
  /// follows.
  template <std::size_t kSize>
  bool take(const char (&form)[kSize], int (&fields)[4]) noexcept {
    if (rest().size() < kSize - 1 || !readForm(form, begin_, fields)) return false;
    begin_ += kSize - 1;
    return true;
  }

  /// A column read by integerOf().
  int integer(Char separator = Char{','}) { return integerOf(text(separator)); }

  /// A column read by scanFloat(), in lower case.
  double real(Char separator = Char{','}) {
    std::basic_string<Char> token(text(separator));
    for (Char& c : token) c = WidthRules<Char>::toLower(c);
    return scanFloat(token);
  }

 private:
  Char* begin_;
  Char* end_;
};

/// Lets `read` remove a column from the front of `s`.
template <typename Char, typename Read>
auto takeColumn(ksBasicString<Char>& s, Read read) {
  std::basic_string<Char> text(viewOf(s));
  ColumnReader<Char> reader(text);
  auto field = read(reader);
  s = std::basic_string<Char>(reader.rest());
  return field;
}

}  // namespace kssubtitle::internal
