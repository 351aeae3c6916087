/// @file
/// Everything that a host of the import library needs, in one include.
#pragma once

#include "kssubtitle/import/ksFixedReaders.h"
#include "kssubtitle/import/ksImportCue.h"
#include "kssubtitle/import/ksImportFormats.h"
#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/ksImportParser.h"
#include "kssubtitle/import/ksImportPictures.h"
#include "kssubtitle/import/ksImportReport.h"
#include "kssubtitle/import/ksImportWriter.h"
#include "kssubtitle/version.h"
