// A text with style, as the import library has it, made fit for changes to its characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kssub {

/// Bytes of a text.
struct TextRange {
  std::size_t begin;
  std::size_t end;
};

/// The characters of a text apart from its tags, which stay where they are when characters go.
class TaggedText {
 public:
  /// Takes a text in ksImportMarkup::kHtml.
  explicit TaggedText(std::string_view html);

  /// UTF-8, lines separated by line feeds.
  const std::string& characters() const { return characters_; }
  /// Puts one ASCII character in place of another.
  void replace(std::size_t at, char c) { characters_[at] = c; }
  /// In any order, and some may overlap. Requires: the characters are there.
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
