// SPDX-License-Identifier: MIT
#include "app/Newtable.h"

#include "platform/Errors.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSqlError>

#include <utility>

namespace nuvo {
namespace {

/// A value as an element of PostgreSQL's text form of an array.
QString element(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::LongLong:
        return QString::number(value.toLongLong());
    case QMetaType::QString:
        return u'"' + value.toString().replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\"")) +
               u'"';
    default:
        return QStringLiteral("NULL");
    }
}

} // namespace

NewTable::NewTable(QString database, QString table) : database_(std::move(database)), table_(std::move(table)) {}

NewTable::~NewTable()
{
    if (connection_.isOpen())
        undo();
}

void NewTable::create(const std::vector<NewColumn> &columns, const QStringList &key, bool replace)
{
    connection_.open(database_, Connection::Access::Write);
    if (!sqlite() && connection_.dialect() != Dialect::Postgres)
        throw EDatabaseError(QStringLiteral("Cannot make a table in \"%1\": tables are made in SQLite files and "
                                            "PostgreSQL databases.")
                                 .arg(database_));
    // A writer that waits for the end of another one's transaction does so before it has read anything.
    execute(sqlite() ? QStringLiteral("BEGIN IMMEDIATE") : QStringLiteral("BEGIN"));

    const QString kind = findTarget();
    if (!kind.isEmpty() && !replace)
        throw EDatabaseError(QStringLiteral("The %1 \"%2\" is there already in \"%3\"; --replace replaces a table.")
                                 .arg(kind, table_, database_));
    if (!kind.isEmpty() && kind != u"table")
        throw EDatabaseError(
            QStringLiteral("\"%1\" in \"%2\" is a %3, and only tables are replaced.").arg(table_, database_, kind));
    if (!kind.isEmpty())
        execute(QStringLiteral("DROP TABLE ") + target_);

    QStringList definitions;
    for (const NewColumn &column : columns) {
        refuseLongName(column.name);
        definitions.append(quoted(column.name) + u' ' + typeName(column.type));
    }
    if (!key.isEmpty()) {
        QStringList names;
        for (const QString &name : key)
            names.append(quoted(name));
        definitions.append(QStringLiteral("PRIMARY KEY (%1)").arg(names.join(QStringLiteral(", "))));
    }
    execute(QStringLiteral("CREATE TABLE %1 (%2)").arg(target_, definitions.join(QStringLiteral(", "))));
    prepareInsert(columns);
}

void NewTable::prepareInsert(const std::vector<NewColumn> &columns)
{
    QStringList places;
    for (const NewColumn &column : columns)
        places.append(sqlite() ? QStringLiteral("?") : QStringLiteral("?::%1[]").arg(typeName(column.type)));
    insert_.emplace(connection_.newQuery());
    if (!insert_->prepare((sqlite() ? QStringLiteral("INSERT INTO %1 VALUES (%2)")
                                    : QStringLiteral("INSERT INTO %1 SELECT * FROM unnest(%2)"))
                              .arg(target_, places.join(QStringLiteral(", ")))))
        fail(insert_->lastError());
    gathered_.assign(columns.size(), QString());
}

void NewTable::add(const QVariantList &row)
{
    hold_.check();
    if (!sqlite()) {
        gather(row);
        return;
    }
    for (qsizetype i = 0; i < row.size(); ++i)
        insert_->bindValue(int(i), row[i]);
    if (!insert_->exec())
        fail(insert_->lastError());
}

/// A server is asked seldom: each statement brings some thousand rows, every column as one array.
void NewTable::gather(const QVariantList &row)
{
    constexpr qsizetype batch = 1 << 20;
    for (size_t i = 0; i < gathered_.size(); ++i) {
        const qsizetype before = gathered_[i].size();
        if (before > 0)
            gathered_[i] += u',';
        gathered_[i] += element(row[qsizetype(i)]);
        gatheredLength_ += gathered_[i].size() - before;
    }
    if (gatheredLength_ > batch)
        sendGathered();
}

