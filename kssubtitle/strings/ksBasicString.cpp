// The text class, instantiated for the two widths.
#include "kssubtitle/strings/ksBasicString.h"

#include <algorithm>
#include <stdexcept>

#include "kssubtitle/strings/replacing.h"
#include "kssubtitle/strings/trimming.h"
#include "kssubtitle/strings/width_rules.h"

#if !defined(__GLIBCXX__) || !_GLIBCXX_USE_CXX11_ABI
#error "setchar() relies on the std::string of libstdc++ with its C++11 ABI"
#endif

namespace {

using kssubtitle::internal::trimLeft;
using kssubtitle::internal::trimRight;
using kssubtitle::internal::WidthRules;

constexpr int kNotFound = -1;

template <typename Char>
constexpr Char kSpace = Char{' '};

int positionOf(std::size_t found) noexcept {
  if (found == std::string::npos) return kNotFound;
  return static_cast<int>(std::min<std::size_t>(found, std::numeric_limits<int>::max()));
}

std::size_t countOf(int n) {
  if (n < 0) throw std::length_error("ksBasicString: negative count");
  return static_cast<std::size_t>(n);
}

template <typename Char>
void lowerCase(Char* p, std::size_t n) noexcept {
  std::transform(p, p + n, p, [](Char c) { return WidthRules<Char>::toLower(c); });
}

template <typename Char>
bool equalNoCase(const Char* a, const Char* b, std::size_t n) noexcept {
  return std::equal(a, a + n, b, [](Char x, Char y) {
    return WidthRules<Char>::toUpper(x) == WidthRules<Char>::toUpper(y);
  });
}

}  // namespace

// ---- Construction and assignment ----

template <typename Char>
ksBasicString<Char>::ksBasicString(const Char* p, int n) : text_(p, countOf(n)) {}

template <typename Char>
ksBasicString<Char>::ksBasicString(const Char* p) : text_(p) {}

template <typename Char>
ksBasicString<Char>::ksBasicString(const String& s) : text_(s) {}

