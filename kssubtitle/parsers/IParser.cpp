// The one place where the parser interface's virtual table is emitted.
#include "kssubtitle/parsers/IParser.h"

IParser::~IParser() = default;
