// SPDX-License-Identifier: MIT
#include "support/Walkrecords.h"

#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

WalkedRecords walkRecords(const QString &database, const QString &source, const QString &mode)
{
    QProcess process;
    process.start(QStringLiteral(NUVO_WALK_RECORDS), {database, source, mode});
    const bool done = process.waitForFinished(600000) && process.exitCode() == 0;
    EXPECT_TRUE(done) << process.readAllStandardError().toStdString();
    const QStringList words = QString::fromUtf8(process.readAllStandardOutput()).split(u' ', Qt::SkipEmptyParts);
    return {words.value(0).toLongLong(), words.value(1).toDouble(), words.value(2).trimmed().toLongLong()};
}
