// The report of the import library on a file, in words.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/ksImportReport.h"

namespace kssub {

/// The file contains pictures, not text.
class PicturesError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Why a file is refused, without its name.
std::string refusalOf(const ksImportReport& report);

/// Throws a std::runtime_error that says why the file `name` is refused; PicturesError if it
/// contains pictures.
[[noreturn]] void throwRefusal(const std::string& name, const ksImportReport& report);

/// Throws a std::runtime_error that says why the file `name` cannot be opened.
[[noreturn]] void throwCannotOpen(const std::string& name, std::string_view reason);

/// Throws a std::runtime_error if the file `name` lacks the language `wanted` that was asked for.
void requireLanguage(const std::string& name, const std::string& wanted,
                     const ksImportReport& report);
/// The languages, joined by `separator`.
std::string languagesIn(const ksImportReport& report, std::string_view separator);

std::string_view nameOf(ksImportLineEnds ends);
/// How the encoding was determined, in a few words.
std::string_view nameOf(ksImportEncodingSource source);
/// "1 cue", "2 cues".
std::string counted(std::size_t count, std::string_view what);

/// How many problems were found, including those that the report does not keep.
std::size_t countNotes(const ksImportReport& report);

/// The format, the encoding, the line ends and the number of notes.
std::string summaryOf(const ksImportReport& report);

/// One line per note on the file `name`.
std::vector<std::string> noteLines(std::string_view name, const ksImportReport& report);

}  // namespace kssub
