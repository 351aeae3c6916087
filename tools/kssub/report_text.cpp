// The report of the import library on a file, in words.
#include "tools/kssub/report_text.h"

#include <algorithm>
#include <system_error>

#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

/// How the encoding was determined, if the text itself does not prove it; after a space.
std::string doubtOf(ksImportEncodingSource source) {
  switch (source) {
    case ksImportEncodingSource::kDetected:
    case ksImportEncodingSource::kFallback:
    case ksImportEncodingSource::kGiven:
      return " (" + std::string(nameOf(source)) + ')';
    default:
      return "";
  }
}

}  // namespace

std::string_view nameOf(ksImportLineEnds ends) {
  switch (ends) {
    case ksImportLineEnds::kLf:
      return "LF";
    case ksImportLineEnds::kCrLf:
      return "CR LF";
    case ksImportLineEnds::kCr:
      return "CR";
    case ksImportLineEnds::kCrCrLf:
      return "CR CR LF";
    case ksImportLineEnds::kMixed:
      return "mixed line ends";
    case ksImportLineEnds::kNone:
      break;
  }
  return "no line ends";
}

std::string_view nameOf(ksImportEncodingSource source) {
  switch (source) {
    case ksImportEncodingSource::kBom:
      return "by its BOM";
    case ksImportEncodingSource::kNulBytes:
      return "by its zero bytes";
    case ksImportEncodingSource::kValidUtf8:
      return "valid throughout";
    case ksImportEncodingSource::kMostlyUtf8:
      return "except for a few bytes";
    case ksImportEncodingSource::kDeclared:
      return "declared";
    case ksImportEncodingSource::kDetected:
      return "detected";
    case ksImportEncodingSource::kFallback:
      return "assumed";
    case ksImportEncodingSource::kGiven:
      break;
  }
  return "given";
}

std::size_t countNotes(const ksImportReport& report) {
  std::size_t count = 0;
  for (const ksImportProblem problem : ksImportProblems()) count += report.count(problem);
  return count;
}

std::string counted(std::size_t count, std::string_view what) {
  return std::to_string(count) + ' ' + std::string(what) + (count == 1 ? "" : "s");
}

std::string refusalOf(const ksImportReport& report) {
  const std::string_view text = report.refusalSentence();
  if (text.find("VobSub") != text.npos && report.refusal() == ksImportRefusal::kPictures) {
    return std::string(text) + " See kssub list and kssub picture.";
  }
  if (report.refusal() != ksImportRefusal::kCannotOpen) return std::string(text);
  return "cannot open: " + std::generic_category().message(report.systemError());
}

void throwCannotOpen(const std::string& name, std::string_view reason) {
  throw std::runtime_error(terminalText(name) + ": cannot open: " + std::string(reason));
}

void throwRefusal(const std::string& name, const ksImportReport& report) {
  const std::string text = terminalText(name) + ": " + refusalOf(report);
  if (report.refusal() == ksImportRefusal::kPictures) throw PicturesError(text);
  throw std::runtime_error(text);
}

void requireLanguage(const std::string& name, const std::string& wanted,
                     const ksImportReport& report) {
  if (report.hasLanguage()) return;
  throw std::runtime_error(
      terminalText(name + ": no language " + wanted + "; it has " + languagesIn(report, ", ")));
}

std::string languagesIn(const ksImportReport& report, std::string_view separator) {
  std::string names;
  for (const std::string& language : report.languages()) {
    if (!names.empty()) names += separator;
    names += language;
  }
  return names;
}

std::string summaryOf(const ksImportReport& report) {
  std::string text(report.format());
  if (!report.encoding().empty()) {
    text += ", " + std::string(report.encoding()) + doubtOf(report.encodingSource()) + ", " +
            std::string(nameOf(report.lineEnds()));
  }
  const std::size_t notes = countNotes(report);
  if (notes > 0) text += "; " + counted(notes, "note");
  return text;
}

std::vector<std::string> noteLines(std::string_view name, const ksImportReport& report) {
  std::vector<std::string> lines;
  for (const ksImportNote& note : report.notes()) {
    std::string place(name);
    if (note.line > 0) place += ':' + std::to_string(note.line);
    lines.push_back(place + ": " + std::string(ksImportSentence(note.problem)));
  }
  const std::size_t more = countNotes(report) - lines.size();
  if (more > 0) {
    lines.push_back(std::string(name) + ": " + std::to_string(more) + " more are not shown.");
  }
  return lines;
}

}  // namespace kssub
