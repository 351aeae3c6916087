// JSON values (RFC 8259).
#include "tools/kssub/json.h"

#include <cstdio>

namespace kssub {
namespace {

/// U+0080 to U+009F, some of which terminals obey.
bool beginsHighControl(std::string_view text) {
  return text.size() > 1 && text[0] == '\xC2' && static_cast<unsigned char>(text[1]) < 0xA0;
}

std::string escaped(char c) {
  if (c == '\n') return "\\n";
  if (c == '"' || c == '\\') return {'\\', c};
  char escape[8];
  std::snprintf(escape, sizeof escape, "\\u%04x",
                static_cast<unsigned>(static_cast<unsigned char>(c)));
  return escape;
}

bool needsEscape(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || c == '"' || c == '\\';
}

}  // namespace

std::string jsonString(std::string_view text) {
  std::string out = "\"";
  for (; !text.empty(); text.remove_prefix(1)) {
    const bool isHighControl = beginsHighControl(text);
    if (isHighControl) text.remove_prefix(1);
    if (isHighControl || needsEscape(text[0])) {
      out += escaped(text[0]);
    } else {
      out += text[0];
    }
  }
  return out + '"';
}

}  // namespace kssub
