#pragma once

#include "present/Report.h"

#include <QDateTime>
#include <QString>

class TRegression;

namespace nuvo {

/// The texts of the report's labels: captions joined with the blocks, lines ended by "\n\r". The runs of blanks align
/// the colons and belong to the texts.
struct ReportCaptions
{
    QString DepVar, IndepVars, DataCount, DOF, Coeffs, FStat, tValue;
    QString SSR, SSE, SST, RSquared, SSquared;
    QString Mean, StdDev, StdErrCoeff;
};
NUVO_EXPORT ReportCaptions reportCaptions(const ReportBlocks &blocks, const WindowTexts &window);

/// A report to keep, apart from the regression that it tells of.
struct ReportDocument
{
    QString source; ///< the table's name or the first line of the statement
    QString description;
    QString dateTime;
    QString message;
    ReportBlocks blocks;
    WindowTexts window;
};
/// Numbers with a point, date and time as ISO 8601 has them: for programs as well as people.
NUVO_EXPORT ReportDocument reportDocument(TRegression &regression, const QDateTime &time);

/// The report as plain text, lines ended by LF: every caption with its text, columns that belong together side by
/// side, both matrices.
NUVO_EXPORT QString reportPlainText(const ReportDocument &report);
/// The same as a page of HTML.
NUVO_EXPORT QString reportHtml(const ReportDocument &report);

/// Writes the report as .pdf (its text can be searched and copied), .html (also .htm) or .txt, by the ending, upper
/// or lower case. \throws EPlatformError for another ending and for a file that cannot be written; no partial file is
/// left.
NUVO_EXPORT void saveReportDocument(const ReportDocument &report, const QString &file);

} // namespace nuvo
