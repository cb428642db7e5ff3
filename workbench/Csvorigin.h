// SPDX-License-Identifier: MIT
#pragma once

#include "app/Csvformat.h"

#include <QJsonObject>
#include <QString>

namespace nuvo {

/// Where a table of the sitting came from: a CSV file as it was when it was read, and what was said of it.
struct CsvOrigin
{
    QString table;
    QString file; ///< its absolute path
    CsvCorrections corrections;
    qint64 size = 0;     ///< bytes
    qint64 modified = 0; ///< milliseconds since 1970, UTC

    /// Why the file is no longer what the table was made of, as half a sentence; empty where it is as it was, by its
    /// size and the time of its last change.
    QString whyNot() const;
};

/// \param file an absolute path, as it is now
CsvOrigin originOf(const QString &table, const QString &file, const CsvCorrections &corrections);

/// As it is kept with a sitting. What is missing, or of another kind than expected, is as in a new one.
QJsonObject toJson(const CsvOrigin &origin);
CsvOrigin originFromJson(const QJsonObject &json);

} // namespace nuvo
