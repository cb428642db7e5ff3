// SPDX-License-Identifier: MIT
// bench_scan DATABASE TABLE COLUMN…: the time of a forward-only QSqlQuery over these columns of an SQLite table, and
// of nuvo::Scan, five times in turn; the sums of all cells, and the peak of the process's memory in kB.

#include "platform/Scan.h"
#include "platform/Errors.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <cmath>
#include <cstdio>

namespace {

double bare(const QString &database, const QString &table, const QStringList &columns)
{
    QSqlDatabase connection = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bare"));
    connection.setDatabaseName(database);
    double sum = 0;
    if (connection.open()) {
        QSqlQuery query(connection);
        query.setForwardOnly(true);
        query.exec(QStringLiteral("SELECT \"%1\" FROM \"%2\"").arg(columns.join(QStringLiteral("\",\"")), table));
        while (query.next()) {
            for (int i = 0; i < columns.size(); ++i)
                sum += query.value(i).toDouble();
        }
    }
    return sum;
}

double scanned(const QString &database, const QString &table, const QStringList &columns)
{
    nuvo::ScanSource source;
    source.databaseName = database;
    source.table = table;
    source.columns = columns;
    nuvo::Scan scan(source);
    scan.open();
    nuvo::ScanBlock block;
    double sum = 0;
    while (scan.next(block)) {
        for (int i = 0; i < columns.size(); ++i) {
            for (int row = 0; row < block.rows(); ++row)
                sum += std::isnan(block.column(i)[row]) ? 0 : block.column(i)[row];
        }
    }
    return sum;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QStringList columns = arguments.mid(3);
    try {
        for (int round = 0; round < 5; ++round) {
            QElapsedTimer timer;
            timer.start();
            const double first = bare(arguments.value(1), arguments.value(2), columns);
            const double bareTime = double(timer.nsecsElapsed()) * 1e-9;
            QSqlDatabase::removeDatabase(QStringLiteral("bare"));
            timer.start();
            const double second = scanned(arguments.value(1), arguments.value(2), columns);
            const double scanTime = double(timer.nsecsElapsed()) * 1e-9;
            std::printf("bare %.3f s, scan %.3f s, ratio %.2f, sums %.17g %.17g\n", bareTime, scanTime,
                        scanTime / bareTime, first, second);
        }
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                std::printf("%s\n", line.constData());
        }
    }
    return 0;
}
