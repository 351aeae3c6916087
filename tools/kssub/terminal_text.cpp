// Converts text of any origin to UTF-8 that is safe to print to a terminal.
#include "tools/kssub/terminal_text.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>

#include "tools/kssub/terminal_columns.h"

namespace kssub {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct SequenceForm {
  std::size_t size;  // 0: no sequence begins with this byte
  char32_t leadBits;
  char32_t least;  // a smaller code point has a shorter sequence
};

bool isScalar(char32_t c) { return c < 0xD800 || (0xE000 <= c && c <= 0x10FFFF); }

SequenceForm formOfLead(unsigned char lead) {
  if (lead < 0x80) return {1, 0x7F, 0};
  if (lead < 0xC0) return {0, 0, 0};
  if (lead < 0xE0) return {2, 0x1F, 0x80};
  if (lead < 0xF0) return {3, 0x0F, 0x800};
  if (lead < 0xF8) return {4, 0x07, 0x10000};
  return {0, 0, 0};
}

/// Control characters would let a file control the terminal.
char32_t visible(char32_t c) {
  if (c == '\n') return c;
  if (c < 0x20) return 0x2400 + c;
  if (c == 0x7F) return 0x2421;
  if (c < 0xA0 && c > 0x7F) return kReplacement;
  return c;
}

void appendUtf8(std::string& out, char32_t c) {
  const auto append = [&out](char32_t byte) { out += static_cast<char>(byte); };
  if (c < 0x80) return append(c);
  const int tailBytes = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
  append((0xF0u << (3 - tailBytes) & 0xFF) | c >> (6 * tailBytes));
  for (int i = tailBytes - 1; i >= 0; --i) append(0x80 | (c >> (6 * i) & 0x3F));
}

/// `text` with `map` applied to every code point.
template <typename Map>
std::string mapped(std::string_view text, Map map) {
  std::string out;
  while (!text.empty()) {
    const Decoded next = decodeUtf8(text);
    appendUtf8(out, map(next.codePoint));
    text.remove_prefix(next.size);
  }
  return out;
}

char32_t scalar(char32_t c) { return isScalar(c) ? c : kReplacement; }

}  // namespace

Decoded decodeUtf8(std::string_view text) {
  constexpr Decoded kInvalid{kReplacement, 1};
  const auto lead = static_cast<unsigned char>(text[0]);
  const SequenceForm form = formOfLead(lead);
  if (form.size == 0 || form.size > text.size()) return kInvalid;
  char32_t codePoint = lead & form.leadBits;
  for (const char c : text.substr(1, form.size - 1)) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) return kInvalid;
    codePoint = codePoint << 6 | (byte & 0x3Fu);
  }
  if (codePoint < form.least || !isScalar(codePoint)) return kInvalid;
  return {codePoint, form.size};
}

std::string terminalText(std::string_view text) { return mapped(text, visible); }

std::vector<std::string> terminalLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(terminalText(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::vector<std::string> outputLines(std::string_view text, std::size_t indent) {
  std::vector<std::string> lines = terminalLines(text);
  if (isatty(STDOUT_FILENO) == 0) return lines;
  const std::size_t columns = terminalSize(STDOUT_FILENO).columns;
  std::vector<std::string> fitting;
  for (const std::string& line : lines) {
    std::ranges::move(wrapped(line, columns - std::min(columns, indent)),
                      std::back_inserter(fitting));
  }
  return fitting;
}

std::string utf8Text(const char* text) { return mapped(text, scalar); }

std::string utf8Text(const wchar_t* text) {
  std::string out;
  for (const wchar_t c : std::wstring_view(text)) {
    appendUtf8(out, scalar(static_cast<char32_t>(c)));
  }
  return out;
}

}  // namespace kssub
