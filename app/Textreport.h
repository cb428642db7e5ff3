#pragma once

#include <QString>
#include <QStringList>

namespace nuvo {

/// The texts of a finished regression, as the report window has them; blocks keep their "\n\r".
struct ReportText
{
    QString source;      ///< the table's name or the first line of the statement
    QString description; ///< left out when empty
    QString dateTime;
    QString message; ///< left out when empty
    QString depVar;
    QString indepVars;
    QString dataCount;
    QString dof;
    QString coeffs;
    QString sSquared;
    QString sse;
    QString ssr;
    QString sst;
    QString rSquared;
    QString means;
    QString stdDevs;
    QString stdErrs;
    QString tValues;
    QString fStat;
    QStringList matrices; ///< the covariance lines, then the correlation lines, or nothing
    QStringList terms;    ///< of the coefficients but the constant, to stand beside them
    QString records;      ///< the line that says what was left out
};

/// The report window set for a terminal of that many columns (at least 80): each of its captions with its text,
/// blocks whose lines belong together side by side. Long names have lines of their own, nothing is cut. Lines end
/// with LF.
QString terminalReport(const ReportText &report, int columns);

/// Columns that a text takes on a terminal.
int displayWidth(const QString &text);

} // namespace nuvo
