// Owns the texts of all cues.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace kssubtitle::importing {

/// Texts in a few large blocks. A finished text never moves.
class TextArena {
 public:
  explicit TextArena(std::size_t expectedSize) : nextBlock_(expectedSize) {}

  /// Returns room for at least `count` more characters of the current text.
  char* room(std::size_t count) {
    if (static_cast<std::size_t>(end_ - at_) < count) grow(count);
    return at_;
  }
  /// To be called after `count` characters were written there.
  void wrote(std::size_t count) noexcept { at_ += count; }
  /// The current text.
  std::string_view text() const noexcept {
    return {begin_, static_cast<std::size_t>(at_ - begin_)};
  }
  /// Shortens it.
  void cutTo(std::size_t size) noexcept { at_ = begin_ + size; }
  /// Finishes it and begins the next one.
  std::string_view finish() noexcept {
    const std::string_view finished = text();
    begin_ = at_;
    return finished;
  }

 private:
  void grow(std::size_t count);

  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t nextBlock_;
  char* begin_ = nullptr;
  char* at_ = nullptr;
  char* end_ = nullptr;
};

}  // namespace kssubtitle::importing
