// What a report holds.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/ksImportReport.h"
#include "kssubtitle/import/report/notes.h"

namespace kssubtitle::importing {

struct ReportData {
  ksImportRefusal refusal = ksImportRefusal::kNotOpened;  // what stays if memory runs out
  int systemError = 0;
  std::string_view refusalSentence;  // if there is more to say than the reason alone
  std::string_view format;           // a name from the table of formats
  std::string encoding;
  ksImportEncodingSource encodingSource = ksImportEncodingSource::kValidUtf8;
  ksImportLineEnds lineEnds = ksImportLineEnds::kNone;
  std::size_t size = 0;
  std::vector<std::string> languages;
  bool hasLanguage = true;  // the one that was asked for
  Notes notes;

  /// Records why the file is not read. Returns false.
  bool refuse(ksImportRefusal reason, int error = 0, std::string_view sentence = {}) noexcept {
    refusal = reason;
    systemError = error;
    refusalSentence = sentence;
    notes.sortByLine();
    return false;
  }
};

/// Replaces `data` with a new report. The old one is gone even if there is no memory for the new
/// one.
inline ReportData& renewed(std::unique_ptr<ReportData>& data) {
  data.reset();
  data = std::make_unique<ReportData>();
  return *data;
}

}  // namespace kssubtitle::importing
