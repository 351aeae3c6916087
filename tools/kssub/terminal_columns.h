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

/// The size of the terminal at the file `descriptor`; where it does not tell, 80 by 24.
TerminalSize terminalSize(int descriptor);

/// How many columns a terminal needs for `text`, which is UTF-8 without control characters.
std::size_t columnsOf(std::string_view text);

/// `line`, which is such text, in lines of at most `columns` columns: broken at blanks, which are
/// left out there, or where one word is too long inside of it. No line has less than one character.
std::vector<std::string> wrapped(std::string_view line, std::size_t columns);

}  // namespace kssub
