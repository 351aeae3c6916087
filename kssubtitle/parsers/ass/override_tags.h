// Takes override tags out of an event's text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kssubtitle::internal {

/// Removes spans of text with the result that deleteStr() has for one span after the other, stale
/// characters behind the moved terminators included, in a time that grows about linearly.
///
/// Moving the rest of a text of fixed length over a span of n characters leaves the text's last n
/// characters, its NUL included, standing: what follows the span is then the rest and a copy of
/// those n. So the text in front of the search is kept as a list of segments of the original, from
/// whose front spans are dropped and to whose back copies of the tail are added.
template <typename Char>
class SpanRemover {
 public:
  using View = std::basic_string_view<Char>;

  /// Assigns `text` without the spans from `opening` to `closing` to `result`; the two must not
  /// overlap. Requires: a NUL stands behind `text`.
  void remove(View text, Char opening, Char closing, std::basic_string<Char>& result);

 private:
  bool passTo(Char opening, std::basic_string<Char>& result);
  std::size_t spanTo(Char closing);
  std::size_t findClosing(View segment, Char closing);
  void repeatTail(std::size_t count);
  void dropFront(std::size_t count);

  std::vector<View> segments_;
  std::size_t front_ = 0;  // the segments before this one are done with
  // The last long search: no closing character from `searchedFrom_` to `searchedTo_`, but perhaps
  // one there.
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
  /// Requires: a NUL stands behind `text`.
  View clean(View text);

 private:
  View without(View text, Char opening, Char closing, std::basic_string<Char>& buffer);

  SpanRemover<Char> spans_;
  std::basic_string<Char> withoutBraces_;
  std::basic_string<Char> withoutAngles_;
  std::basic_string<Char> broken_;
};

}  // namespace kssubtitle::internal
