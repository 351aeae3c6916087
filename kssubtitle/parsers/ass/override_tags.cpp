// Takes override tags out of an event's text.
#include "kssubtitle/parsers/ass/override_tags.h"

#include "kssubtitle/strings/replacing.h"

namespace kssubtitle::internal {

// A removal can bring about itself for ever in the stale characters. No pass that ends by itself
// takes as many removals as the text has characters, so none is allowed more.
template <typename Char>
void SpanRemover<Char>::remove(View text, Char opening, Char closing,
                               std::basic_string<Char>& result) {
  result.clear();
  result.reserve(text.size() + 1);
  segments_.assign(1, View(text.data(), text.size() + 1));
  front_ = 0;
  searchedFrom_ = searchedTo_ = nullptr;
  for (std::size_t allowed = text.size(); allowed > 0 && passTo(opening, result); --allowed) {
    const std::size_t span = spanTo(closing);
    if (span == 0) break;
    repeatTail(span);
    dropFront(span);
  }
  for (; front_ < segments_.size(); ++front_) result += segments_[front_];
  result.pop_back();  // the NUL
}

/// Moves what stands in front of the next `opening` to `result`; false if there is none.
template <typename Char>
bool SpanRemover<Char>::passTo(Char opening, std::basic_string<Char>& result) {
  for (; front_ < segments_.size(); ++front_) {
    View& segment = segments_[front_];
    const std::size_t found = segment.find(opening);
    result += segment.substr(0, found);
    if (found != View::npos) {
      segment.remove_prefix(found);
      return true;
    }
  }
  return false;
}

/// How many characters the span at the front takes; 0 if nothing closes it.
template <typename Char>
std::size_t SpanRemover<Char>::spanTo(Char closing) {
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
std::size_t SpanRemover<Char>::findClosing(View segment, Char closing) {
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

/// Adds a copy of the last `count` characters.
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
  text = without(text, Char{'{'}, Char{'}'}, withoutBraces_);
  text = without(text, Char{'<'}, Char{'>'}, withoutAngles_);
  if (text.find(kLineBreak) == View::npos) return text;
  broken_ = text;
  replaceFirst<Char>(broken_, kLineBreak, kLineFeed);
  return broken_;
}

template <typename Char>
auto OverrideTagRemover<Char>::without(View text, Char opening, Char closing,
                                       std::basic_string<Char>& buffer) -> View {
  if (text.find(opening) == View::npos) return text;
  spans_.remove(text, opening, closing, buffer);
  return buffer;
}

template class OverrideTagRemover<char>;
template class OverrideTagRemover<wchar_t>;

}  // namespace kssubtitle::internal
