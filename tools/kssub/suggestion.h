// The word that was probably meant by a misspelt one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kssub {

/// The candidate that is most similar to `word`; empty if none is close.
std::string suggestionFor(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace kssub
