#pragma once

#include "present/Report.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

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
    QList<int> listed; ///< the columns that the blocks list; those that are "Inactive" are missing
    QString leftOut;   ///< as leftOut() has it; empty where there is no fit of the records
};
/// Numbers with a point, date and time as ISO 8601 has them: for programs as well as people.
NUVO_EXPORT ReportDocument reportDocument(TRegression &regression, const QDateTime &time);

/// What the load left out, in one line, and in further lines the terms that say nothing: columns that are linear
/// combinations of others, terms that are infinite or no number in some record. \pre the dataset is open.
NUVO_EXPORT QString leftOut(TRegression &regression);
/// The terms of TRegression::DependentColumns(); empty without a current fit.
NUVO_EXPORT QStringList dependentTerms(const TRegression &regression);

/// The report as a page of HTML: every caption with its text, columns that belong together side by side, both
/// matrices.
NUVO_EXPORT QString reportHtml(const ReportDocument &report);

/// Whether a report can be written to a file of that name: .pdf, .html, .htm, .txt or .png, upper or lower case.
NUVO_EXPORT bool isReportFile(const QString &file);

/// Writes the report as .pdf (its text can be searched and copied), .html (also .htm) or .txt, by the ending, upper
/// or lower case. \throws EPlatformError for another ending and for a file that cannot be written; no partial file is
/// left.
NUVO_EXPORT void saveReportDocument(const ReportDocument &report, const QString &file);

} // namespace nuvo
