// How text fits into the columns of a terminal.
#include "tools/kssub/terminal_columns.h"

#include <sys/ioctl.h>

#include <clocale>
#include <cwchar>

namespace kssub {
namespace {

/// Gives this thread the Unicode character set while it exists. The locale of the program stays as
/// it is, because the fixed readers depend on it.
class UnicodeLocale {
 public:
  UnicodeLocale() {
    if (unicode_ != nullptr) before_ = uselocale(unicode_);
  }
  UnicodeLocale(const UnicodeLocale&) = delete;
  UnicodeLocale& operator=(const UnicodeLocale&) = delete;
  ~UnicodeLocale() {
    if (unicode_ == nullptr) return;
    uselocale(before_);
    freelocale(unicode_);
  }

 private:
  locale_t unicode_ = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  locale_t before_ = nullptr;
};

struct Character {
  std::size_t bytes;
  std::size_t columns;
};

/// The first character of `text`, which is not empty. Without that locale every byte counts as one
/// column.
Character firstOf(std::string_view text) {
  wchar_t c = 0;
  std::mbstate_t state{};
  const std::size_t bytes = std::mbrtowc(&c, text.data(), text.size(), &state);
  if (bytes == 0 || bytes > text.size()) return {1, 1};
  const int columns = wcwidth(c);
  return {bytes, columns < 0 ? 1 : static_cast<std::size_t>(columns)};
}

/// Where the first line of a text ends, and where the next one begins.
struct Break {
  std::size_t end;
  std::size_t next;
};

Break firstBreak(std::string_view text, std::size_t columns) {
  Break atBlank{0, 0};
  std::size_t used = 0;
  for (std::size_t i = 0; i < text.size();) {
    const Character character = firstOf(text.substr(i));
    used += character.columns;
    if (text[i] == ' ' && i > 0) atBlank = {i, i + 1};
    if (used > columns && i > 0) return atBlank.end > 0 ? atBlank : Break{i, i};
    i += character.bytes;
  }
  return {text.size(), text.size()};
}

}  // namespace

TerminalSize terminalSize(int descriptor) {
  winsize size{};
  if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
    return {80, 24};
  }
  return {size.ws_col, size.ws_row};
}

std::size_t columnsOf(std::string_view text) {
  const UnicodeLocale locale;
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = firstOf(text);
    columns += character.columns;
    text.remove_prefix(character.bytes);
  }
  return columns;
}

std::vector<std::string> wrapped(std::string_view line, std::size_t columns) {
  const UnicodeLocale locale;
  std::vector<std::string> lines;
  do {
    const auto [end, next] = firstBreak(line, columns);
    lines.emplace_back(line.substr(0, end));
    line.remove_prefix(next);
  } while (!line.empty());
  return lines;
}

}  // namespace kssub
