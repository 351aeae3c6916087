// Takes override tags out of an event's text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kssubtitle::internal {

/// Removes spans of text with the result that deleteStr() has for one span after the other, stale
/// characters after the moved terminators included.
///
/// Moving the rest of a text of fixed length over a span of n characters leaves the text's last n
/// characters, its NUL included, standing: what follows the span is then the rest and a copy of
/// those n. A short span is therefore skipped, and its n characters are added to the end; only for
/// a long one is the rest moved. The time is linear for ordinary texts, and for a text of `{}`
/// pairs or of many `{` before one `}`; at worst it grows with the square of the length.
template <typename Char>
class SpanRemover {
 public:
  using View = std::basic_string_view<Char>;

  /// `text` without the spans from `opening` to `closing`; valid until the next call.
  /// Requires: a NUL follows `text`.
  View remove(View text, Char opening, Char closing);

 private:
  void start(View text);
  void keepUpTo(const Char* end) noexcept;
  const Char* findClosing(const Char* from, Char closing) noexcept;
  void drop(std::size_t span) noexcept;
  void moveRestOver(std::size_t span) noexcept;
  void moveToFront() noexcept;

  std::vector<Char> result_;
  std::vector<Char> tape_;
  Char* kept_ = nullptr;  // where the result goes on
  Char* head_ = nullptr;  // what is still to be searched: a part of the tape
  Char* tail_ = nullptr;
  Char* limit_ = nullptr;  // how far the tail may grow
  // This part of the tape has no closing character.
  const Char* searchedFrom_ = nullptr;
  const Char* searchedTo_ = nullptr;
};

/// Cleans the texts of events, with buffers that last from one to the next.
template <typename Char>
class OverrideTagRemover {
 public:
  using View = std::basic_string_view<Char>;

  /// `text` without "{...}" and "<...>", its stale characters included, and with "\N" turned into a
  /// line feed as replaceChars() does. Valid until the next call and as long as `text`.
  /// Requires: a NUL follows `text`.
  View clean(View text);

 private:
  SpanRemover<Char> braces_;
  SpanRemover<Char> angles_;
  std::basic_string<Char> broken_;
};

}  // namespace kssubtitle::internal
