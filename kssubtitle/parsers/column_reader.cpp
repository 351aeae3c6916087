// Floating-point columns.
#include "kssubtitle/parsers/column_reader.h"

#include <cstdio>
#include <cwchar>

namespace kssubtitle::internal {

double scanFloat(const std::string& token) {
  float value = 0;
  return std::sscanf(token.c_str(), "%f", &value) == 1 ? static_cast<double>(value) : -1.0;
}

double scanFloat(const std::wstring& token) {
  float value = 0;
  return std::swscanf(token.c_str(), L"%f", &value) == 1 ? static_cast<double>(value) : -1.0;
}

}  // namespace kssubtitle::internal
