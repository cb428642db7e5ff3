#pragma once

#include "present/Report.h"

#include <QString>
#include <QStringList>

namespace nuvo {

/// A finished regression as the report window has it, and what stands beside it on a terminal.
struct ReportText
{
    QString source; ///< the table's name or the first line of the statement
    QString description;
    QString dateTime;
    QString message;
    ReportBlocks blocks;
    WindowTexts window;
    bool matrices = false;
    QStringList terms; ///< of the coefficients but the constant, to stand beside them
    QString leftOut;   ///< lines about the records and columns that count for nothing
};

/// The report window set for a terminal of that many columns (at least 80): each of its captions with its text,
/// blocks whose lines belong together side by side. Long names have lines of their own, nothing is cut. Lines end
/// with LF.
QString terminalReport(const ReportText &report, int columns);

/// Columns that a text takes on a terminal.
int displayWidth(const QString &text);

} // namespace nuvo
