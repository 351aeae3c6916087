// Says what a text is: content decides, and where that leaves a choice, the extension.
#include "kssubtitle/import/recognition/recognition.h"

#include <algorithm>
#include <string>

#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/recognition/kinds.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

/// Whether `extensions` names that of `path`.
bool hasExtension(std::string_view path, std::string_view extensions) noexcept {
  const std::size_t dot = path.rfind('.');
  if (dot == path.npos) return false;
  const std::string_view extension = path.substr(dot + 1);
  while (!extensions.empty()) {
    const std::size_t end = std::min(extensions.find(' '), extensions.size());
    if (equalNoCase(extensions.substr(0, end), extension)) return true;
    extensions.remove_prefix(std::min(end + 1, extensions.size()));
  }
  return false;
}

struct Match {
  const Format* format = nullptr;
  Likelihood likelihood = Likelihood::kNone;
};

Match mostLikely(std::string_view text, std::string_view path) noexcept {
  Match best;
  int bestRank = 1;
  for (const Format* const format : formats()) {
    const Likelihood likelihood = format->likelihood(text);
    if (likelihood == Likelihood::kNone) continue;
    const int rank =
        2 * static_cast<int>(likelihood) + (hasExtension(path, format->info.extensions) ? 1 : 0);
    if (rank > bestRank) {
      best = {format, likelihood};
      bestRank = rank;
    }
  }
  return best;
}

/// The format of a text; null if it is in none.
const Format* formatOf(std::string_view text, std::string_view path) noexcept {
  constexpr std::size_t kUsuallyEnough = 4096;
  const Match first = mostLikely(text.substr(0, kUsuallyEnough), path);
  const bool isClear = first.likelihood >= Likelihood::kLikely || text.size() <= kUsuallyEnough;
  return isClear ? first.format : mostLikely(text, path).format;
}

/// The format other than `recognised` of which a text has everything but the signature, as its
/// extension and its content agree; null if there is none.
const Format* formatLackingSignature(std::string_view text, std::string_view path,
                                     const Format* recognised) noexcept {
  const auto found = std::ranges::find_if(formats(), [&](const Format* format) {
    return format != recognised && format->lacksSignature != nullptr &&
           hasExtension(path, format->info.extensions) && format->lacksSignature(text);
  });
  return found == formats().end() ? nullptr : *found;
}

Recognised refused(const Kind& kind) noexcept {
  return {.refusal = kind.refusal, .sentence = kind.sentence};
}

/// recognise() for a text without NULs; neither a format nor a refusal if it is in no format.
Recognised recogniseCleaned(std::string_view text, std::string_view path,
                            std::string_view givenFormat) noexcept {
  if (const Kind* const kind = kindOf(Content::kText, text)) return refused(*kind);
  if (!givenFormat.empty()) {
    const Format* const given = formatNamed(givenFormat);
    if (given == nullptr) return {.refusal = ksImportRefusal::kUnknownFormatName};
    return {.format = given};
  }
  const Format* const format = formatOf(text, path);
  if (const Format* const meant = formatLackingSignature(text, path, format)) {
    return {.refusal = ksImportRefusal::kUnknownFormat, .sentence = meant->signatureMissing};
  }
  return {.format = format};
}

}  // namespace

Recognised recognise(std::string_view text, std::string_view path, std::string_view givenFormat) {
  std::string cleaned;
  if (text.find('\0') != text.npos) {
    cleaned = text;
    std::erase(cleaned, '\0');
  }
  const Recognised recognised =
      recogniseCleaned(cleaned.empty() ? text : cleaned, path, givenFormat);
  const bool isUnknown =
      recognised.format == nullptr && recognised.refusal == ksImportRefusal::kNone;
  return isUnknown ? refused(*kindOf(Content::kUnknownText, text)) : recognised;
}

}  // namespace kssubtitle::importing
