// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QWidget;

namespace nuvo {

class LiveFit;

// Predictions for all records of a table, written into a CSV file; the person is asked for both. \pre fit.HasFit()
// \return what became of it, in a sentence; empty where the person gave up before anything was done. \throws
// EPlatformError when the fields of the model are not there, and where something cannot be read or written. Records
// are read in a thread; meanwhile the window lives, and Escape leaves no file.

/// Of one of the tables of the database that the fit is of.
QString predictATable(QWidget &window, const LiveFit &fit, const QStringList &tables, double level);
/// Of another CSV file, which is shown before it is read as one that is opened.
QString predictAFile(QWidget &window, const LiveFit &fit, double level);

} // namespace nuvo
