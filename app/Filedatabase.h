// SPDX-License-Identifier: MIT
#pragma once

#include "app/Filesyntax.h"
#include "app/Runfolder.h"

#include <QString>
#include <QStringList>

namespace nuvo {

/// A CSV file as the one table of a database of the run's own, which goes with it.
class FileDatabase
{
public:
    /// Reads the file. \throws EPlatformError, Interrupted.
    explicit FileDatabase(const CsvOptions &options);

    QString database() const { return folder_.database(); }
    /// The table is called as the file is, without its folders.
    const QString &table() const { return table_; }

    /// Where the first cell of these fields is that is no number, and what can be done about it;
    /// empty where all of them are.
    QString firstWithoutNumber(const QStringList &fields) const;

private:
    const CsvOptions options_;
    RunFolder folder_;
    QString table_;
};

} // namespace nuvo
