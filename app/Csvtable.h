// SPDX-License-Identifier: MIT
#pragma once

#include "app/Csv.h"
#include "app/Filesyntax.h"
#include "app/Newtable.h"

namespace nuvo {

/// Makes a table with the columns of a file and fills it with its records; what is left is to commit it.
/// \param replace whether a table of that name may be there
/// \throws as NewTable and CsvReader::next(), and EPlatformError for a file that changed since it was surveyed.
void fillTable(NewTable &table, CsvReader &reader, const CsvSurvey &survey, bool replace);

/// What an unexpected cell has made of a column: " (line 3: "1,234.5" has thousands separators)"; empty where there
/// is none.
QString intruderText(const CsvColumn &column);

/// What is understood of a file, in lines: how it is written and why, its columns, and its first records, so many as
/// the options say. \throws EPlatformError as surveyCsv().
QString headOf(const CsvOptions &options);

} // namespace nuvo
