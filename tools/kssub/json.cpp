// JSON values (RFC 8259).
#include "tools/kssub/json.h"

#include <cstdio>

namespace kssub {
namespace {

std::string escaped(unsigned c) {
  if (c == '\n') return "\\n";
  if (c == '"' || c == '\\') return {'\\', static_cast<char>(c)};
  char escape[8];
  std::snprintf(escape, sizeof escape, "\\u%04x", c);
  return escape;
}

/// Consumes U+0080 to U+009F, some of which terminals obey, or U+2028 or U+2029, which end lines
/// for some programs; 0 if another character comes first.
unsigned consumeHighControl(std::string_view& text) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  unsigned c = 0;
  if (text.size() > 1 && byte(0) == 0xC2 && byte(1) < 0xA0) c = byte(1);
  if (text.starts_with("\xE2\x80\xA8")) c = 0x2028;
  if (text.starts_with("\xE2\x80\xA9")) c = 0x2029;
  if (c != 0) text.remove_prefix(c < 0x2028 ? 2 : 3);
  return c;
}

bool needsEscape(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || c == '"' || c == '\\';
}

}  // namespace

std::string jsonString(std::string_view text) {
  std::string out = "\"";
  while (!text.empty()) {
    if (const unsigned control = consumeHighControl(text); control != 0) {
      out += escaped(control);
      continue;
    }
    if (needsEscape(text[0])) {
      out += escaped(static_cast<unsigned char>(text[0]));
    } else {
      out += text[0];
    }
    text.remove_prefix(1);
  }
  return out + '"';
}

}  // namespace kssub
