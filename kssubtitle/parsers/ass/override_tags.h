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
/// those n. So what is still to be searched is kept as a tape, from whose front spans are dropped
/// and to whose back copies of the tail are added: as characters while there is room, which is
/// enough for ordinary texts, and as segments that refer to them from then on.
template <typename Char>
class SpanRemover {
 public:
  using View = std::basic_string_view<Char>;

  /// `text` without the spans from `opening` to `closing`; valid until the next call.
  /// Requires: a NUL stands behind `text`.
  View remove(View text, Char opening, Char closing);

 private:
  void start(View text);
  void keep(View characters) noexcept;
  bool removeOnTape(Char opening, Char closing) noexcept;
  void removeFromSegments(Char opening, Char closing);
  bool passTo(Char opening) noexcept;
  std::size_t spanTo(Char closing) noexcept;
  std::size_t findClosing(View segment, Char closing) noexcept;
  void repeatTail(std::size_t count);
  void dropFront(std::size_t count);

  std::vector<Char> result_;
  std::vector<Char> tape_;
  Char* kept_ = nullptr;  // where the result goes on
  Char* head_ = nullptr;  // what is still to be searched on the tape
  Char* tail_ = nullptr;
  Char* limit_ = nullptr;    // how far the tail may grow
  std::size_t allowed_ = 0;  // how many more removals
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
  SpanRemover<Char> braces_;
  SpanRemover<Char> angles_;
  std::basic_string<Char> broken_;
};

}  // namespace kssubtitle::internal
