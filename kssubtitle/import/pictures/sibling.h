// The file beside another: the stream of an index, or the index of a stream.
#pragma once

#include <string>
#include <string_view>

namespace kssubtitle::importing {

/// The path of the file beside `path` with the same name and the extension `extension` (such as
/// ".sub") in any case. Of several, the one in the case given, else the first in byte order. If
/// there is none, the path that it would have.
std::string siblingOf(const std::string& path, std::string_view extension);

}  // namespace kssubtitle::importing
