// Reads subtitle files through the import library.
#pragma once

#include <string>

#include "kssubtitle/import.h"
#include "tools/kssub/subtitle_file.h"

namespace kssub {

/// Reads a file into `parser`, or standard input; what isExact says does not matter. False if it is
/// refused. Throws FileError if standard input cannot be read.
bool readSubtitles(ksImportParser& parser, const FileRequest& request);

/// The file's name for messages.
std::string nameOf(const FileRequest& request);

/// A parser that has read the file. Throws std::runtime_error, whose text names the file, if it is
/// refused or lacks the language that is asked for, PicturesError if it holds pictures.
ksImportParser openedParser(const FileRequest& request);

}  // namespace kssub
