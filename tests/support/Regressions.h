// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "support/Databases.h"
#include "support/Print.h"

#include <QSqlError>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <vector>

/// A message box as it was asked for.
struct Message
{
    QString text;
    TMsgDlgType type = TMsgDlgType::mtInformation;
    unsigned buttons = mbOK;
    int helpContext = 0;

    bool operator==(const Message &) const = default;
};

inline void PrintTo(const Message &message, std::ostream *out)
{
    *out << nuvo::messageLine(message.text, message.type).toStdString() << " (buttons " << message.buttons
         << ", help " << message.helpContext << ')';
}

/// Records the message boxes while it lives; each is answered with OK.
class Messages
{
public:
    Messages()
        : before_(SetMessageHandler([this](const QString &text, TMsgDlgType type, unsigned buttons, int helpContext) {
              shown.push_back({text, type, buttons, helpContext});
              if (meanwhile)
                  meanwhile();
              return int(mrOk);
          }))
    {
    }
    Messages(const Messages &) = delete;
    Messages &operator=(const Messages &) = delete;
    ~Messages() { SetMessageHandler(before_); }

    std::vector<Message> shown;
    /// What happens while a box is open.
    std::function<void()> meanwhile;

private:
    TMessageHandler before_;
};

inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

inline Message dofMessage()
{
    return {text("There are 0 degrees of freedom."), TMsgDlgType::mtError, mbOK, 0};
}

inline Message invariantMessage()
{
    return {text("The dataset has an invariant\n\rcolumn. Matrix is singular!"), TMsgDlgType::mtError, mbOK, 0};
}

/// The cells of a record; an empty one is a null.
using Row = std::vector<std::optional<double>>;
inline constexpr std::nullopt_t null = std::nullopt;

/// A table of doubles: id from 1 (primary key) and columns named in a text, "y a b".
inline void makeTable(TestDatabase &db, const char *table, const char *columns, const std::vector<Row> &rows)
{
    const QStringList names = text(columns).split(u' ');
    db.exec(QStringLiteral("PRAGMA synchronous = OFF"));
    db.exec(QStringLiteral("CREATE TABLE %1 (id INTEGER PRIMARY KEY, %2 DOUBLE PRECISION)")
                .arg(text(table), names.join(QStringLiteral(" DOUBLE PRECISION, "))));
    QSqlDatabase writer = db.writer();
    writer.transaction();
    QSqlQuery insert(writer);
    ASSERT_TRUE(insert.prepare(
        QStringLiteral("INSERT INTO %1 (%2) VALUES (?%3)")
            .arg(text(table), names.join(QStringLiteral(", ")), QStringLiteral(", ?").repeated(names.size() - 1))));
    for (const Row &row : rows) {
        ASSERT_EQ(row.size(), names.size());
        for (std::size_t i = 0; i < row.size(); ++i)
            insert.bindValue(int(i), row[i] ? QVariant(*row[i]) : QVariant());
        ASSERT_TRUE(insert.exec()) << insert.lastError().text().toStdString();
    }
    ASSERT_TRUE(writer.commit());
}

/// Makes a dataset stand for a table made above.
inline void bind(TTable &dataset, const TestDatabase &db, const char *table)
{
    dataset.SetDatabaseName(db.name());
    dataset.SetTableName(text(table));
    dataset.Open();
}

inline void bind(TQuery &dataset, const TestDatabase &db, const char *table)
{
    dataset.SetDatabaseName(db.name());
    dataset.SetSQL(QStringLiteral("SELECT * FROM %1 ORDER BY id").arg(text(table)));
    dataset.Open();
}

/// A control variable: its transformation, its fields, its parameters.
inline TIndepVar control(const char *transformation, const char *field1, const char *field2 = "")
{
    TIndepVar definition;
    definition.SetTransformation(text(transformation));
    definition.SetField1(text(field1));
    definition.SetField2(text(field2));
    return definition;
}

inline TIndepVar power(const char *field, const char *exponent)
{
    TIndepVar definition = control("Power", field);
    definition.SetExponent(text(exponent));
    return definition;
}

inline TIndepVar scaled(const char *transformation, const char *field, const char *factor)
{
    TIndepVar definition = control(transformation, field);
    definition.SetScaleFactor(text(factor));
    return definition;
}

inline TDependentVar response(const char *transformation, const char *field, const char *factor = "1")
{
    TDependentVar definition;
    definition.SetTransformation(text(transformation));
    definition.SetField(text(field));
    definition.SetScaleFactor(text(factor));
    return definition;
}

/// Response y on control variables as they stand, ControlVar01 first: "a b".
inline void define(TRegression &regression, const char *controls, const char *y = "y")
{
    regression.SetResponse(response("None", y));
    int k = 0;
    for (const QString &field : text(controls).split(u' ', Qt::SkipEmptyParts))
        regression.SetControl(++k, control("None", field.toUtf8().constData()));
}

/// A regression component over a table of its own in a database of its own.
template <class Component>
class RegressionOver : public testing::Test
{
protected:
    void fill(const char *columns, const std::vector<Row> &rows)
    {
        makeTable(*db, "data", columns, rows);
        bind(regression, *db, "data");
    }
    /// The same from rows 1 to count, with the cells that a function gives.
    void fill(const char *columns, int count, const std::function<Row(int)> &row)
    {
        std::vector<Row> rows;
        for (int i = 1; i <= count; ++i)
            rows.push_back(row(i));
        fill(columns, rows);
    }
    std::vector<double> column(int j) const
    {
        std::vector<double> values;
        for (int i = 1; i <= regression.GetNumObs(); ++i)
            values.push_back(regression.Getx(i, j));
        return values;
    }
    std::vector<double> y() const
    {
        std::vector<double> values;
        for (int i = 1; i <= regression.GetNumObs(); ++i)
            values.push_back(regression.Gety(i));
        return values;
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    Component regression;
};
