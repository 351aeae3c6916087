// The text class once more, each rule in its most obvious form on a standard string.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <map>
#include <stdexcept>
#include <string>

#include "kssubtitle/strings/width_rules.h"

template <typename Char>
class StringsModel {
 public:
  using Str = std::basic_string<Char>;
  using Rules = kssubtitle::internal::WidthRules<Char>;

  StringsModel() = default;
  StringsModel(const Str& s) : text(s) {}
  StringsModel(const Char* p, int n) : text(piece(p, n)) {}
  StringsModel& operator=(const Char* p) { return *this = Str(p); }
  StringsModel& operator+=(const StringsModel& s) { return *this = text + s.text; }
  StringsModel& operator+=(int v) { return *this = text + Rules::textOfNumber(v); }
  StringsModel& operator+=(Char c) { return *this = text + c; }
  void append(const Char* p) { text += p; }
  void append(const Char* p, int n) { text += piece(p, n); }
  void replace(int pos, int n, const StringsModel& s) { text.replace(size(pos), size(n), s.text); }
  void clear() { *this = Str(); }

  int length() const { return static_cast<int>(text.size()); }
  const Char* getData() const { return (shown_ = text + end).c_str(); }
  explicit operator int() const { return number(getData()); }
  Char getChar(int i) const {
    if (i < 0 || i > length()) return 0;
    return i == length() ? end : text[size(i)];
  }
  void setchar(int i, Char c) {
    if (i >= 0 && i <= length()) (i == length() ? end : text[size(i)]) = c;
  }

  StringsModel substr(int start, int count) const {
    if (start < 0 || count == 0 || count < -1) return {};
    return text.substr(size(start), count == -1 ? Str::npos : size(count));
  }
  StringsModel Left(int n) const { return n < 0 || n > length() ? Str() : text.substr(0, size(n)); }
  StringsModel Right(int n) const {
    return n < 0 || n >= length() ? Str() : text.substr(size(length() - n));
  }
  int find(const Str& s, int start) const {
    return start < 0 ? -1 : static_cast<int>(text.find(s, size(start)));
  }
  int findNoCase(const Str& s, int) const { return StringsModel(upper(text)).find(upper(s), 0); }
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
  static bool isEqualNoCase(const StringsModel& a, const Str& b) {
    return upper(a.text) == upper(b);
  }
  void MakeLower() {
    *this = getData();
    for (Char& c : text) c = Rules::toLower(c);
  }

  void TrimLeft(Char c) {
    for (std::size_t i = 0; i < text.size() && text[i] == c; ++i) text.erase(i, 1);
  }
  void TrimRight(Char c) {
    while (text.ends_with(c)) text.pop_back();
  }
  void removeSpaces() {
    TrimRight(' ');
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
      text[size(from - count)] = getChar(from);
    }
    return length();
  }
  void replaceChars(const Str& from, const Str& to) {
    for (std::size_t at = 0; at == 0 && (at = text.find(from)) != Str::npos;) {
      text.replace(at, from.size(), to);
    }
  }
  bool isNumeric() const {
    const auto isDigit = [](Char c) { return '0' <= c && c <= '9'; };
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
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
  Char end = 0;  // what stands in the terminator's place

 private:
  static std::size_t size(int n) { return static_cast<std::size_t>(n); }
  static int number(const char* s) { return static_cast<int>(std::strtol(s, nullptr, 10)); }
  int number(const wchar_t* s) const {
    const bool isBase = length() >= 2 && length() <= 36;
    return isBase ? static_cast<int>(std::wcstol(s, nullptr, length())) : 0;
  }
  static Str piece(const Char* p, int n) {
    if (n < 0) throw std::length_error("a negative count");
    return Str(p, size(n));
  }
  static Str upper(Str s) {
    for (Char& c : s) c = Rules::toUpper(c);
    return s;
  }

  mutable Str shown_;
};