void NewTable::sendGathered()
{
    if (gatheredLength_ == 0)
        return;
    for (size_t i = 0; i < gathered_.size(); ++i) {
        insert_->bindValue(int(i), u'{' + gathered_[i] + u'}');
        gathered_[i].clear();
    }
    gatheredLength_ = 0;
    if (!insert_->exec())
        fail(insert_->lastError());
}

void NewTable::commit()
{
    sendGathered();
    hold_.check();
    execute(QStringLiteral("COMMIT"));
    insert_.reset();
    connection_.close();
}

QString NewTable::typeName(ColumnType type) const
{
    switch (type) {
    case ColumnType::Whole:
        return sqlite() ? QStringLiteral("INTEGER") : QStringLiteral("BIGINT");
    case ColumnType::Floating:
        return sqlite() ? QStringLiteral("REAL") : QStringLiteral("DOUBLE PRECISION");
    case ColumnType::Text:
        break;
    }
    return QStringLiteral("TEXT");
}

void NewTable::fail(const QSqlError &error) const
{
    throw EDatabaseError(
        QStringLiteral("Cannot make table \"%1\" in \"%2\": %3.").arg(table_, database_, connection_.reason(error)));
}

void NewTable::execute(const QString &sql) const
{
    QSqlQuery query = connection_.newQuery();
    if (!query.exec(sql))
        fail(query.lastError());
}

/// The first value that a statement gives; invalid when it gives none.
QVariant NewTable::ask(const QString &sql, const QString &value) const
{
    QSqlQuery query = connection_.query(sql, {value}, connection_.caption());
    return query.next() ? query.value(0) : QVariant();
}

/// What there is of a name: "table", "view" or another word of the database; empty when there is nothing.
QString NewTable::kindOf(const QString &name) const
{
    if (sqlite())
        return ask(QStringLiteral("SELECT type FROM sqlite_master WHERE name = ? COLLATE NOCASE"), name).toString();
    return ask(QStringLiteral("SELECT CASE WHEN relkind IN ('r', 'p') THEN 'table' WHEN relkind IN ('v', 'm') THEN "
                              "'view' ELSE 'name of another kind' END FROM pg_class WHERE oid = to_regclass(?)"),
               name)
        .toString();
}

/// Finds the table: on a server the whole text is its name, or schema and table are parted at one of its points, as a
/// dataset reads it. A new table goes into a schema that is there.
/// \return what kind of thing is there already, as kindOf()
QString NewTable::findTarget()
{
    target_ = quoted(table_);
    if (sqlite())
        return kindOf(table_);
    if (QString kind = kindOf(target_); !kind.isEmpty())
        return kind;
    QString inSchema;
    for (qsizetype point = table_.indexOf(u'.'); point >= 0; point = table_.indexOf(u'.', point + 1)) {
        const QString schema = table_.left(point);
        const QString name = quoted(schema) + u'.' + quoted(table_.mid(point + 1));
        if (QString kind = kindOf(name); !kind.isEmpty()) {
            target_ = name;
            return kind;
        }
        if (inSchema.isEmpty() &&
            ask(QStringLiteral("SELECT nspname FROM pg_namespace WHERE nspname = ?"), schema).isValid())
            inSchema = name;
    }
    if (inSchema.isEmpty())
        refuseLongName(table_);
    else
        target_ = inSchema;
    return {};
}

void NewTable::refuseLongName(const QString &name) const
{
    // PostgreSQL would cut it, with no more than a notice.
    if (!sqlite() && name.toUtf8().size() > 63)
        throw EDatabaseError(
            QStringLiteral("The name \"%1\" has more than the 63 bytes that PostgreSQL takes.").arg(name));
}

void NewTable::undo()
{
    insert_.reset();
    connection_.newQuery().exec(QStringLiteral("ROLLBACK"));
    const QString made = connection_.madeFile();
    const bool file = sqlite();
    connection_.close();
    if (!file)
        return;
    // After a failed write SQLite leaves the rest of the way back to whoever opens the file next.
    try {
        connection_.open(database_, Connection::Access::Write);
    } catch (const EDatabaseError &) {
        return;
    }
    connection_.close();
    // Empty again, unless another program has put something into it meanwhile.
    if (!made.isEmpty() && QFileInfo(made).size() == 0)
        QFile::remove(made);
}

} // namespace nuvo
