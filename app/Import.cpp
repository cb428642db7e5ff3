#include "app/Import.h"

#include "app/Console.h"
#include "app/Csv.h"
#include "platform/Connection.h"
#include "platform/Errors.h"

#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <limits>

namespace nuvo {
namespace {

QString typeName(CsvType type, Dialect dialect)
{
    if (type == CsvType::Text)
        return QStringLiteral("TEXT");
    if (dialect == Dialect::Postgres)
        return type == CsvType::Whole ? QStringLiteral("BIGINT") : QStringLiteral("DOUBLE PRECISION");
    return type == CsvType::Whole ? QStringLiteral("INTEGER") : QStringLiteral("REAL");
}

QVariant cellValue(std::string_view cell, CsvType type, bool utf8)
{
    if (type == CsvType::Text) {
        const auto text = csvText(cell, utf8);
        return text ? QVariant(*text) : QVariant();
    }
    if (type == CsvType::Whole) {
        const auto number = csvWhole(cell);
        return number ? QVariant(*number) : QVariant();
    }
    const auto number = csvFloating(cell);
    return number ? QVariant(*number) : QVariant();
}

class Import
{
public:
    explicit Import(const ImportOptions &options)
        : options_(options), reader_(options.file), survey_(surveyCsv(reader_))
    {
    }

    QString run()
    {
        connection_.open(options_.database, Connection::Access::Write);
        try {
            if (connection_.dialect() != Dialect::Sqlite && connection_.dialect() != Dialect::Postgres)
                throw EDatabaseError(QStringLiteral("Cannot import into \"%1\": tables are made in SQLite files and "
                                                    "PostgreSQL databases.")
                                         .arg(options_.database));
            // A writer that waits for the end of another one's transaction does so before it has read anything.
            execute(sqlite() ? QStringLiteral("BEGIN IMMEDIATE") : QStringLiteral("BEGIN"));
            makeTable();
            if (sqlite())
                insertRows();
            else
                insertBatches();
            hold_.check();
            execute(QStringLiteral("COMMIT"));
        } catch (...) {
            undo();
            throw;
        }
        return summary();
    }

private:
    bool sqlite() const { return connection_.dialect() == Dialect::Sqlite; }

    QString quoted(const QString &name) const { return quotedName(name, connection_.dialect()); }

    [[noreturn]] void fail(const QSqlError &error) const
    {
        throw EDatabaseError(QStringLiteral("Cannot import table \"%1\" into \"%2\": %3.")
                                 .arg(options_.table, options_.database, connection_.reason(error)));
    }

    void execute(const QString &sql) const
    {
        QSqlQuery query = connection_.newQuery();
        if (!query.exec(sql))
            fail(query.lastError());
    }

    /// The first value that a statement gives; invalid when it gives none.
    QVariant ask(const QString &sql, const QString &value) const
    {
        QSqlQuery query = connection_.query(sql, {value}, connection_.caption());
        return query.next() ? query.value(0) : QVariant();
    }

    /// What there is of a name: "table", "view" or another word of the database; empty when there is nothing.
    QString kindOf(const QString &name) const
    {
        if (sqlite())
            return ask(QStringLiteral("SELECT type FROM sqlite_master WHERE name = ? COLLATE NOCASE"), name)
                .toString();
        return ask(QStringLiteral(
                       "SELECT CASE WHEN relkind IN ('r', 'p') THEN 'table' WHEN relkind IN ('v', 'm') THEN "
                       "'view' ELSE 'name of another kind' END FROM pg_class WHERE oid = to_regclass(?)"),
                   name)
            .toString();
    }

    /// Finds the table: on a server the whole text is its name, or schema and table are parted at one of its points,
    /// as a dataset reads it. A new table goes into a schema that is there.
    /// \return what kind of thing is there already, as kindOf()
    QString findTarget()
    {
        target_ = quoted(options_.table);
        if (sqlite())
            return kindOf(options_.table);
        if (QString kind = kindOf(target_); !kind.isEmpty())
            return kind;
        QString inSchema;
        for (qsizetype point = options_.table.indexOf(u'.'); point >= 0;
             point = options_.table.indexOf(u'.', point + 1)) {
            const QString schema = options_.table.left(point);
            const QString name = quoted(schema) + u'.' + quoted(options_.table.mid(point + 1));
            if (QString kind = kindOf(name); !kind.isEmpty()) {
                target_ = name;
                return kind;
            }
            if (inSchema.isEmpty() &&
                ask(QStringLiteral("SELECT nspname FROM pg_namespace WHERE nspname = ?"), schema).isValid())
                inSchema = name;
        }
        if (inSchema.isEmpty())
            refuseLongName(options_.table);
        else
            target_ = inSchema;
        return {};
    }

    void undo()
    {
        connection_.newQuery().exec(QStringLiteral("ROLLBACK"));
        const QString made = connection_.madeFile();
        const bool file = sqlite();
        connection_.close();
        if (!file)
            return;
        // After a failed write SQLite leaves the rest of the way back to whoever opens the file next.
        try {
            connection_.open(options_.database, Connection::Access::Write);
        } catch (const EDatabaseError &) {
            return;
        }
        connection_.close();
        // Empty again, unless another program has put something into it meanwhile.
        if (!made.isEmpty() && QFileInfo(made).size() == 0)
            QFile::remove(made);
    }

