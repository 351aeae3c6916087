// Reads the columns of a script line one after the other.
#pragma once

#include <string>
#include <string_view>

#include "kssubtitle/strings/decimal.h"
#include "kssubtitle/strings/trimming.h"
#include "kssubtitle/strings/width_rules.h"

namespace kssubtitle::internal {

/// The number that `sscanf` finds in a token with "%f" under the host's locale; -1.0 if none.
double scanFloat(const std::string& token);
double scanFloat(const std::wstring& token);

/// Takes columns off the front of a line without shifting it; trimming rewrites the line's
/// characters in place.
template <typename Char>
class FieldReader {
 public:
  using View = std::basic_string_view<Char>;

  explicit FieldReader(std::basic_string<Char>& line) noexcept
      : begin_(line.data()), end_(line.data() + line.size()) {}

  /// What is left of the line.
  View rest() const noexcept { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }

  void trimBothSides() noexcept {
    begin_ = trimLeft(begin_, end_, Char{' '});
    end_ = trimRight(begin_, end_, Char{' '});
  }

  /// The text in front of the next `separator`. Deliberate: without one, all that is left, which
  /// stays in place for the next column.
  View text(Char separator) noexcept {
    begin_ = trimLeft(begin_, end_, Char{' '});
    const View all = rest();
    const std::size_t found = all.find(separator);
    if (found == View::npos) return all;
    begin_ += found + 1;
    return all.substr(0, found);
  }

  /// A decimal column; -1 if it is no number. Deliberate: hexadecimal ones never are.
  int integer(Char separator) {
    const View token = text(separator);
    if (isHexadecimal(token)) return -1;
    return scanDecimal(token).value_or(-1);
  }

  double real(Char separator) {
    std::basic_string<Char> token(text(separator));
    for (Char& c : token) c = WidthRules<Char>::toLower(c);
    return scanFloat(token);
  }

 private:
  static bool isHexadecimal(View token) noexcept {
    return token.size() >= 2 && token[0] == '&' && WidthRules<Char>::toLower(token[1]) == 'h';
  }

  Char* begin_;
  Char* end_;
};

}  // namespace kssubtitle::internal
