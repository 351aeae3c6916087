// Opens subtitle files through the import library.
#pragma once

#include <string>

#include "kssubtitle/import.h"
#include "tools/kssub/subtitle_file.h"

namespace kssub {

/// Opens a file or standard input in `parser`, ignoring isExact. Returns false if it is refused.
/// Throws std::runtime_error if standard input cannot be read.
bool readSubtitles(ksImportParser& parser, const FileRequest& request);

/// The name of the file, for messages.
std::string nameOf(const FileRequest& request);

/// A parser that has opened the file. Throws std::runtime_error, naming the file, if it is refused
/// or lacks the requested language; PicturesError if it contains pictures.
ksImportParser openedParser(const FileRequest& request);

}  // namespace kssub
