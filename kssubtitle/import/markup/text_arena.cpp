// Where the texts of all cues lie.
#include "kssubtitle/import/markup/text_arena.h"

#include <algorithm>

namespace kssubtitle::importing {

// Only the text that is being made moves to the new block, which is half as large again.
void TextArena::grow(std::size_t count) {
  constexpr std::size_t kLeastBlock = 4096;
  const std::string_view begun = text();
  const std::size_t size = std::max({nextBlock_, kLeastBlock, 2 * (begun.size() + count)});
  blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
  char* const block = blocks_.back().get();
  std::copy(begun.begin(), begun.end(), block);
  begin_ = block;
  at_ = block + begun.size();
  end_ = block + size;
  nextBlock_ = size / 2;
}

}  // namespace kssubtitle::importing
