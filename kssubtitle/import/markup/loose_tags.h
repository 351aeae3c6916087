// HTML tags as people write them: in any case, with attributes quoted or not, closed or not.
#pragma once

#include <cstddef>
#include <string_view>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

struct LooseAttribute {
  std::string_view key;
  std::string_view value;  ///< Without its quotes; empty if there is none.

  /// Whether it has that name, in any case.
  bool is(std::string_view name) const noexcept { return equalNoCase(key, name); }
};

/// Consumes an attribute. Returns false if none is left.
bool consumeAttribute(std::string_view& attributes, LooseAttribute& attribute) noexcept;
/// The value of the first attribute with that name, in any case; empty if there is none.
std::string_view attributeOf(std::string_view attributes, std::string_view key) noexcept;

/// A tag, a comment or a declaration.
struct LooseTag {
  std::size_t length = 0;       ///< With its angle brackets; 0: there is no tag.
  std::string_view name;        ///< Empty: a comment or a declaration.
  std::string_view attributes;  ///< What follows the name.
  bool isClosing = false;
  bool isWhole = true;          ///< False: another tag, or the end, comes before its '>'.
  bool areQuotesClosed = true;  ///< False: its end was guessed from what follows.

  /// Whether it is the opening (or closing) tag with that name, in any case.
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

/// How many characters of a name `text` begins with: letters and digits.
constexpr std::size_t nameLength(std::string_view text) noexcept {
  std::size_t length = 0;
  while (length < text.size() && (isLetter(text[length]) || isDigit(text[length]))) ++length;
  return length;
}

/// Finds the tags of one text, from its beginning to its end, in linear time.
class LooseTags {
 public:
  /// The tag at the beginning of `rest`, which begins with '<' and extends to the end of the text.
  /// An unclosed comment is no longer than a tag.
  LooseTag at(std::string_view rest) noexcept;

 private:
  std::size_t commentLength(std::string_view rest) noexcept;

  bool hasNoCommentEnd_ = false;
};

}  // namespace kssubtitle::importing
