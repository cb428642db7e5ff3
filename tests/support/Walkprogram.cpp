// SPDX-License-Identifier: MIT
// walk_records DATABASE TABLE|SELECT… [quiet|attached]: walks a table or a query to the end, with its controls
// disabled as a load does or enabled, and prints the records seen, the sum of the second column, and the peak of the
// process's memory in kB.

#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"

#include <QApplication>
#include <QFile>

#include <cstdio>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    try {
        const QString source = arguments.value(2);
        TTable table;
        TQuery query;
        TDataSet &dataset = source.startsWith(QLatin1String("SELECT ")) ? static_cast<TDataSet &>(query) : table;
        table.SetTableName(source);
        query.SetSQL(source);
        dataset.SetDatabaseName(arguments.value(1));
        dataset.Open();
        const TField &field = dataset.Fields(1);
        if (arguments.value(3) != QLatin1String("attached"))
            dataset.DisableControls();
        double sum = 0;
        qint64 seen = 0;
        for (dataset.First(); !dataset.Eof(); dataset.Next(), ++seen)
            sum += field.AsFloat();
        std::printf("%lld %.17g ", static_cast<long long>(seen), sum);
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            std::printf("%s\n", line.mid(6).trimmed().chopped(3).constData());
    }
    return 0;
}