    void refuseLongName(const QString &name) const
    {
        // PostgreSQL would cut it, with no more than a notice.
        if (!sqlite() && name.toUtf8().size() > 63)
            throw EDatabaseError(
                QStringLiteral("The name \"%1\" has more than the 63 bytes that PostgreSQL takes.").arg(name));
    }

    void makeTable()
    {
        const QString kind = findTarget();
        if (!kind.isEmpty() && !options_.replace)
            throw EDatabaseError(
                QStringLiteral("The %1 \"%2\" is there already in \"%3\"; --replace replaces a table.")
                    .arg(kind, options_.table, options_.database));
        if (!kind.isEmpty() && kind != u"table")
            throw EDatabaseError(QStringLiteral("\"%1\" in \"%2\" is a %3, and only tables are replaced.")
                                     .arg(options_.table, options_.database, kind));
        if (!kind.isEmpty())
            execute(QStringLiteral("DROP TABLE ") + target_);

        QStringList columns;
        for (const CsvColumn &column : survey_.columns) {
            refuseLongName(column.name);
            columns.append(quoted(column.name) + u' ' + typeName(column.type, connection_.dialect()));
        }
        execute(QStringLiteral("CREATE TABLE %1 (%2)").arg(target_, columns.join(QStringLiteral(", "))));
    }

    QSqlQuery prepared(const QString &sql) const
    {
        QSqlQuery query = connection_.newQuery();
        if (!query.prepare(sql))
            fail(query.lastError());
        return query;
    }

    /// The next row of the file; false at its end.
    bool nextRow()
    {
        hold_.check();
        return reader_.next();
    }

    void insertRows()
    {
        const QStringList places(qsizetype(survey_.columns.size()), QStringLiteral("?"));
        QSqlQuery insert =
            prepared(QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(target_, places.join(QStringLiteral(", "))));
        for (reader_.rewind(), reader_.next(); nextRow();) {
            for (size_t i = 0; i < survey_.columns.size(); ++i)
                insert.bindValue(int(i), cellValue(reader_.cell(i), survey_.columns[i].type, survey_.utf8));
            if (!insert.exec())
                fail(insert.lastError());
        }
    }

    /// A server is asked seldom: each statement brings some thousand rows, every column as one array.
    void insertBatches()
    {
        QStringList places;
        for (const CsvColumn &column : survey_.columns)
            places.append(QStringLiteral("?::%1[]").arg(typeName(column.type, connection_.dialect())));
        QSqlQuery insert = prepared(QStringLiteral("INSERT INTO %1 SELECT * FROM unnest(%2)")
                                        .arg(target_, places.join(QStringLiteral(", "))));
        constexpr qsizetype batch = 1 << 20;
        std::vector<QString> arrays(survey_.columns.size());
        qsizetype gathered = 0;
        const auto send = [&] {
            for (size_t i = 0; i < arrays.size(); ++i) {
                insert.bindValue(int(i), u'{' + arrays[i] + u'}');
                arrays[i].clear();
            }
            gathered = 0;
            if (!insert.exec())
                fail(insert.lastError());
        };
        for (reader_.rewind(), reader_.next(); nextRow();) {
            for (size_t i = 0; i < arrays.size(); ++i) {
                const qsizetype before = arrays[i].size();
                if (before > 0)
                    arrays[i] += u',';
                appendElement(arrays[i], reader_.cell(i), survey_.columns[i].type);
                gathered += arrays[i].size() - before;
            }
            if (gathered > batch)
                send();
        }
        if (gathered > 0)
            send();
    }

    /// Numbers are handed on as they are typed: the server reads them as exactly.
    void appendElement(QString &array, std::string_view cell, CsvType type) const
    {
        const QLatin1StringView typed(cell.data(), qsizetype(cell.size()));
        const QLatin1StringView null("NULL");
        if (type == CsvType::Whole) {
            array += csvWhole(cell) ? typed : null;
        } else if (type == CsvType::Floating) {
            const auto number = csvFloating(cell);
            // The server refuses what is too small for a double.
            array += !number ? null : *number == 0 ? QLatin1StringView("0") : typed;
        } else if (auto text = csvText(cell, survey_.utf8)) {
            text->replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
            array += u'"' + *text + u'"';
        } else {
            array += null;
        }
    }

    QString summary() const
    {
        QStringList columns;
        for (const CsvColumn &column : survey_.columns) {
            QString told = column.name + u' ' + typeName(column.type, connection_.dialect());
            if (column.intruderLine > 0)
                told +=
                    QStringLiteral(" (line %1: \"%2\")").arg(QString::number(column.intruderLine), column.intruder);
            columns.append(told);
        }
        QString line =
            QStringLiteral("Imported %1 into table \"%2\": %3.")
                .arg(survey_.rows == 1 ? QStringLiteral("1 row") : QStringLiteral("%1 rows").arg(survey_.rows),
                     options_.table, columns.join(QStringLiteral(", ")));
        if (reader_.separator() != ',')
            line += reader_.separator() == ';' ? QStringLiteral(" Cells are parted by semicolons.")
                                               : QStringLiteral(" Cells are parted by tabs.");
        if (!survey_.utf8)
            line += QStringLiteral(" The file is no UTF-8 and was read as Windows-1252.");
        return line;
    }

    const ImportOptions &options_;
    CsvReader reader_;
    CsvSurvey survey_;
    InterruptHold hold_; // from here on there is something to undo
    Connection connection_;
    QString target_;
};

} // namespace

QString importCsv(const ImportOptions &options)
{
    return Import(options).run();
}

} // namespace nuvo
