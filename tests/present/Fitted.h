// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "support/Databases.h"

#include <cmath>
#include <functional>

/// A table "Data" of a response y and columns of the names given in a database of its own, and a regression on it.
class Fitted
{
public:
    /// value(i, j): column j of record i, both from 1; the response is column 0. Loads and fits.
    Fitted(int n, const QStringList &controls, const std::function<double(int, int)> &value,
           const QString &response = QStringLiteral("y"))
        : names(controls), database_(TestDatabase::make(TestDatabase::Sqlite))
    {
        const auto quoted = [](QString name) { return u'"' + name.replace(u'"', QLatin1String("\"\"")) + u'"'; };
        QString columns = quoted(response) + QLatin1String(" REAL");
        QString marks = QStringLiteral("?");
        for (const QString &name : names) {
            columns += u',' + quoted(name) + QLatin1String(" REAL");
            marks += QLatin1String(",?");
        }
        database_->exec(QLatin1String("CREATE TABLE Data (id INTEGER PRIMARY KEY,") + columns + u')');
        database_->exec(QStringLiteral("BEGIN"));
        for (int i = 1; i <= n; ++i) {
            QVariantList row;
            for (int j = 0; j <= names.size(); ++j)
                row << value(i, j);
            database_->exec(QLatin1String("INSERT INTO Data VALUES (") + QString::number(i) + u',' + marks + u')',
                            row);
        }
        database_->exec(QStringLiteral("COMMIT"));
        table.SetTableName(QStringLiteral("Data"));
        query.SetSQL(QStringLiteral("SELECT * FROM Data\nORDER BY id"));
        define(table, table, response);
        define(query, query, response);
        run(table, table);
    }

    void define(TDataSet &dataset, TRegression &regression, const QString &response)
    {
        dataset.SetDatabaseName(database_->name());
        regression.ResponseVarY().SetField(response);
        for (int j = 1; j <= names.size(); ++j) {
            regression.ControlVar(j).SetField1(names[j - 1]);
            regression.ControlVar(j).SetTransformation(QStringLiteral("None"));
        }
    }

    static void run(TDataSet &dataset, TRegression &regression)
    {
        dataset.Open();
        if (regression.ReLoad())
            regression.Execute();
    }

    QStringList names;

private:
    std::unique_ptr<TestDatabase> database_;

public:
    TMLRTable table;
    TMLRQuery query; ///< defined, not run
};

/// Names x1, x2, …
inline QStringList controlNames(int m)
{
    QStringList names;
    for (int j = 1; j <= m; ++j)
        names += QStringLiteral("x%1").arg(j);
    return names;
}

/// Figures without a pattern, the same in every run.
inline double scattered(int i, int j)
{
    return j == 0 ? 10 + 3 * scattered(i, 1) + std::sin(i * 1.7) * 5
                  : std::fmod(i * (7.31 + 2.17 * j) + j * j * 0.37, 50 + j) + 2;
}

inline Fitted scatteredFit(int n, int m)
{
    return Fitted(n, controlNames(m), scattered);
}
