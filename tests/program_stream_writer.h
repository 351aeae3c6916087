// Makes subpicture units, and the program streams that carry them.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// `count` bytes of a number, the highest first.
inline std::string bigEndian(unsigned long long number, int count) {
  std::string bytes;
  for (int i = count - 1; i >= 0; --i) bytes += static_cast<char>(number >> 8 * i & 0xFF);
  return bytes;
}

/// What a unit is made of. The rows are pixel codes, '0' to '3', as many in each.
struct UnitParts {
  std::vector<std::string> rows{"1"};
  unsigned left = 0;
  unsigned top = 0;
  unsigned start = 0;  ///< Delays, in units of 1024/90 ms.
  unsigned stop = 0xFFFF;
  std::string commands = "\1";  ///< Of the first control sequence, before all others.
  std::string later = {};       ///< Of the last one, with its stop.
};

/// The run lengths of a row.
inline std::string runLengths(std::string_view row) {
  std::string nibbles;
  while (!row.empty()) {
    const std::size_t same = std::min(row.find_first_not_of(row.front()), row.size());
    const std::size_t length =
        same == row.size() && same > 255 ? 0 : std::min<std::size_t>(same, 255);
    const unsigned code =
        static_cast<unsigned>(length << 2) + static_cast<unsigned>(row.front() - '0');
    const int count = code < 4 ? 4 : code < 0x10 ? 1 : code < 0x40 ? 2 : code < 0x100 ? 3 : 4;
    for (int i = count - 1; i >= 0; --i) nibbles += static_cast<char>(code >> 4 * i & 0xF);
    row.remove_prefix(length == 0 ? same : length);
  }
  if (nibbles.size() % 2 != 0) nibbles += '\0';
  std::string bytes;
  for (std::size_t i = 0; i < nibbles.size(); i += 2) {
    bytes += static_cast<char>(nibbles[i] << 4 | nibbles[i + 1]);
  }
  return bytes;
}

inline std::string makeUnit(const UnitParts& parts) {
  std::string fields[2];
  for (std::size_t y = 0; y < parts.rows.size(); ++y) fields[y % 2] += runLengths(parts.rows[y]);
  const auto extent = [](unsigned first, std::size_t length) {
    return bigEndian((first << 12) + first + length - 1, 3);
  };
  const std::size_t control = 4 + fields[0].size() + fields[1].size();
  std::string first = parts.commands + "\3\x32\x10\4\xFF\xF0\5";  // colours as the codes, 0 unseen
  first += extent(parts.left, parts.rows[0].size()) + extent(parts.top, parts.rows.size());
  first += '\6' + bigEndian(4, 2) + bigEndian(4 + fields[0].size(), 2) + '\xFF';
  const std::size_t second = control + 4 + first.size();
  std::string sequences = bigEndian(parts.start, 2) + bigEndian(second, 2) + first;
  sequences += bigEndian(parts.stop, 2) + bigEndian(second, 2) + parts.later + "\2\xFF";
  return bigEndian(control + sequences.size(), 2) + bigEndian(control, 2) + fields[0] + fields[1] +
         sequences;
}

/// A header of a pack, of MPEG-2, with stuffing after it.
inline std::string packHeader(int stuffing = 0) {
  using namespace std::string_literals;
  return "\0\0\1\xBA"s + "\x44\0\4\0\4\1\1\x89\xC3"s + static_cast<char>(0xF8 | stuffing) +
         std::string(static_cast<std::size_t>(stuffing), '\xFF');
}

/// A packet of any stream by the last byte of its start code.
inline std::string packet(int id, std::string_view content) {
  using namespace std::string_literals;
  return "\0\0\1"s + static_cast<char>(id) + bigEndian(content.size(), 2) + std::string(content);
}

/// A packet of a subpicture stream; with a time in milliseconds a unit begins in it.
inline std::string subpicturePacket(std::string_view payload, std::optional<unsigned> time = {},
                                    int stream = 0, std::size_t stuffing = 0) {
  std::string header("\x81\0\0", 3);
  if (time) {
    const unsigned long long ticks = *time * 90ULL;
    header[1] = '\x80';
    header += bigEndian(0x2100010001 | (ticks >> 30 & 7) << 33 | (ticks >> 15 & 0x7FFF) << 17 |
                            (ticks & 0x7FFF) << 1,
                        5);
  }
  header += std::string(stuffing, '\xFF');
  header[2] = static_cast<char>(header.size() - 3);
  return packet(0xBD, header + static_cast<char>(0x20 + stream) + std::string(payload));
}

/// A unit in packs of 2,048 bytes, the last one filled up by a padding stream.
inline std::string packsOf(std::string_view unit, std::optional<unsigned> time = 0,
                           int stream = 0) {
  constexpr std::size_t kPack = 2048;
  constexpr std::size_t kHeaders = 24;  // with a time 29
  std::string packs;
  while (!unit.empty()) {
    const std::string_view part = unit.substr(0, kPack - kHeaders - (time ? 5 : 0));
    packs += packHeader() + subpicturePacket(part, time, stream);
    unit.remove_prefix(part.size());
    time.reset();
  }
  const std::size_t rest = kPack - packs.size() % kPack;
  return packs + (rest < 6        ? std::string(rest % kPack, '\xFF')
                  : rest == kPack ? ""
                                  : packet(0xBE, std::string(rest - 6, '\xFF')));
}
