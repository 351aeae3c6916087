// What the first lines of a file say about its encoding.
#include <algorithm>

#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/encodings.h"

namespace kssubtitle::importing {
namespace {

constexpr bool isNameCharacter(char c) noexcept {
  return isDigit(c) || isLetter(c) || c == '-' || c == '_' || c == ':' || c == '.';
}

/// The value of the first attribute `key` in `text`, with or without quotes.
std::string_view valueOf(std::string_view text, std::string_view key) noexcept {
  const std::size_t found = findNoCase(text, key);
  if (found == text.npos) return {};
  text.remove_prefix(found + key.size());
  text = withoutLeadingBlanks(text);
  if (!text.starts_with('=')) return {};
  text = withoutLeadingBlanks(text.substr(1));
  if (text.starts_with('"') || text.starts_with('\'')) text.remove_prefix(1);
  const auto* const end = std::find_if_not(text.begin(), text.end(), isNameCharacter);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

}  // namespace

std::string_view declaredEncoding(std::string_view bytes) noexcept {
  constexpr std::size_t kLooked = 1024;
  const std::string_view head = bytes.substr(0, std::min(bytes.size(), kLooked));
  std::string_view name;
  if (const std::size_t xml = findNoCase(head, "<?xml"); xml != head.npos) {
    const std::string_view declaration = head.substr(xml);
    name = valueOf(declaration.substr(0, declaration.find("?>")), "encoding");
  } else if (startsWithNoCase(head, "Content-Type:")) {
    name = valueOf(head.substr(0, head.find('\n')), "charset");
  } else if (const std::size_t meta = findNoCase(head, "<meta"); meta != head.npos) {
    name = valueOf(head.substr(meta), "charset");
  }
  return name;
}

}  // namespace kssubtitle::importing
