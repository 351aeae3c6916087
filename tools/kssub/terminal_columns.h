// How text fits into the columns of a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kssub {

struct TerminalSize {
  std::size_t columns;
  std::size_t rows;
};

/// The size of the terminal at the file `descriptor`; 80 by 24 if it does not say.
TerminalSize terminalSize(int descriptor);

/// How many columns a terminal needs for `text`, which is UTF-8 without control characters.
std::size_t columnsOf(std::string_view text);

/// Breaks `line`, which is such text, into lines of at most `columns` columns: at spaces, which are
/// dropped there, or inside a word that is too long. Every line has at least one character.
std::vector<std::string> wrapped(std::string_view line, std::size_t columns);

}  // namespace kssub
