// A styled text of the import library whose characters can be changed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kssub {

/// A range of bytes in a text.
struct TextRange {
  std::size_t begin;
  std::size_t end;
};

/// The characters of a text, separate from its tags, which stay in place when characters are
/// removed.
class TaggedText {
 public:
  /// `html` is a text in ksImportMarkup::kHtml.
  explicit TaggedText(std::string_view html);

  /// UTF-8, lines separated by line feeds.
  const std::string& characters() const { return characters_; }
  /// Replaces one ASCII character by another.
  void replace(std::size_t at, char c) { characters_[at] = c; }
  /// Ranges may overlap and be in any order. Requires: they are within characters().
  void erase(std::vector<TextRange> ranges);

  std::string html() const;

 private:
  struct Tag {
    std::size_t at;
    std::string_view text;
  };

  std::string characters_;
  std::vector<Tag> tags_;
};

}  // namespace kssub
