// HTML tags as people write them.
#include "kssubtitle/import/markup/loose_tags.h"

#include <algorithm>

#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

/// The first place from `at` on that is not white space; the size of `text` if there is none.
std::size_t passSpaces(std::string_view text, std::size_t at) noexcept {
  while (at < text.size() && isSpace(text[at])) ++at;
  return at;
}

/// The first place from `at` on that is white space; the size of `text` if there is none.
std::size_t wordEnd(std::string_view text, std::size_t at) noexcept {
  while (at < text.size() && !isSpace(text[at])) ++at;
  return at;
}

/// Consumes a value; one with an unclosed quote ends as an unquoted one does.
std::string_view consumeValue(std::string_view& rest) noexcept {
  const bool isQuoted = rest.starts_with('"') || rest.starts_with('\'');
  const std::size_t closing = isQuoted ? rest.find(rest.front(), 1) : rest.npos;
  const std::size_t begin = isQuoted ? 1 : 0;
  const std::size_t end = closing == rest.npos ? wordEnd(rest, begin) : closing;
  const std::string_view value = rest.substr(begin, end - begin);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return value;
}

/// Where the quote that opens at `at` is closed: before the next tag, and before what may follow a
/// value; npos if it is not.
std::size_t closingQuote(std::string_view text, std::size_t at) noexcept {
  const std::string_view rest = text.substr(at + 1);
  const std::size_t length = text[at] == '"' ? findAny<'"', '<'>(rest) : findAny<'\'', '<'>(rest);
  if (length + 1 >= rest.size() || rest[length] == '<') return text.npos;
  const char next = rest[length + 1];
  const bool isFollower = isSpace(next) || next == '/' || next == '>';
  return isFollower ? at + 1 + length : text.npos;
}

struct TagEnd {
  /// Of the '>' that ends it or a '<' before that; the size of the text if there is neither.
  std::size_t place = 0;
  bool areQuotesClosed = true;
};

/// Where a tag ends whose name ends at `at`.
TagEnd tagEnd(std::string_view text, std::size_t at) noexcept {
  TagEnd end;
  while ((at += findAny<'<', '>', '='>(text.substr(at))) < text.size() && text[at] == '=') {
    at = passSpaces(text, at + 1);
    if (at == text.size()) break;
    if (text[at] != '"' && text[at] != '\'') continue;
    const std::size_t closing = closingQuote(text, at);
    if (closing != text.npos) at = closing + 1;
    if (closing == text.npos) end.areQuotesClosed = false;
  }
  end.place = at;
  return end;
}

}  // namespace

bool consumeAttribute(std::string_view& attributes, LooseAttribute& attribute) noexcept {
  const std::size_t begin = passSpaces(attributes, 0);
  if (begin == attributes.size()) return false;
  std::size_t at = begin;
  while (at < attributes.size() && attributes[at] != '=' && !isSpace(attributes[at])) ++at;
  attribute.key = attributes.substr(begin, at - begin);
  attribute.value = {};
  at = passSpaces(attributes, at);
  const bool hasValue = at < attributes.size() && attributes[at] == '=';
  attributes.remove_prefix(hasValue ? passSpaces(attributes, at + 1) : at);
  if (hasValue) attribute.value = consumeValue(attributes);
  return true;
}

std::string_view attributeOf(std::string_view attributes, std::string_view key) noexcept {
  LooseAttribute found;
  while (consumeAttribute(attributes, found)) {
    if (found.is(key)) return found.value;
  }
  return {};
}

LooseTag LooseTags::at(std::string_view rest) noexcept {
  LooseTag tag;
  std::size_t at = 1;
  if (rest.size() > 1 && !isLetter(rest[1])) {
    tag.length = commentLength(rest);
    if (tag.length > 0) return tag;
    tag.isClosing = rest[1] == '/';
    if (tag.isClosing) ++at;
  }
  if (at >= rest.size()) return {};
  const std::size_t begin = at;
  const bool isDeclaration = rest[begin] == '!' || rest[begin] == '?';
  if (!isLetter(rest[begin]) && !isDeclaration) return {};
  tag.name = rest.substr(begin, nameLength(rest.substr(begin)));
  at += tag.name.size();
  const auto [end, areQuotesClosed] = tagEnd(rest, at);
  tag.isWhole = end < rest.size() && rest[end] == '>';
  tag.areQuotesClosed = areQuotesClosed;
  tag.attributes = rest.substr(at, end - at);
  if (tag.attributes.ends_with('/')) tag.attributes.remove_suffix(1);
  tag.length = tag.isWhole ? end + 1 : end;
  return tag;
}

std::size_t LooseTags::commentLength(std::string_view rest) noexcept {
  constexpr std::string_view kEnd = "-->";
  if (rest.starts_with("<--")) {  // as some write it; text unless it is closed at once
    const std::size_t end = rest.substr(0, rest.find('<', 1)).find(kEnd, 3);
    return end == rest.npos ? 0 : end + kEnd.size();
  }
  if (hasNoCommentEnd_ || !rest.starts_with("<!--")) return 0;
  const std::size_t end = rest.find(kEnd, 4);
  hasNoCommentEnd_ = end == rest.npos;
  return hasNoCommentEnd_ ? 0 : end + kEnd.size();
}

}  // namespace kssubtitle::importing
