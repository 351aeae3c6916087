// The tags of HTML as people write them: in any case, with attributes quoted or not, closed or not.
#pragma once

#include <cstddef>
#include <string_view>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

struct LooseAttribute {
  std::string_view key;
  std::string_view value;  ///< Without its quotes; empty if there is none.

  /// Whether it is the attribute of that name, in any case.
  bool is(std::string_view name) const noexcept { return equalNoCase(key, name); }
};

/// Consumes an attribute; false if none is left.
bool consumeAttribute(std::string_view& attributes, LooseAttribute& attribute) noexcept;
/// The value of the first attribute of that name, in any case; empty if there is none.
std::string_view attributeOf(std::string_view attributes, std::string_view key) noexcept;

/// What stands between '<' and '>'.
struct LooseTag {
  std::size_t length = 0;       ///< With both signs; 0: there is no tag.
  std::string_view name;        ///< Empty: a comment or a declaration.
  std::string_view attributes;  ///< What stands behind the name.
  bool isClosing = false;
  bool isWhole = true;          ///< False: another tag, or the end, comes before its '>'.
  bool areQuotesClosed = true;  ///< False: what follows it may have told where it ends.

  /// Whether it is the opening (or closing) tag of that name, in any case.
  bool opens(std::string_view element) const noexcept {
    return !isClosing && equalNoCase(name, element);
  }
  bool closes(std::string_view element) const noexcept {
    return isClosing && equalNoCase(name, element);
  }
  std::string_view attribute(std::string_view key) const noexcept {
    return attributeOf(attributes, key);
  }
};

/// How many letters and digits `text` begins with, of which names are made.
constexpr std::size_t nameLength(std::string_view text) noexcept {
  std::size_t length = 0;
  while (length < text.size() && (isLetter(text[length]) || isDigit(text[length]))) ++length;
  return length;
}

/// Recognises the tags of one text from its front to its back, in linear time.
class LooseTags {
 public:
  /// The tag at the front of `rest`, which begins with '<' and goes on to the end of the text. A
  /// comment that is not closed is no longer than a tag.
  LooseTag at(std::string_view rest) noexcept;

 private:
  std::size_t commentLength(std::string_view rest) noexcept;

  bool hasNoCommentEnd_ = false;
};

}  // namespace kssubtitle::importing
