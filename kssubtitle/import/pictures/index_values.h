// The values in the lines of a VobSub index: numbers, colours, times.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/numbers.h"

namespace kssubtitle::importing {

/// The most milliseconds of a time.
inline constexpr long long kLongestTime = 1'000'000'000'000;

/// Two numbers, across and down.
struct Pair {
  int x = 0;
  int y = 0;
};

/// Consumes a hexadecimal number of at most 15 digits, and the blanks before it.
std::optional<std::uint64_t> consumeHexadecimal(std::string_view& text) noexcept;

/// Reads colours, with or without commas between them; returns how many there are.
template <std::size_t kCount>
std::size_t readColors(std::string_view text, std::array<std::uint32_t, kCount>& colors) noexcept {
  std::size_t count = 0;
  for (; count < kCount; consumeCharacter(text, ',')) {
    const auto color = consumeHexadecimal(text);
    if (!color) break;
    colors[count++] = static_cast<std::uint32_t>(*color & 0xFFFFFF);
  }
  return count;
}

/// Reads two numbers within `bounds`, with any of the characters of `separators` between them.
std::optional<Pair> readPair(std::string_view text, std::string_view separators, Pair bounds);

/// Consumes a time, "h:m:s:ms" with or without a sign.
std::optional<long long> consumeIndexTime(std::string_view& text) noexcept;
/// Reads such a time, or a number of milliseconds.
std::optional<long long> readShift(std::string_view text) noexcept;

/// The part of `text` after `key` and a colon; nothing if they are not in it.
std::optional<std::string_view> valueOf(std::string_view text, std::string_view key) noexcept;

/// Whether a switch is on.
bool isOn(std::string_view value) noexcept;

}  // namespace kssubtitle::importing
