/// @file
/// Everything that a host needs, in one include.
#pragma once

#include "kssubtitle/manager/ksSubtitleManager.h"
#include "kssubtitle/parsers/IParser.h"
#include "kssubtitle/parsers/ass/ksAssParser.h"
#include "kssubtitle/parsers/ksSessionMap.h"
#include "kssubtitle/parsers/srt/ksSrtParser.h"
#include "kssubtitle/parsers/sub_fopen.h"
#include "kssubtitle/parsers/vobsub/ksIdxParser.h"
#include "kssubtitle/strings/ksString.h"
#include "kssubtitle/strings/ksWString.h"
#include "kssubtitle/version.h"
