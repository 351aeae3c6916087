/// @file
/// The library's text value, written once for 8-bit and wide characters.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <limits>
#include <map>
#include <string>
#include <utility>

#include "kssubtitle/export.h"

/// A value-semantic text of `Char`, with the vocabulary that the parsers are written against.
///
/// Hosts use it under its two names, `ksString` (`char`) and `ksWString` (`wchar_t`); those headers
/// document where the two differ. One character is a byte in `ksString` and a code point in
/// `ksWString`.
///
/// - Positions and counts are `int` and count characters. A search that finds nothing returns -1.
/// - Characters compare as signed values on every processor. One that is handed out is the
///   platform's own: a byte of 0x80 or more reads as negative on x86, and as 128 to 255 where
///   `char` is unsigned, as on ARM and RISC-V; `wchar_t` is unsigned on ARM.
/// - Copies are deep, moves are `noexcept` and leave the source valid but unspecified.
/// - Pointers from getData() and the pointer conversion belong to the object and stay valid until
///   its next change.
/// - Pointer arguments must not be null; `text = {}` passes one, and throws `std::logic_error`.
/// - A standard string is made from a text by name, `std::string(text)`, and a text is printed
///   through getData(): a conversion that is not asked for is ambiguous.
/// - Nothing throws but what each operation names, and allocation failure.
/// - No locks: one object must not be changed by one thread while another uses it.
///
/// Several operations have narrow effects on purpose; each says so, and the parsers depend on it.
template <typename Char>
class KSSUBTITLE_API ksBasicString {
 public:
  /// The standard string of the same width.
  using String = std::basic_string<Char>;

  // ---- Construction and assignment ----

  /// The empty text.
  ksBasicString() = default;
  /// A copy of exactly `n` characters, NULs included.
  /// @throws std::length_error if `n` is negative.
  ksBasicString(const Char* p, int n);
  /// A copy of the NUL-terminated text `p`.
  ksBasicString(const Char* p);
  /// A copy of `s`, NULs included.
  ksBasicString(const String& s);
  /// Takes over the text of `s`.
  ksBasicString(String&& s) noexcept : text_(std::move(s)) {}
  /// The decimal text of `v`. Always empty in `ksWString`.
  ksBasicString(int v);
  /// A copy up to the recorded length.
  ksBasicString(const ksBasicString&) = default;
  /// Takes over the text of `s` up to its recorded length.
  ksBasicString(ksBasicString&& s) noexcept : text_(std::move(s.text_)) { terminate(); }
  virtual ~ksBasicString() = default;

  /// Assigns the NUL-terminated text `p`, which may be a part of this text.
  ksBasicString& operator=(const Char* p);
  /// Assigns a copy up to the recorded length.
  ksBasicString& operator=(const ksBasicString&) = default;
  /// Takes over the text of `s` up to its recorded length.
  ksBasicString& operator=(ksBasicString&& s) noexcept {
    text_ = std::move(s.text_);
    terminate();
    return *this;
  }
  /// Assigns `src`. `buffer` and `length` are accepted for interface compatibility and not used.
  ksBasicString& deepCopy(const ksBasicString& src, Char** buffer, int* length);

  // ---- Access and size ----

  /// The number of characters; INT_MAX if there are more.
  int length() const noexcept {
    return static_cast<int>(std::min<std::size_t>(text_.size(), std::numeric_limits<int>::max()));
  }
  /// Whether the length is 0.
  bool isEmpty() noexcept { return text_.empty(); }
  /// Whether the length is 0.
  bool isEmpty() const noexcept { return text_.empty(); }
  /// The NUL-terminated text; never null.
  const Char* getData() const noexcept { return text_.c_str(); }
  /// As getData().
  operator const Char*() const noexcept { return text_.c_str(); }
  /// The number at the start of the text; 0 if there is none. The two widths read it differently.
  operator int() const noexcept;
  /// The character at `i`; 0 if `i` is negative or greater than length(). At length() it is the
  /// terminating NUL.
  Char getChar(int i) const noexcept { return i < 0 || i > length() ? Char{} : text_.data()[i]; }
  /// As getChar(): a value, not a reference.
  Char operator[](int i) const noexcept { return getChar(i); }
  /// Overwrites the character at `i`; does nothing if `i` is negative or greater than length().
  /// At length() it overwrites the terminating NUL while the length stays: getData() then shows
  /// `c` as one more character, until the next change; copies and moves do not take it along.
  void setchar(int i, Char c);
  /// Empties the text.
  void erase() noexcept { text_.clear(); }
  /// Empties the text.
  void clear() noexcept { text_.clear(); }

