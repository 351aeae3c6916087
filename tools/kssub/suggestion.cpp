// The word that was probably meant by a misspelt one.
#include "tools/kssub/suggestion.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kssub {
namespace {

/// The edit distance: how many characters to insert, delete or replace, or neighbours to exchange,
/// to turn one word into the other.
std::size_t distance(std::string_view from, std::string_view to) {
  using Row = std::vector<std::size_t>;
  Row beforeLast(to.size() + 1);
  Row last(to.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= from.size(); ++i) {
    Row row(to.size() + 1, i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t replacing = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replacing});
      const bool isExchanged =
          i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (isExchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    beforeLast = std::exchange(last, std::move(row));
  }
  return last.back();
}

}  // namespace

std::string suggestionFor(std::string_view word, const std::vector<std::string>& candidates) {
  constexpr std::size_t kLongest = 32;
  std::string best;
  // A third of the word may be wrong, but at least one letter.
  std::size_t least = std::max<std::size_t>(word.size() / 3, 1) + 1;
  if (word.size() > kLongest) return best;
  for (const std::string& candidate : candidates) {
    const std::size_t changes = distance(word, candidate);
    if (changes >= least) continue;
    least = changes;
    best = candidate;
  }
  return best;
}

}  // namespace kssub
