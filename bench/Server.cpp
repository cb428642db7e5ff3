// SPDX-License-Identifier: MIT
// bench_server DATABASE TABLE RESPONSE CONTROL...: the time of adding up every record of a PostgreSQL table by the
// server, of reading every record, and of a forward-only QSqlQuery over the same columns, ROUNDS times in turn.
// With --server-alone only the first; with --parent the table is asked as a query, so that its parts are the
// planner's business.

#include "engine/Recordscan.h"
#include "engine/Serversums.h"
#include "platform/Connection.h"
#include "platform/Errors.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

namespace {

template <class Work>
double secondsOf(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) * 1e-9;
}

void readBare(const QString &database, const QString &table, const QStringList &fields)
{
    nuvo::Connection connection;
    connection.open(database);
    double sum = 0;
    QSqlQuery query = connection.newQuery();
    query.exec(QStringLiteral("SELECT %1 FROM %2").arg(fields.join(QStringLiteral(", ")), table));
    while (query.next()) {
        for (int i = 0; i < fields.size(); ++i)
            sum += query.value(i).toDouble();
    }
    std::printf("(sum %.6g) ", sum);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool parent = arguments.removeAll(QStringLiteral("--parent")) > 0;
    const bool serverAlone = arguments.removeAll(QStringLiteral("--server-alone")) > 0;
    nuvo::RecordRequest request;
    request.source.databaseName = arguments.value(0);
    if (parent)
        request.source.sql = QStringLiteral("SELECT * FROM ") + arguments.value(1);
    else
        request.source.table = arguments.value(1);
    request.response.SetField(arguments.value(2));
    for (const QString &field : arguments.mid(3)) {
        TIndepVar control;
        control.SetTransformation(QStringLiteral("None"));
        control.SetField1(field);
        request.columns.push_back(control);
    }
    try {
        const int rounds = std::max(1, qEnvironmentVariableIntValue("ROUNDS"));
        for (int round = 0; round < rounds; ++round) {
            nuvo::ServerReader server(request);
            std::printf("server %.2f s, rows", secondsOf([&] { static_cast<void>(server.read()); }));
            for (const qint64 rows : server.rowsReceived())
                std::printf(" %lld", static_cast<long long>(rows));
            if (!serverAlone) {
                nuvo::RecordScan all(request);
                std::printf("; all %.2f s", secondsOf([&] { static_cast<void>(all.read()); }));
                std::printf("; select %.2f s", secondsOf([&] {
                                readBare(request.source.databaseName, arguments.value(1), arguments.mid(2));
                            }));
            }
            std::printf("\n");
        }
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
    return 0;
}