  // ---- Comparison (exact) ----

  /// Whether all of the text, stale characters included, equals the NUL-terminated text `p`.
  bool operator==(const Char* p) const noexcept;
  /// The opposite of operator==().
  bool operator!=(const Char* p) const noexcept { return !(*this == p); }
  /// Whether lengths and characters are equal, stale characters included.
  bool operator==(const ksBasicString& s) const noexcept { return text_ == s.text_; }
  /// The opposite of operator==().
  bool operator!=(const ksBasicString& s) const noexcept { return text_ != s.text_; }
  /// Lexicographic; a proper prefix is the smaller. Bytes compare unsigned, wide characters signed.
  bool operator<(const ksBasicString& s) const noexcept;
  /// The order of operator<().
  bool operator>(const ksBasicString& s) const noexcept { return s < *this; }

  // ---- Concatenation ----

  /// This text followed by `s`.
  ksBasicString operator+(const ksBasicString& s) const;
  /// This text followed by the NUL-terminated text `p`.
  ksBasicString operator+(const Char* p) const;
  /// With the decimal text of `v`; with nothing in `ksWString`.
  ksBasicString operator+(int v) const;
  /// Appends `s`, which may be this text.
  ksBasicString& operator+=(const ksBasicString& s);
  /// Appends the NUL-terminated text `p`, which may be a part of this text.
  ksBasicString& operator+=(const Char* p);
  /// Appends the decimal text of `v`; nothing in `ksWString`.
  ksBasicString& operator+=(int v);
  /// Appends one character.
  ksBasicString& operator+=(Char c);
  /// Appends the NUL-terminated text `p`, which may be a part of this text.
  ksBasicString& append(const Char* p);
  /// Appends exactly `n` characters of `p`.
  /// @throws std::length_error if `n` is negative.
  ksBasicString& append(const Char* p, int n);
  /// Replaces `n` characters from `pos` by `s`; `n` is clipped at the end of the text, and a
  /// negative `n` reaches to it.
  /// @throws std::out_of_range if `pos` is negative or greater than length().
  ksBasicString& replace(int pos, int n, const ksBasicString& s);

  // ---- Pieces ----

  /// `count` characters from `start`, clipped at the end; to the end if `count` is -1. Empty if
  /// `start` is negative, or if `count` is 0 or less than -1.
  /// @throws std::out_of_range if `start` is greater than length() and no rule above applies.
  ksBasicString substr(int start, int count) const;
  /// The first `n` characters; empty if `n` is negative or greater than length().
  ksBasicString Left(int n) const;
  /// The last `n` characters; empty if `n` is negative or **at least** length(): asking for the
  /// whole text yields nothing, unlike Left().
  ksBasicString Right(int n) const;

  // ---- Searching ----

  /// First position at or after `start` that holds `c`; -1 if `start` is negative.
  int find(Char c, int start) const noexcept;
  /// First position at or after `start` where `s` occurs; `start` itself for an empty `s`. -1 if
  /// `start` is negative or greater than length().
  int find(const ksBasicString& s, int start) const noexcept;
  /// First occurrence of `s` without regard to case. `start` is ignored: the search always begins
  /// at 0.
  int findNoCase(const ksBasicString& s, int start) const noexcept;
  /// The last position at or before `start` whose character is any of `set`; the whole text if
  /// `start` is out of range.
  int findlast(const ksBasicString& set, int start) const noexcept;
  /// The last occurrence of `s`, without regard to case, that ends at or before `start`; a `start`
  /// below 1 or out of range means the whole text. `start` + 1 for an empty `s`.
  int findlastNoCase(const ksBasicString& s, int start) const noexcept;

  // ---- Case ----

