// What was probably meant by a misspelt word.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kssub {

/// The one of `candidates` that is most like `word`; empty if none is close.
std::string suggestionFor(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace kssub
