// ASS and SSA files of any content, and each of their lines as the text of an event.
#include <sstream>

#include "fuzz/support.h"

namespace {

/// The text without its override tags, taken out one after the other.
std::string withoutTags(std::string text) {
  for (const auto& [opening, closing] : {std::pair{'{', '}'}, std::pair{'<', '>'}}) {
    std::size_t open = 0;
    for (std::size_t allowed = text.size(); allowed > 0; --allowed) {
      open = text.find(opening, open);
      const std::size_t close = text.find(closing, open);
      if (open == text.npos || close == text.npos) break;
      for (std::size_t to = open, from = close + 1; from <= text.size(); ++to, ++from) {
        text[to] = from == text.size() ? '\0' : text[from];
      }
    }
  }
  for (std::size_t at = 0; at == 0 && (at = text.find("\\N")) != text.npos;) {
    text.replace(at, 2, "\n");
  }
  return text;
}

/// Makes a script whose events have the lines of `text` as their texts.
template <typename Char>
void checkTexts(std::string_view text) {
  constexpr std::size_t kLongestLine = 1024;
  typename Width<Char>::Ass parser;
  parser.lines.push_back(wide<Char>("ScriptType: v4.00+"));
  std::vector<std::string> expected;
  std::istringstream input{std::string(text)};
  for (std::string line; std::getline(input, line);) {
    line.resize(std::min(line.size(), kLongestLine));
    parser.lines.push_back(wide<Char>("Dialogue: 0,0:00:01.00,0:00:02.00,s,n,0,0,0,," + line));
    line.resize(line.find_last_not_of(' ') + 1);
    expected.push_back("\n" + withoutTags(line));
  }
  parser.ConvertBufToAssMap();
  int key = 0;
  for (const std::string& clean : expected) {
    check(narrow(std::as_const(parser.sessions).at(++key).text) == clean,
          "an event has its text without tags");
  }
}

template <typename Char>
void checkAss(const Input& input) {
  using Parser = typename Width<Char>::Ass;
  checkParser<Char, Parser>(input, &Parser::ConvertBufToAssMap);
  checkTexts<Char>(input.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input(data, size);
  input.isWide() ? checkAss<wchar_t>(input) : checkAss<char>(input);
  return 0;
}