template <typename Char>
ksBasicString<Char>::ksBasicString(int v) : text_(WidthRules<Char>::textOfNumber(v)) {}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::operator=(const Char* p) {
  text_ = String(p);  // `p` may point into this text, after its recorded end included
  return *this;
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::deepCopy(const ksBasicString& src, Char**, int*) {
  return *this = src;
}

// ---- Access ----

template <typename Char>
ksBasicString<Char>::operator int() const noexcept {
  return WidthRules<Char>::numberOfText(text_);
}

template <typename Char>
void ksBasicString<Char>::setchar(int i, Char c) {
  if (i < 0 || i > length()) return;
  if (i == length()) {
    // Leaves a second NUL after the terminator, so that the storage stays terminated.
    text_.push_back(Char{});
    text_.pop_back();
  }
  // Over the terminator this relies on libstdc++, whose string keeps its length apart and does not
  // share its storage; the C++ standard leaves undefined what else than NUL is written there.
  text_.data()[i] = c;
}

// ---- Comparison ----

template <typename Char>
bool ksBasicString<Char>::operator==(const Char* p) const noexcept {
  return text_ == p;
}

template <typename Char>
bool ksBasicString<Char>::operator<(const ksBasicString& s) const noexcept {
  using Order = typename WidthRules<Char>::Order;
  return std::lexicographical_compare(
      text_.begin(), text_.end(), s.text_.begin(), s.text_.end(),
      [](Char a, Char b) { return static_cast<Order>(a) < static_cast<Order>(b); });
}

// ---- Concatenation ----

template <typename Char>
ksBasicString<Char> ksBasicString<Char>::operator+(const ksBasicString& s) const {
  return text_ + s.text_;
}

template <typename Char>
ksBasicString<Char> ksBasicString<Char>::operator+(const Char* p) const {
  return text_ + p;
}

template <typename Char>
ksBasicString<Char> ksBasicString<Char>::operator+(int v) const {
  return text_ + WidthRules<Char>::textOfNumber(v);
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::operator+=(const ksBasicString& s) {
  text_ += s.text_;
  return *this;
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::operator+=(const Char* p) {
  return append(p);
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::operator+=(int v) {
  text_ += WidthRules<Char>::textOfNumber(v);
  return *this;
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::operator+=(Char c) {
  text_ += c;
  return *this;
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::append(const Char* p) {
  text_ += String(p);  // `p` may point into this text, after its recorded end included
  return *this;
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::append(const Char* p, int n) {
  text_.append(p, countOf(n));
  return *this;
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::replace(int pos, int n, const ksBasicString& s) {
  text_.replace(static_cast<std::size_t>(pos), static_cast<std::size_t>(n), s.text_);
  return *this;
}

// ---- Pieces ----

template <typename Char>
ksBasicString<Char> ksBasicString<Char>::substr(int start, int count) const {
  if (start < 0 || count == 0 || count < -1) return {};
  return text_.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(count));
}

template <typename Char>
ksBasicString<Char> ksBasicString<Char>::Left(int n) const {
  if (n < 0 || n > length()) return {};
  return {getData(), n};
}

// Deliberate: unlike Left, the whole length is out of bounds.
template <typename Char>
ksBasicString<Char> ksBasicString<Char>::Right(int n) const {
  if (n < 0 || n >= length()) return {};
  return {getData() + (length() - n), n};
}

// ---- Searching ----

template <typename Char>
int ksBasicString<Char>::find(Char c, int start) const noexcept {
  return start < 0 ? kNotFound : positionOf(text_.find(c, static_cast<std::size_t>(start)));
}

template <typename Char>
int ksBasicString<Char>::find(const ksBasicString& s, int start) const noexcept {
  return start < 0 ? kNotFound : positionOf(text_.find(s.text_, static_cast<std::size_t>(start)));
}

// Deliberate: the start position plays no part.
template <typename Char>
int ksBasicString<Char>::findNoCase(const ksBasicString& s, int) const noexcept {
  if (s.text_.size() > text_.size()) return kNotFound;
  const int last = length() - s.length();
  for (int p = 0; p <= last; ++p) {
    if (equalNoCase(getData() + p, s.getData(), s.text_.size())) return p;
  }
  return kNotFound;
}

template <typename Char>
int ksBasicString<Char>::findlast(const ksBasicString& set, int start) const noexcept {
  const std::size_t last =
      start < 0 || start >= length() ? String::npos : static_cast<std::size_t>(start);
  return positionOf(text_.find_last_of(set.text_, last));
}

template <typename Char>
int ksBasicString<Char>::findlastNoCase(const ksBasicString& s, int start) const noexcept {
  if (s.text_.size() > text_.size()) return kNotFound;
  if (start < 1 || start >= length()) start = length() - 1;
  for (int p = start + 1 - s.length(); p >= 0; --p) {
    if (equalNoCase(getData() + p, s.getData(), s.text_.size())) return p;
  }
  return kNotFound;
}

// ---- Case ----

template <typename Char>
int ksBasicString<Char>::compareNoCase(const Char* a, const Char* b, int n) noexcept {
  using Value = typename WidthRules<Char>::Value;
  for (int i = 0; i < n; ++i) {
    // NOLINTBEGIN(bugprone-signed-char-misuse): bytes compare as signed values on purpose
    const auto x = static_cast<Value>(WidthRules<Char>::toUpper(a[i]));
    const auto y = static_cast<Value>(WidthRules<Char>::toUpper(b[i]));
    // NOLINTEND(bugprone-signed-char-misuse)
    if (x != y) return x < y ? -1 : 1;
  }
  return 0;
}

// Deliberate: case-sensitive.
template <typename Char>
int ksBasicString<Char>::CompareNoCase(const Char* s) const noexcept {
  return WidthRules<Char>::compare(getData(), s);
}

template <typename Char>
bool ksBasicString<Char>::isEqualNoCase(const ksBasicString& a, const ksBasicString& b) noexcept {
  return a.text_.size() == b.text_.size() && equalNoCase(a.getData(), b.getData(), a.text_.size());
}

template <typename Char>
Char* ksBasicString<Char>::strlwr(Char* p) noexcept requires std::same_as<Char, char> {
  lowerCase(p, String::traits_type::length(p));
  return p;
}

template <typename Char>
Char* ksBasicString<Char>::wcslwr(Char* p) noexcept requires std::same_as<Char, wchar_t> {
  lowerCase(p, String::traits_type::length(p));
  return p;
}

template <typename Char>
ksBasicString<Char>& ksBasicString<Char>::MakeLower() {
  const std::size_t shown = String::traits_type::length(getData());
  lowerCase(text_.data(), shown);
  if (shown <= text_.size()) {
    text_.resize(shown);
  } else {
    text_ = String(getData());  // a character that setchar() put over the terminator
  }
  return *this;
}

// ---- Blanks and clean-up ----

template <typename Char>
void ksBasicString<Char>::TrimLeft() {
  TrimLeft(kSpace<Char>);
}

template <typename Char>
void ksBasicString<Char>::TrimLeft(Char c) {
  Char* const begin = text_.data();
  const Char* const trimmed = trimLeft(begin, begin + text_.size(), c);
  text_.erase(0, static_cast<std::size_t>(trimmed - begin));
}

template <typename Char>
void ksBasicString<Char>::TrimRight() {
  TrimRight(kSpace<Char>);
}

template <typename Char>
void ksBasicString<Char>::TrimRight(Char c) {
  Char* const begin = text_.data();
  text_.resize(static_cast<std::size_t>(trimRight(begin, begin + text_.size(), c) - begin));
}

template <typename Char>
void ksBasicString<Char>::removeSpaces() {
  if (text_.empty()) return;
  TrimRight();
  text_.erase(0, text_.find_first_not_of(kSpace<Char>));
}

// Deliberate: of the spaces after the leading ones only the first goes.
template <typename Char>
void ksBasicString<Char>::clearSpaces() {
  if (text_.empty()) return;
  text_.erase(0, text_.find_first_not_of(kSpace<Char>));
  const std::size_t inner = text_.find(kSpace<Char>);
  if (inner != String::npos) text_.erase(inner, 1);
}

// Deliberate: the closing quotes stay.
template <typename Char>
void ksBasicString<Char>::removeQuo() {
  if (text_.empty()) return;
  text_.erase(0, std::min(text_.find_first_not_of(Char{'"'}), text_.size() - 1));
}

template <typename Char>
void ksBasicString<Char>::removeLastChar() {
  constexpr Char kLineEnds[] = {'\r', '\n', 0};
  text_.resize(text_.find_last_not_of(kLineEnds) + 1);
  terminate();
}

// Deliberate: the recorded length stays, with stale characters after the moved terminator.
template <typename Char>
int ksBasicString<Char>::deleteStr(int start, int count) noexcept {
  const int size = length();
  start = std::max(start, 0);
  if (start >= size) return size;
  count = std::clamp(count, 0, size - start);
  Char* const to = text_.data() + start;
  String::traits_type::move(to, to + count, static_cast<std::size_t>(size - start - count) + 1);
  return size;
}

template <typename Char>
void ksBasicString<Char>::replaceChars(ksBasicString from, ksBasicString to) {
  kssubtitle::internal::replaceFirst<Char>(text_, from.text_, to.text_);
}

template <typename Char>
bool ksBasicString<Char>::isNumeric() const noexcept {
  return !text_.empty() &&
         std::all_of(text_.begin(), text_.end(), [](Char c) { return c >= '0' && c <= '9'; });
}

// ---- Utilities for hosts ----

template <typename Char>
int ksBasicString<Char>::match(ksBasicString pattern, ksBasicString* before, bool cut,
                               ksBasicString replacement) {
  constexpr int kMissing = 2;
  const std::size_t position = text_.find(pattern.text_);
  if (position == String::npos) return kMissing;
  if (before != nullptr) before->text_ = text_.substr(0, position);
  const std::size_t end = position + pattern.text_.size();
  if (cut && end <= text_.size()) text_.replace(0, end, replacement.text_);
  return position > 0 ? 1 : 0;
}

template <typename Char>
std::map<int, ksBasicString<Char>> ksBasicString<Char>::split(
    const ksBasicString& separator) const {
  std::map<int, ksBasicString> pieces;
  const auto add = [&](std::size_t from, std::size_t to) {
    pieces.emplace_hint(pieces.end(), static_cast<int>(pieces.size()),
                        text_.substr(from, to - from));
  };
  std::size_t begin = 0;
  for (std::size_t end; (end = text_.find(separator.text_, begin)) != String::npos;
       begin = end + separator.text_.size()) {
    add(begin, end);
  }
  if (begin < text_.size()) add(begin, text_.size());
  return pieces;
}

template <typename Char>
void ksBasicString<Char>::inflate(int width, const ksBasicString& fill, bool atFront) {
  if (length() >= width) return;
  const int need = width - length();
  String padding;
  for (int i = need / fill.length(); i > 0; --i) padding += fill.text_;
  padding += fill.text_.substr(0, static_cast<std::size_t>(need % fill.length()));
  text_.insert(atFront ? 0 : text_.size(), padding);
}

template class ksBasicString<char>;
template class ksBasicString<wchar_t>;
