// A styled text of the import library whose characters can be changed.
#include "tools/kssub/tagged_text.h"

#include <algorithm>
#include <utility>

namespace kssub {
namespace {

constexpr std::pair<std::string_view, char> kEntities[] = {
    {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}};

void appendEscaped(std::string& out, char c) {
  for (const auto& [entity, character] : kEntities) {
    if (character == c) {
      out += entity;
      return;
    }
  }
  out += c;
}

/// Consumes a character or an entity at the front of `html`.
char consumeCharacter(std::string_view& html) {
  for (const auto& [entity, character] : kEntities) {
    if (!html.starts_with(entity)) continue;
    html.remove_prefix(entity.size());
    return character;
  }
  const char c = html.front();
  html.remove_prefix(1);
  return c;
}

}  // namespace

TaggedText::TaggedText(std::string_view html) {
  while (!html.empty()) {
    if (html.front() != '<') {
      characters_ += consumeCharacter(html);
      continue;
    }
    const std::size_t length = std::min(html.find('>'), html.size() - 1) + 1;
    tags_.push_back({characters_.size(), html.substr(0, length)});
    html.remove_prefix(length);
  }
}

void TaggedText::erase(std::vector<TextRange> ranges) {
  std::ranges::sort(ranges, {}, &TextRange::begin);
  std::string kept;
  std::size_t done = 0;
  auto tag = tags_.begin();
  const auto keepUpTo = [&](std::size_t end) {
    for (; tag != tags_.end() && tag->at < end; ++tag) tag->at = tag->at - done + kept.size();
    kept += std::string_view(characters_).substr(done, end - done);
    done = end;
  };
  for (const TextRange& range : ranges) {
    if (range.end <= done) continue;
    if (range.begin > done) keepUpTo(range.begin);
    for (; tag != tags_.end() && tag->at < range.end; ++tag) tag->at = kept.size();
    done = range.end;
  }
  keepUpTo(characters_.size());
  for (; tag != tags_.end(); ++tag) tag->at = kept.size();
  characters_ = std::move(kept);
}

std::string TaggedText::html() const {
  std::string out;
  auto tag = tags_.begin();
  for (std::size_t i = 0; i <= characters_.size(); ++i) {
    for (; tag != tags_.end() && tag->at == i; ++tag) out += tag->text;
    if (i < characters_.size()) appendEscaped(out, characters_[i]);
  }
  return out;
}

}  // namespace kssub
