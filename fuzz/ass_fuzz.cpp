// ASS and SSA files of any content, and each of their lines as the text of an event.
#include <sstream>

#include "fuzz/support.h"
#include "tests/models/override_model.h"

namespace {

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
    expected.push_back("\n" + naiveOverrideRemoval(line));
  }
  parser.ConvertBufToAssMap();
  int key = 0;
  for (const std::string& clean : expected) {
    check(narrow(parser.sessions.at(++key).text) == clean, "an event has its text without tags");
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
