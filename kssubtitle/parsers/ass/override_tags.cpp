// Takes override tags out of an event's text.
#include "kssubtitle/parsers/ass/override_tags.h"

#include <algorithm>

#include "kssubtitle/strings/replacing.h"

namespace kssubtitle::internal {

// A removal can bring about another one without end in the stale characters. No pass that ends by
// itself takes as many removals as the text has characters, so none is allowed more.
template <typename Char>
auto SpanRemover<Char>::remove(View text, Char opening, Char closing) -> View {
  start(text);
  for (std::size_t allowed = text.size(); allowed > 0; --allowed) {
    const Char* const open = std::find<const Char*>(head_, tail_, opening);
    const Char* const close = findClosing(open, closing);
    if (close == tail_) break;
    keepUpTo(open);
    drop(static_cast<std::size_t>(close + 1 - open));
  }
  keepUpTo(tail_);
  return {result_.data(), text.size()};
}

/// Puts the text and its NUL on the tape, with as much room after it.
template <typename Char>
void SpanRemover<Char>::start(View text) {
  const std::size_t size = text.size() + 1;
  if (result_.size() < size) {
    tape_.resize(2 * size);  // first: either may throw
    result_.resize(size);
  }
  std::char_traits<Char>::copy(tape_.data(), text.data(), size);
  kept_ = result_.data();
  head_ = tape_.data();
  tail_ = head_ + size;
  limit_ = tail_ + size;
  searchedFrom_ = searchedTo_ = head_;
}

template <typename Char>
void SpanRemover<Char>::keepUpTo(const Char* end) noexcept {
  const auto count = static_cast<std::size_t>(end - head_);
  std::char_traits<Char>::copy(kept_, head_, count);
  kept_ += count;
  head_ += count;
}

/// The first `closing` from `from` on, or the tail.
template <typename Char>
const Char* SpanRemover<Char>::findClosing(const Char* from, Char closing) noexcept {
  const Char* next = from;
  if (from < searchedTo_) {
    if (from < searchedFrom_) {
      const Char* const found = std::find(from, searchedFrom_, closing);
      if (found != searchedFrom_) return found;
    }
    next = searchedTo_;
  }
  searchedFrom_ = from;
  searchedTo_ = std::find<const Char*>(next, tail_, closing);
  return searchedTo_;
}

/// Drops `span` characters at the head.
template <typename Char>
void SpanRemover<Char>::drop(std::size_t span) noexcept {
  if (static_cast<std::size_t>(tail_ - head_) < 2 * span) {
    moveRestOver(span);
    return;
  }
  if (static_cast<std::size_t>(limit_ - tail_) < span) moveToFront();
  std::char_traits<Char>::copy(tail_, tail_ - span, span);
  tail_ += span;
  head_ += span;
}

template <typename Char>
void SpanRemover<Char>::moveRestOver(std::size_t span) noexcept {
  const std::size_t rest = static_cast<std::size_t>(tail_ - head_) - span;
  std::char_traits<Char>::move(head_, head_ + span, rest);
  searchedFrom_ = std::max<const Char*>(searchedFrom_, head_ + rest);
  searchedTo_ = std::max(searchedFrom_, searchedTo_);
}

/// Makes room at the end of the tape.
template <typename Char>
void SpanRemover<Char>::moveToFront() noexcept {
  const auto size = static_cast<std::size_t>(tail_ - head_);
  std::char_traits<Char>::move(tape_.data(), head_, size);
  head_ = tape_.data();
  tail_ = head_ + size;
  searchedFrom_ = searchedTo_ = head_;
}

template <typename Char>
auto OverrideTagRemover<Char>::clean(View text) -> View {
  constexpr Char kLineBreak[] = {'\\', 'N', 0};
  constexpr Char kLineFeed[] = {'\n', 0};
  if (text.find(Char{'{'}) != View::npos) text = braces_.remove(text, '{', '}');
  if (text.find(Char{'<'}) != View::npos) text = angles_.remove(text, '<', '>');
  broken_ = text;
  replaceFirst<Char>(broken_, kLineBreak, kLineFeed);
  return broken_;
}

template class OverrideTagRemover<char>;
template class OverrideTagRemover<wchar_t>;

}  // namespace kssubtitle::internal
