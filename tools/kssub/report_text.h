// What the import library tells of a file, in words.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/ksImportReport.h"

namespace kssub {

/// The file holds pictures, not text.
class PicturesError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Why a file is refused, without its name.
std::string refusalOf(const ksImportReport& report);

/// Throws a std::runtime_error that says why the file `name` is refused, PicturesError if it holds
/// pictures.
[[noreturn]] void throwRefusal(const std::string& name, const ksImportReport& report);

/// Throws a std::runtime_error unless the file `name`, if it names languages at all, has `wanted`
/// or a dialect of it among them, in any case. An empty one will do, and one among `others`.
void requireLanguage(const std::string& name, const std::string& wanted,
                     const ksImportReport& report, const std::vector<std::string>& others = {});
/// The languages with `separator` between them.
std::string languagesIn(const ksImportReport& report, std::string_view separator);

std::string_view nameOf(ksImportLineEnds ends);
/// How an encoding was found, in a word or two.
std::string_view nameOf(ksImportEncodingSource source);
/// "1 cue", "2 cues".
std::string counted(std::size_t count, std::string_view what);

/// How many problems were found, those that the report does not keep included.
std::size_t countNotes(const ksImportReport& report);

/// The format, the encoding and the line ends, and how many notes there are.
std::string summaryOf(const ksImportReport& report);

/// A line on each note on the file `name`.
std::vector<std::string> noteLines(std::string_view name, const ksImportReport& report);

}  // namespace kssub
