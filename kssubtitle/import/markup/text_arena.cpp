// Owns the texts of all cues.
#include "kssubtitle/import/markup/text_arena.h"

#include <algorithm>
#include <utility>

namespace kssubtitle::importing {

// Only the current text moves to the new block; the old one stays if it holds other texts.
void TextArena::grow(std::size_t count) {
  constexpr std::size_t kLeastBlock = 4096;
  const std::string_view begun = text();
  const std::size_t needed = begun.size() + count;
  const std::size_t size = std::max({nextBlock_, kLeastBlock, needed + begun.size() / 2});
  auto block = std::make_unique_for_overwrite<char[]>(size);
  std::copy(begun.begin(), begun.end(), block.get());
  const bool holdsOnlyThis = !blocks_.empty() && blocks_.back().get() == begin_;
  begin_ = block.get();
  at_ = begin_ + begun.size();
  end_ = begin_ + size;
  if (holdsOnlyThis) {
    blocks_.back() = std::move(block);
  } else {
    blocks_.push_back(std::move(block));
  }
  nextBlock_ = nextBlock_ / 2;
}

}  // namespace kssubtitle::importing
