// The library's only way to open a file.
#include "kssubtitle/parsers/sub_fopen.h"

std::FILE* sub_fopen(const char* path, const char* mode) { return std::fopen(path, mode); }
