// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Figures.h"

#include <QString>
#include <QStringList>

class TRegression;

namespace nuvo {

/// Every generated text ends its lines with line feed, then carriage return: in this order on purpose.
inline constexpr QStringView kLineEnd = u"\n\r";

/// The analysis report as the report window takes it: text blocks, lines ended by "\n\r", and the lines of the two
/// matrices. Figures have 3 or 4 decimals and at most 8 significant digits.
struct ReportBlocks
{
    QString DepVar;
    QString IndepVars;
    QString DataCount;
    QString DOF;
    QString Coeffs;
    QString SSquared;
    QString SSE;
    QString SSR;
    QString Means;
    QString StdDevs;
    QString StdErrs;
    QString TValues;
    QString FStat;
    QStringList CovarianceLines;
    QStringList CorrelationLines;
};

/// `point` is the decimal sign.
NUVO_EXPORT ReportBlocks reportBlocks(const Figures &figures, QChar point = u'.');
/// Those of what a regression holds, a successful fit or not.
inline ReportBlocks reportBlocks(TRegression &regression, QChar point = u'.')
{
    return reportBlocks(figures(regression), point);
}

/// A cell of the matrices, three or four blanks at its end; query and table differ in theirs.
NUVO_EXPORT QString covarianceCell(double value, bool query, QChar point = u'.');
/// A cell of the correlations: the same for table and query.
NUVO_EXPORT QString correlationCell(double value, QChar point = u'.');

/// The two texts that the report window works out itself.
struct WindowTexts
{
    QString SST;
    QString RSquared;
};

/// SST = SSE + SSR and R2 = SSR / SST from the rounded texts of the blocks, not from the exact values: the report's
/// figures agree with each other as printed.
NUVO_EXPORT WindowTexts windowTexts(const ReportBlocks &blocks, QChar point = u'.');

} // namespace nuvo
