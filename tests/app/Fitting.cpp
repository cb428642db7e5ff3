// SPDX-License-Identifier: MIT
#include "app/Fitting.h"

#include "support/Text.h"

QStringList fitArguments(const QString &database, const QStringList &more)
{
    return QStringList{u("fit"), u("--database"), database} + more;
}

QStringList longley(const QStringList &more)
{
    QStringList arguments{u("--table"), u("Longley"), u("--response"), u("TOTEMP")};
    for (const char *control : {"GNPDEFL", "GNP", "UNEMP", "ARMED", "POP", "YEAR"})
        arguments += {u("--control"), u(control)};
    return fitArguments(u(SAMPLES_DB), arguments + more);
}

Outcome fitLongley(const QStringList &more)
{
    return runProgram(longley(more));
}

Outcome Fitting::fit(const QStringList &arguments)
{
    return runProgram(fitArguments(database_->name(), arguments));
}

Json Fitting::fitJson(const QStringList &arguments)
{
    return parsed(fit(arguments + QStringList{u("--format=json")}));
}

void Fitting::makeTable(const QStringList &rows)
{
    database_->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, y DOUBLE PRECISION, a DOUBLE PRECISION, b INTEGER, "
                      "name VARCHAR(20))"));
    int id = 0;
    for (const QString &row : rows)
        database_->exec(u("INSERT INTO t VALUES (%1, %2, 'x')").arg(++id).arg(row));
}
