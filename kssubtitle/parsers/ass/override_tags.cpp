// Takes override tags out of an event's text.
#include "kssubtitle/parsers/ass/override_tags.h"

#include <cstring>

#include "kssubtitle/strings/find_near.h"
#include "kssubtitle/strings/replacing.h"

namespace kssubtitle::internal {
namespace {

// A short copy moves this many characters, whatever it was asked for, and so takes no call. The
// buffers have room for it behind their ends.
constexpr std::size_t kBlock = 16;

template <typename Char>
void copyBlock(const Char* from, std::size_t count, Char* to) noexcept {
  if (count <= kBlock) {
    std::memmove(to, from, kBlock * sizeof(Char));
  } else {
    std::memmove(to, from, count * sizeof(Char));
  }
}

template <typename Char>
std::basic_string_view<Char> viewOf(const Char* begin, const Char* end) noexcept {
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

template <typename Char>
auto SpanRemover<Char>::remove(View text, Char opening, Char closing) -> View {
  start(text);
  if (removeOnTape(opening, closing)) {
    keep(viewOf<Char>(head_, tail_));
  } else {
    segments_.assign(1, viewOf<Char>(head_, tail_));
    removeFromSegments(opening, closing);
    for (; front_ < segments_.size(); ++front_) keep(segments_[front_]);
  }
  return {result_.data(), text.size()};
}

// A removal can bring about itself for ever in the stale characters. No pass that ends by itself
// takes as many removals as the text has characters, so none is allowed more.
template <typename Char>
void SpanRemover<Char>::start(View text) {
  const std::size_t size = text.size() + 1;
  if (result_.size() < size + kBlock) {
    result_.resize(size + kBlock);
    tape_.resize(2 * size + kBlock);
  }
  std::char_traits<Char>::copy(tape_.data(), text.data(), size);
  kept_ = result_.data();
  head_ = tape_.data();
  tail_ = head_ + size;
  limit_ = tail_ + size;
  allowed_ = text.size();
}

template <typename Char>
void SpanRemover<Char>::keep(View characters) noexcept {
  copyBlock(characters.data(), characters.size(), kept_);
  kept_ += characters.size();
}

/// Removes spans until there are no more; false if the tape is full before.
template <typename Char>
bool SpanRemover<Char>::removeOnTape(Char opening, Char closing) noexcept {
  for (; allowed_ > 0; --allowed_) {
    const Char* const open = findNear<Char>(head_, tail_, opening);
    const Char* const close = findNear<Char>(open, tail_, closing);
    if (close == tail_) return true;
    const auto span = close + 1 - open;
    if (span > limit_ - tail_) return false;
    keep(viewOf<Char>(head_, open));
    head_ += close + 1 - head_;
    copyBlock(tail_ - span, static_cast<std::size_t>(span), tail_);
    tail_ += span;
  }
  return true;
}

template <typename Char>
void SpanRemover<Char>::removeFromSegments(Char opening, Char closing) {
  front_ = 0;
  searchedFrom_ = searchedTo_ = nullptr;
  for (; allowed_ > 0 && passTo(opening); --allowed_) {
    const std::size_t span = spanTo(closing);
    if (span == 0) return;
    repeatTail(span);
    dropFront(span);
  }
}

/// Keeps what stands in front of the next `opening`; false if there is none.
template <typename Char>
bool SpanRemover<Char>::passTo(Char opening) noexcept {
  for (; front_ < segments_.size(); ++front_) {
    View& segment = segments_[front_];
    const std::size_t found = segment.find(opening);
    keep(segment.substr(0, found));
    if (found != View::npos) {
      segment.remove_prefix(found);
      return true;
    }
  }
  return false;
}

/// How many characters the span at the front takes; 0 if nothing closes it.
template <typename Char>
std::size_t SpanRemover<Char>::spanTo(Char closing) noexcept {
  std::size_t length = 0;
  for (std::size_t i = front_; i < segments_.size(); ++i) {
    const std::size_t found = findClosing(segments_[i], closing);
    if (found != View::npos) return length + found + 1;
    length += segments_[i].size();
  }
  return 0;
}

/// The first `closing` in `segment`. Copies of one stretch of text are searched again and again, so
/// the last long search is remembered.
template <typename Char>
std::size_t SpanRemover<Char>::findClosing(View segment, Char closing) noexcept {
  constexpr std::size_t kLong = 64;
  std::size_t skipped = 0;
  if (searchedFrom_ <= segment.data() && segment.data() < searchedTo_) {
    skipped = static_cast<std::size_t>(searchedTo_ - segment.data());
    if (skipped >= segment.size()) return View::npos;
  }
  const std::size_t found = segment.find(closing, skipped);
  const std::size_t searched = found == View::npos ? segment.size() : found;
  if (searched - skipped >= kLong) {
    searchedFrom_ = segment.data();
    searchedTo_ = segment.data() + searched;
  }
  return found;
}

/// Adds the last `count` characters once more.
template <typename Char>
void SpanRemover<Char>::repeatTail(std::size_t count) {
  const std::size_t end = segments_.size();
  std::size_t first = end - 1;
  for (; segments_[first].size() < count; --first) count -= segments_[first].size();
  segments_.push_back(segments_[first].substr(segments_[first].size() - count));
  for (std::size_t i = first + 1; i < end; ++i) segments_.push_back(View(segments_[i]));
}

template <typename Char>
void SpanRemover<Char>::dropFront(std::size_t count) {
  constexpr std::size_t kWorthMoving = 1024;
  while (count >= segments_[front_].size()) count -= segments_[front_++].size();
  segments_[front_].remove_prefix(count);
  if (front_ >= kWorthMoving && front_ > segments_.size() / 2) {
    segments_.erase(segments_.begin(), segments_.begin() + static_cast<std::ptrdiff_t>(front_));
    front_ = 0;
  }
}

template <typename Char>
auto OverrideTagRemover<Char>::clean(View text) -> View {
  constexpr Char kLineBreak[] = {'\\', 'N', 0};
  constexpr Char kLineFeed[] = {'\n', 0};
  if (text.find(Char{'{'}) != View::npos) text = braces_.remove(text, '{', '}');
  if (text.find(Char{'<'}) != View::npos) text = angles_.remove(text, '<', '>');
  if (text.find(kLineBreak) == View::npos) return text;
  broken_ = text;
  replaceFirst<Char>(broken_, kLineBreak, kLineFeed);
  return broken_;
}

template class OverrideTagRemover<char>;
template class OverrideTagRemover<wchar_t>;

}  // namespace kssubtitle::internal
