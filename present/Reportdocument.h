// SPDX-License-Identifier: MIT
#pragma once

#include "present/Report.h"

#include <QString>

namespace nuvo {

/// The texts of the report's labels: captions joined with the blocks, lines ended by "\n\r". The runs of blanks align
/// the colons and belong to the texts.
struct ReportCaptions
{
    QString DepVar, IndepVars, DataCount, DOF, Coeffs, FStat, tValue;
    QString SSR, SSE, SST, RSquared, SSquared;
    QString Mean, StdDev, StdErrCoeff;
};
/// The captions with these blocks behind them.
NUVO_EXPORT ReportCaptions reportCaptions(const ReportBlocks &blocks, const WindowTexts &window);

/// The texts of a report: what stands above the blocks, the blocks, and what stands below them.
struct ReportTexts
{
    QString source; ///< the table's name or the first line of the statement
    QString description;
    QString dateTime;
    QString message;
    ReportBlocks blocks;
    WindowTexts window;
    QString leftOut; ///< as leftOut() has it; empty where there is no fit of the records
};
/// Numbers with a point, date and time as ISO 8601 has them: for programs as well as people.
NUVO_EXPORT ReportTexts reportTexts(const Figures &figures);

/// The report as a page of HTML: every caption with its text, columns that belong together side by side, both
/// matrices.
NUVO_EXPORT QString reportHtml(const ReportTexts &report);

/// Whether a report can be written to a file of that name: .pdf, .html, .htm, .txt or .png, upper or lower case.
NUVO_EXPORT bool isReportFile(const QString &file);

/// Writes the report as .pdf (its text can be searched and copied), .html (also .htm) or .txt, by the ending, upper
/// or lower case. \throws EPlatformError for another ending and for a file that cannot be written; no partial file is
/// left.
NUVO_EXPORT void saveReportDocument(const Figures &figures, const QString &file);
/// The same of texts that no regression stands behind: the .txt has the captions and blocks one below the other.
NUVO_EXPORT void saveReportDocument(const ReportTexts &report, const QString &file);
/// The captions with their blocks one below the other, then the matrices, lines ended by LF.
NUVO_EXPORT QString reportBlockText(const ReportTexts &report);

} // namespace nuvo
