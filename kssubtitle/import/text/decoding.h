// Decodes bytes to UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/text/encodings.h"

namespace kssubtitle::importing {

/// Where undecodable bytes became U+FFFD.
class Replacements {
 public:
  void add(std::size_t offset) {
    ++count_;
    if (offsets_.size() < kMostKept) offsets_.push_back(offset);
  }
  /// Adjusts to the removal of `removed` bytes before all of them.
  void shift(std::size_t removed) noexcept {
    for (std::size_t& offset : offsets_) offset -= removed;
  }
  std::size_t count() const noexcept { return count_; }
  /// Ascending; only the first kMostKept.
  const std::vector<std::size_t>& offsets() const noexcept { return offsets_; }

 private:
  static constexpr std::size_t kMostKept = 1000;
  std::size_t count_ = 0;
  std::vector<std::size_t> offsets_;
};

/// A file's text as valid UTF-8 without its BOM.
struct DecodedText {
  std::string text;
  Replacements replacements;
};

/// Nothing if the C library does not know the code page.
std::optional<DecodedText> decode(std::string bytes, const FoundEncoding& found);

}  // namespace kssubtitle::importing
