// Colours on a terminal.
#include "tools/kssub/terminal_colours.h"

#include <unistd.h>

#include <cstdlib>

namespace kssub {
namespace {

std::string_view variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool hasColours(int descriptor) {
  const std::string_view terminal = variable("TERM");
  return variable("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb" &&
         isatty(descriptor) != 0;
}

const char* codeOf(Colour colour) {
  switch (colour) {
    case Colour::kBold:
      return "1";
    case Colour::kDim:
      return "2";
    case Colour::kRed:
      return "31";
    case Colour::kGreen:
      return "32";
    case Colour::kYellow:
      return "33";
  }
  return "0";
}

}  // namespace

std::string coloured(std::string_view text, Colour colour, int descriptor) {
  if (!hasColours(descriptor)) return std::string(text);
  return std::string("\033[") + codeOf(colour) + "m" + std::string(text) + "\033[0m";
}

}  // namespace kssub