  /// Compares `n` characters in upper case: -1, 0 or 1; 0 if `n` < 1. Does not stop at a NUL.
  /// Requires: both texts hold `n` characters.
  static int compareNoCase(const Char* a, const Char* b, int n) noexcept;
  /// Case-**sensitive**, in spite of its name: the value of `strcmp` against `s`; in wide text, of
  /// `wcscmp` with signed characters.
  int CompareNoCase(const Char* s) const noexcept;
  /// Whether both texts are equal in upper case.
  static bool isEqualNoCase(const ksBasicString& a, const ksBasicString& b) noexcept;
  /// Lower-cases the NUL-terminated text `p` in place and returns it.
  static Char* strlwr(Char* p) noexcept requires std::same_as<Char, char>;
  /// Lower-cases the NUL-terminated text `p` in place and returns it.
  static Char* wcslwr(Char* p) noexcept requires std::same_as<Char, wchar_t>;
  /// Lower-cases the text and drops whatever follows its first NUL.
  ksBasicString& MakeLower();

  // ---- Blanks and clean-up: only the space (32) is a blank ----

  /// Deletes the spaces at positions 0, 2, 4, ... of the text as it was, up to the first such
  /// position without one: of k leading spaces, k/2 rounded down remain, and " x y" becomes "xy".
  /// Linear time.
  void TrimLeft();
  /// TrimLeft() with `c` in place of the space.
  void TrimLeft(Char c);
  /// Removes all trailing spaces.
  void TrimRight();
  /// Removes all trailing characters equal to `c`.
  void TrimRight(Char c);
  /// Removes all leading and all trailing spaces; does nothing to an empty text. Linear time.
  void removeSpaces();
  /// Removes all leading spaces and the first space after them; later spaces stay. Does nothing to
  /// an empty text. Linear time.
  void clearSpaces();
  /// Removes the leading double quotes, but never the last character; trailing quotes stay.
  void removeQuo();
  /// Removes every trailing CR and LF, and what setchar() has put over the terminating NUL.
  void removeLastChar();
  /// Moves the text after the range, and its terminating NUL, over the range, and returns the
  /// **unchanged** length(): getData() shows the shortened text, while length() still counts the
  /// stale characters after the new terminator. Negative arguments count as 0; `count` is clipped
  /// at the end of the text. Assign the object from its own getData() to make it consistent.
  int deleteStr(int start, int count) noexcept;
  /// Replaces the first occurrence of `from` by `to`, and goes on only while the one just replaced
  /// stood at the very front. Linear time.
  /// Requires: `from` is not empty, and `to` does not begin with `from`; the call may not return
  /// otherwise.
  void replaceChars(ksBasicString from, ksBasicString to);
  /// Whether the text is non-empty and made of the digits 0 to 9 only.
  bool isNumeric() const noexcept;

  // ---- Utilities for hosts ----

  /// Finds the first occurrence of `pattern`: 2 if there is none, 0 if it is at the front, else
  /// 1. If found, assigns what precedes it to `*before`, unless that is null, and if
  /// `cut` is set replaces the text up to and including the occurrence by `replacement`.
  /// An empty pattern occurs at the front. `before` may be this object: the cut is then left out
  /// if it would reach past the text that remains.
  int match(ksBasicString pattern, ksBasicString* before, bool cut, ksBasicString replacement);
  /// The pieces between the occurrences of `separator`, under the keys 0, 1, 2, ...: adjacent
  /// separators have an empty piece between them, but an empty piece at the end is left out. Linear
  /// time.
  /// Requires: `separator` is not empty; the call takes memory without end otherwise.
  std::map<int, ksBasicString> split(const ksBasicString& separator) const;
  /// Pads the text to `width` characters with repetitions of `fill`, the last one cut short,
  /// before or after it; does nothing if the text is long enough.
  /// Requires: `fill` is not empty if padding is needed.
  void inflate(int width, const ksBasicString& fill, bool atFront);

 private:
  /// Undoes what setchar() may have done to the terminating NUL.
  void terminate() noexcept { text_.data()[text_.size()] = Char{}; }

  String text_;
};

extern template class KSSUBTITLE_API ksBasicString<char>;
extern template class KSSUBTITLE_API ksBasicString<wchar_t>;
