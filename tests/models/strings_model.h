// The text class once more: its odd rules in their most obvious form on a standard string.
#pragma once

#include <algorithm>
#include <map>
#include <string>

#include "kssubtitle/strings/width_rules.h"

template <typename Char>
class StringsModel {
 public:
  using Str = std::basic_string<Char>;
  using Rules = kssubtitle::internal::WidthRules<Char>;

  int length() const { return static_cast<int>(text.size()); }

  int findlast(const Str& set, int start) const {
    int i = start < 0 || start >= length() ? length() - 1 : start;
    while (i >= 0 && set.find(text[size(i)]) == Str::npos) --i;
    return i;
  }
  int findlastNoCase(const Str& s, int start) const {
    const int last = start < 1 || start >= length() ? length() - 1 : start;
    int p = last + 1 - static_cast<int>(s.size());
    while (p >= 0 && upper(s) != upper(text.substr(size(p), s.size()))) --p;
    return std::max(p, -1);
  }

  void TrimLeft(Char c) {
    for (std::size_t i = 0; i < text.size() && text[i] == c; ++i) text.erase(i, 1);
  }
  void removeSpaces() {
    while (text.ends_with(' ')) text.pop_back();
    while (text.starts_with(' ')) text.erase(0, 1);
  }
  void clearSpaces() { replaceChars(Str(1, ' '), Str()); }
  void removeQuo() {
    std::size_t quotes = 0;
    while (quotes + 1 < text.size() && text[quotes] == '"') ++quotes;
    text.erase(0, quotes);
  }
  void removeLastChar() {
    while (text.ends_with('\r') || text.ends_with('\n')) text.pop_back();
    end = 0;
  }
  int deleteStr(int start, int count) {
    start = std::max(start, 0);
    count = std::min(count, length() - start);
    for (int from = start + count; count > 0 && from <= length(); ++from) {
      text[size(from - count)] = from < length() ? text[size(from)] : end;
    }
    return length();
  }
  void replaceChars(const Str& from, const Str& to) {
    for (std::size_t at = 0; at == 0 && (at = text.find(from)) != Str::npos;) {
      text.replace(at, from.size(), to);
    }
  }

  int match(const Str& pattern, StringsModel* before, bool cut, const Str& replacement) {
    const std::size_t at = text.find(pattern);
    if (at == Str::npos) return 2;
    if (before != nullptr) before->text = text.substr(0, at);
    const bool fits = at + pattern.size() <= text.size();
    if (cut && fits) text = replacement + text.substr(at + pattern.size());
    return at > 0 ? 1 : 0;
  }
  std::map<int, StringsModel> split(const Str& separator) const {
    std::map<int, StringsModel> pieces;
    StringsModel rest = *this;
    int i = 0;
    for (StringsModel piece; rest.match(separator, &piece, true, Str()) != 2;) pieces[i++] = piece;
    if (rest.length() > 0) pieces[i] = rest;
    return pieces;
  }
  void inflate(int width, const Str& fill, bool atFront) {
    Str padding;
    while (length() + static_cast<int>(padding.size()) < width) padding += fill;
    padding.resize(size(std::max(width - length(), 0)));
    text = atFront ? padding + text : text + padding;
  }

  Str text;
  Char end{};  // what is in the terminator's place

 private:
  static std::size_t size(int n) { return static_cast<std::size_t>(n); }
  static Str upper(Str s) {
    for (Char& c : s) c = Rules::toUpper(c);
    return s;
  }
};
