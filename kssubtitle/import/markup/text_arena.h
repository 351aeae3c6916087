// Where the texts of all cues lie.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace kssubtitle::importing {

/// Texts one behind the other in a few large blocks; none moves once it is finished.
class TextArena {
 public:
  explicit TextArena(std::size_t expectedSize) : nextBlock_(expectedSize) {}

  /// Lets at least `count` more characters be written to the text that is being made.
  char* room(std::size_t count) {
    if (static_cast<std::size_t>(end_ - at_) < count) grow(count);
    return at_;
  }
  /// Takes note that `count` characters were written there.
  void wrote(std::size_t count) noexcept { at_ += count; }
  /// The text that is being made.
  std::string_view text() const noexcept {
    return {begin_, static_cast<std::size_t>(at_ - begin_)};
  }
  /// Drops its end.
  void cutTo(std::size_t size) noexcept { at_ = begin_ + size; }
  /// Keeps it for good, and begins the next one.
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
