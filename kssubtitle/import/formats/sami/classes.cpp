// The classes of SAMI's paragraphs.
#include "kssubtitle/import/formats/sami/classes.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "kssubtitle/import/formats/common/language_tag.h"

namespace kssubtitle::importing {
namespace {

std::string_view withoutSpacesAndQuotes(std::string_view text) noexcept {
  constexpr std::string_view kDropped = " \t\r\n\v\f\"'";
  const std::size_t begin = text.find_first_not_of(kDropped);
  if (begin == text.npos) return {};
  return text.substr(begin, text.find_last_not_of(kDropped) + 1 - begin);
}

/// The value of a property; nothing if the rule does not have it.
std::optional<std::string_view> valueOf(std::string_view rule, std::string_view property) noexcept {
  while (!rule.empty()) {
    const std::size_t end = std::min(rule.find(';'), rule.size());
    const std::string_view entry = rule.substr(0, end);
    const std::size_t colon = std::min(entry.find_first_of(":="), entry.size());
    if (equalNoCase(withoutSpacesAndQuotes(entry.substr(0, colon)), property)) {
      return withoutSpacesAndQuotes(entry.substr(std::min(colon + 1, entry.size())));
    }
    rule.remove_prefix(std::min(end + 1, rule.size()));
  }
  return std::nullopt;
}

}  // namespace

bool SamiClasses::LessNoCase::operator()(std::string_view a, std::string_view b) const noexcept {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char x, char y) { return lowerOf(x) < lowerOf(y); });
}

SamiClass* SamiClasses::use(std::string_view name) {
  if (name.empty()) return nullptr;
  SamiClass& used = classes_[name];
  if (!used.isUsed) used_.push_back(name);
  used.isUsed = true;
  return &used;
}

void SamiClasses::declare(std::string_view sheet) {
  while (!sheet.empty()) {
    const std::size_t opening = std::min(sheet.find('{'), sheet.size());
    const std::size_t closing = std::min(sheet.find('}', opening), sheet.size());
    if (opening < closing) {
      declare(sheet.substr(0, opening), sheet.substr(opening + 1, closing - opening - 1));
    }
    sheet.remove_prefix(std::min(closing + 1, sheet.size()));
  }
}

void SamiClasses::declare(std::string_view selectors, std::string_view rule) {
  const auto tag = valueOf(rule, "lang");
  const bool isLanguage = tag || valueOf(rule, "name");
  constexpr std::string_view kNameEnds = " \t\r\n\v\f,.:#";
  for (std::size_t dot; (dot = selectors.find('.')) != selectors.npos;) {
    selectors.remove_prefix(dot + 1);
    const std::string_view name = selectors.substr(0, selectors.find_first_of(kNameEnds));
    if (name.empty()) continue;
    SamiClass& declared = classes_[name];
    if (declared.kind == SamiClass::Kind::kUndeclared) declared.kind = SamiClass::Kind::kStyle;
    if (!isLanguage) continue;
    if (declared.kind != SamiClass::Kind::kLanguage) declared_.push_back(name);
    declared.kind = SamiClass::Kind::kLanguage;
    declared.tag = tag.value_or(declared.tag);
  }
}

std::vector<std::string_view> SamiClasses::languages() const {
  std::vector<std::string_view> names;
  std::copy_if(declared_.begin(), declared_.end(), std::back_inserter(names),
               [this](std::string_view name) { return classes_.at(name).isUsed; });
  std::copy_if(used_.begin(), used_.end(), std::back_inserter(names),
               [this](std::string_view name) {
                 return classes_.at(name).kind == SamiClass::Kind::kUndeclared;
               });
  return names;
}

const SamiClass* SamiClasses::find(std::string_view wanted) const {
  const std::vector<std::string_view> names = languages();
  auto found = std::ranges::find_if(
      names, [wanted](std::string_view name) { return equalNoCase(name, wanted); });
  if (found == names.end()) {
    found = std::ranges::find_if(names, [this, wanted](std::string_view name) {
      return isLanguage(classes_.at(name).tag, wanted);
    });
  }
  return found == names.end() ? nullptr : &classes_.at(*found);
}

const SamiClass* SamiClasses::select(std::string_view wanted) const {
  if (const SamiClass* const found = find(wanted)) return found;
  const std::vector<std::string_view> names = languages();
  const SamiClass* const first = names.empty() ? nullptr : &classes_.at(names.front());
  return first != nullptr && first->kind == SamiClass::Kind::kLanguage ? first : nullptr;
}

}  // namespace kssubtitle::importing
