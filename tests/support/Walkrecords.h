// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What the program walk_records saw and took.
struct WalkedRecords
{
    qint64 records = -1;
    double sum = 0;
    qint64 peakKilobytes = 0;
};

/// Walks a table, or a statement that begins with SELECT, in a process of its own; mode is "quiet" (controls
/// disabled) or "attached". A failure is a test failure.
WalkedRecords walkRecords(const QString &database, const QString &source, const QString &mode);
