// The code page that subtitles usually have in the user's language: a table.
#include "tools/kssub/user_code_page.h"

#include <cstdlib>

namespace kssub {
namespace {

struct Row {
  std::string_view languages;  // each between spaces
  std::string_view codePage;
};

constexpr Row kCodePages[] = {
    {" be bg kk ky mk mn ru sr tg tt uk ", "windows-1251"},
    {" bs cs hr hu pl ro sk sl sq ", "windows-1250"},
    {" el ", "windows-1253"},
    {" az tr ", "windows-1254"},
    {" he iw yi ", "windows-1255"},
    {" ar fa ur ", "windows-1256"},
    {" et lt lv ", "windows-1257"},
    {" vi ", "windows-1258"},
    {" th ", "windows-874"},
    {" ko ", "CP949"},
    {" ja ", "CP932"},
    {" zh_HK zh_TW ", "Big5"},
    {" zh ", "GB18030"},
};

}  // namespace

std::string_view codePageOf(std::string_view locale) noexcept {
  const std::string_view place = locale.substr(0, locale.find_first_of(".@"));
  const std::string_view language = place.substr(0, place.find('_'));
  const auto holds = [](std::string_view languages, std::string_view name) {
    const std::size_t found = name.empty() ? languages.npos : languages.find(name);
    return found != languages.npos && languages[found - 1] == ' ' &&
           languages[found + name.size()] == ' ';
  };
  for (const auto& [languages, codePage] : kCodePages) {
    if (holds(languages, place) || holds(languages, language)) return codePage;
  }
  return "windows-1252";
}

std::string_view userCodePage() noexcept {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const locale = std::getenv(name);
    if (locale != nullptr && *locale != '\0') return codePageOf(locale);
  }
  return codePageOf("");
}

}  // namespace kssub
