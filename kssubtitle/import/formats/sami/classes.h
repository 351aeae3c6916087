// The classes of SAMI's paragraphs, some of which are languages.
#pragma once

#include <limits>
#include <map>
#include <string_view>
#include <vector>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

/// A time later than all others, in milliseconds.
inline constexpr long long kNever = std::numeric_limits<long long>::max();

/// A class of paragraphs.
struct SamiClass {
  enum class Kind {
    kUndeclared,  ///< The style sheet does not declare it: it may be either of the others.
    kStyle,       ///< It only styles its text.
    kLanguage,    ///< The style sheet gives it a language or a display name: a track of its own.
  };

  Kind kind = Kind::kUndeclared;
  bool isUsed = false;
  std::string_view tag;     // of the language, such as "en-US"
  long long next = kNever;  // the start of its next paragraph, while ends are determined
};

/// The classes of a file, by their names in any case. All names refer to the file's text.
class SamiClasses {
 public:
  /// The class of a paragraph; null if `name` is empty.
  SamiClass* use(std::string_view name);
  /// Reads the rules of a style sheet, such as ".KRCC { name: Korean; lang: ko-KR; }".
  void declare(std::string_view sheet);
  /// The names of the languages that have paragraphs, in the order of their declarations; then
  /// those of the undeclared classes, in the order of their paragraphs.
  std::vector<std::string_view> languages() const;
  /// The listed class with that name or, failing that, such a tag ("en" matches "en-US"); otherwise
  /// the first declared language. Null if there is none.
  const SamiClass* select(std::string_view wanted) const;
  /// Whether select() has such a class.
  bool has(std::string_view wanted) const { return find(wanted) != nullptr; }

 private:
  struct LessNoCase {
    bool operator()(std::string_view a, std::string_view b) const noexcept;
  };

  void declare(std::string_view selectors, std::string_view rule);
  const SamiClass* find(std::string_view wanted) const;

  std::map<std::string_view, SamiClass, LessNoCase> classes_;
  std::vector<std::string_view> declared_;  // the languages
  std::vector<std::string_view> used_;
};

}  // namespace kssubtitle::importing
