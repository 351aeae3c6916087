// How fast a cue must be read.
#include "tools/kssub/reading_speed.h"

#include <algorithm>

namespace kssub {

std::size_t countCharacters(std::string_view text) {
  const auto isCharacter = [](char c) {  // counts its first byte
    return c != '\n' && (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  };
  return static_cast<std::size_t>(std::ranges::count_if(text, isCharacter));
}

double charactersPerSecond(const ksImportCue& cue) {
  if (cue.end <= cue.start) return 0;
  const auto characters = static_cast<double>(countCharacters(cue.text));
  return characters * 1000 / (static_cast<double>(cue.end) - static_cast<double>(cue.start));
}

}  // namespace kssub
