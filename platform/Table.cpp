#include "platform/Table.h"

#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Fieldtypes.h"
#include "platform/Rowsource.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlRecord>

#include <algorithm>

using nuvo::Column;
using nuvo::Connection;
using nuvo::Dialect;
using nuvo::FieldKind;

namespace {

/// A column by which records are ordered.
struct KeyPart
{
    QString expression; // as it stands in a statement
    int field = -1;     // position among the fields; -1 for the engine's own row number
    bool nullable = false;
};

} // namespace

class TTable::Private
{
public:
    QString tableName;
    QString filter;
    bool filtered = false;
    QString indexFieldNames;

    // What Describe() found.
    QString source; // the table, quoted
    std::vector<Column> columns;
    QStringList expressions; // of the columns, as selected
    std::vector<KeyPart> primaryKey;
    QString rowNumber;            // the engine's own row number where there is one, quoted
    bool rowNumberIsOrder = true; // whether ORDER BY may name it
    std::vector<KeyPart> order;
    QStringList selected; // expressions, and what is selected beyond them to begin again behind a row
    std::vector<int> keyColumns;

    bool describeSqlite(const Connection &connection);
    bool describePostgres(const Connection &connection);
    bool describeOther(const Connection &connection);
    void makeOrder(const Connection &connection, const QString &caption);
    std::vector<int> indexFields(const QString &caption) const;
    void addColumn(const Column &column, Dialect dialect);
    QString condition(Dialect dialect) const;
};

TTable::TTable(QWidget *owner) : TDataSet(owner), d_(std::make_unique<Private>()) {}

TTable::~TTable() = default;

QString TTable::TableName() const
{
    return d_->tableName;
}

void TTable::SetTableName(const QString &name)
{
    if (name == d_->tableName)
        return;
    Forget();
    d_->tableName = name;
}

QString TTable::Filter() const
{
    return d_->filter;
}

void TTable::SetFilter(const QString &condition)
{
    if (condition == d_->filter)
        return;
    d_->filter = condition;
    if (d_->filtered && Active())
        Refresh();
}

bool TTable::Filtered() const
{
    return d_->filtered;
}

void TTable::SetFiltered(bool filtered)
{
    if (filtered == d_->filtered)
        return;
    d_->filtered = filtered;
    if (Active())
        Refresh();
}

QString TTable::IndexFieldNames() const
{
    return d_->indexFieldNames;
}

void TTable::SetIndexFieldNames(const QString &names)
{
    if (names == d_->indexFieldNames)
        return;
    d_->indexFieldNames = names;
    if (Active())
        Refresh();
}

QString TTable::Caption() const
{
    return QStringLiteral("table \"%1\"").arg(d_->tableName);
}

QStringList TTable::TableNames()
{
    QStringList names;
    WithConnection([&](const Connection &connection) { names = nuvo::tableNames(connection); });
    return names;
}

void TTable::Private::addColumn(const Column &column, Dialect dialect)
{
    // Named with its table: SQLite takes a quoted name that is no column of it for a text.
    QString expression = source + u'.' + nuvo::quotedName(column.name, dialect);
    // The server's money is a text in its own language.
    if (dialect == Dialect::Postgres && column.kind == FieldKind::Currency)
        expression += QLatin1String("::numeric");
    columns.push_back(column);
    expressions.append(expression);
}

bool TTable::Private::describeSqlite(const Connection &connection)
{
    const QString caption = QStringLiteral("table \"%1\"").arg(tableName);
    source = nuvo::quotedName(tableName, Dialect::Sqlite);
    QSqlQuery info =
        connection.query(QStringLiteral("SELECT name, type, \"notnull\", pk, hidden FROM pragma_table_xinfo(?)"),
                         {tableName}, caption);
    std::map<int, KeyPart> key;
    while (info.next()) {
        constexpr int kHiddenInVirtualTable = 1;
        if (info.value(4).toInt() == kHiddenInVirtualTable)
            continue;
        Column column;
        column.name = info.value(0).toString();
        column.declaredType = info.value(1).toString();
        column.kind = nuvo::kindOfDeclaredType(column.declaredType);
        addColumn(column, Dialect::Sqlite);
        if (info.value(3).toInt() > 0)
            key[info.value(3).toInt()] = {expressions.last(), int(columns.size()) - 1, info.value(2).toInt() == 0};
    }
    if (info.lastError().isValid())
        connection.fail(info.lastError(), caption);
    if (columns.empty())
        return false;
    for (const auto &[place, part] : key)
        primaryKey.push_back(part);

    QSqlQuery master = connection.query(
        QStringLiteral("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE"), {tableName},
        caption);
    if (!master.next())
        return true;
    const QString sql = master.value(0).toString();
    master.finish();
    // A column of that name hides the row number; a table without row numbers refuses the statement.
    for (const QLatin1String name : {QLatin1String("rowid"), QLatin1String("_rowid_"), QLatin1String("oid")}) {
        if (std::any_of(columns.begin(), columns.end(),
                        [&](const Column &column) { return column.name.compare(name, Qt::CaseInsensitive) == 0; }))
            continue;
        QSqlQuery probe = connection.newQuery();
        if (probe.exec(QStringLiteral("SELECT %1.%2 FROM %1 LIMIT 0").arg(source, name)))
            rowNumber = source + u'.' + name;
        break;
    }
    if (rowNumber.isEmpty()) {
        for (KeyPart &part : primaryKey)
            part.nullable = false; // such a table has no nulls in its key
    } else if (primaryKey.size() == 1) {
        Column &column = columns[size_t(primaryKey[0].field)];
        if (column.declaredType.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0) {
            primaryKey[0].nullable = false; // it is the row number
            const std::vector<nuvo::SqlPiece> pieces = nuvo::sqlPieces(sql, Dialect::Sqlite);
            if (std::any_of(pieces.begin(), pieces.end(), [&](const nuvo::SqlPiece &piece) {
                    return piece.kind == nuvo::SqlPiece::Word &&
                           QStringView(sql)
                                   .mid(piece.begin, piece.end - piece.begin)
                                   .compare(u"AUTOINCREMENT", Qt::CaseInsensitive) == 0;
                }))
                column.kind = FieldKind::AutoInc;
        }
    }
    return true;
}

bool TTable::Private::describePostgres(const Connection &connection)
{
    return describeOther(connection);
}

bool TTable::Private::describeOther(const Connection &connection)
{
    const Dialect dialect = connection.dialect();
    source = nuvo::quotedName(tableName, dialect);
    const QSqlRecord record = connection.database().record(tableName);
    for (int i = 0; i < record.count(); ++i) {
        Column column;
        column.name = record.fieldName(i);
        column.kind = nuvo::kindOfMetaType(record.field(i).metaType());
        addColumn(column, dialect);
    }
    const QSqlIndex key = connection.database().primaryIndex(tableName);
    for (int i = 0; i < key.count(); ++i) {
        const int field = record.indexOf(key.fieldName(i));
        if (field >= 0)
            primaryKey.push_back({expressions[field], field, false});
    }
    return !columns.empty();
}

std::vector<int> TTable::Private::indexFields(const QString &caption) const
{
    std::vector<int> found;
    const auto find = [&](const QString &name) {
        for (size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].name.compare(name, Qt::CaseInsensitive) == 0)
                return int(i);
        }
        return -1;
    };
    const QString whole = indexFieldNames.trimmed();
    if (whole.isEmpty())
        return found;
    // A name may hold the signs that part names.
    QStringList names = find(whole) >= 0 ? QStringList{whole} : whole.split(whole.contains(u';') ? u';' : u',');
    for (const QString &name : names) {
        const int field = find(name.trimmed());
        if (field < 0) {
            QStringList there;
            for (const Column &column : columns)
                there.append(column.name);
            throw EDatabaseError(QStringLiteral("No field \"%1\" to order %2 by; its fields: %3.")
                                     .arg(name.trimmed(), caption, nuvo::listed(there)));
        }
        found.push_back(field);
    }
    return found;
}

/// The order of the records, made unique where the table allows, and what a row's key is read from.
void TTable::Private::makeOrder(const Connection &connection, const QString &caption)
{
    order.clear();
    keyColumns.clear();
    selected = expressions;
    for (const int field : indexFields(caption)) {
        const auto part = std::find_if(primaryKey.begin(), primaryKey.end(),
                                       [&](const KeyPart &key) { return key.field == field; });
        order.push_back(part != primaryKey.end() ? *part : KeyPart{expressions[field], field, true});
    }
    bool unique = !primaryKey.empty();
    for (const KeyPart &part : primaryKey) {
        unique = unique && !part.nullable;
        if (std::none_of(order.begin(), order.end(), [&](const KeyPart &key) { return key.field == part.field; }))
            order.push_back(part);
    }
    if (!unique && !rowNumber.isEmpty()) {
        order.push_back({rowNumber, -1, false});
        unique = true;
    }
    if (!unique || connection.dialect() == Dialect::Other)
        return;
    for (const KeyPart &part : order) {
        if (part.field >= 0) {
            keyColumns.push_back(part.field);
        } else {
            keyColumns.push_back(int(selected.size()));
            selected.append(part.expression);
        }
    }
}

QString TTable::Private::condition(Dialect dialect) const
{
    if (!filtered || filter.trimmed().isEmpty())
        return {};
    nuvo::checkCondition(filter, dialect);
    // A comment at the end of the condition ends with its line.
    return QStringLiteral("(%1\n)").arg(filter);
}

std::vector<Column> TTable::Describe(const Connection &connection)
{
    if (d_->tableName.isEmpty())
        throw EDatabaseError(QStringLiteral("No table is named (TableName is empty)."));
    d_->columns.clear();
    d_->expressions.clear();
    d_->primaryKey.clear();
    d_->rowNumber.clear();
    const bool found = connection.dialect() == Dialect::Sqlite     ? d_->describeSqlite(connection)
                       : connection.dialect() == Dialect::Postgres ? d_->describePostgres(connection)
                                                                   : d_->describeOther(connection);
    if (!found)
        throw EDatabaseError(
            QStringLiteral("No table \"%1\" in %2; its tables: %3.")
                .arg(d_->tableName, connection.caption(), nuvo::listed(nuvo::tableNames(connection))));
    d_->makeOrder(connection, Caption());
    return d_->columns;
}

nuvo::Select TTable::SelectFrom(const Connection &connection, const nuvo::ReadPosition &position)
{
    nuvo::Select select;
    QStringList conditions;
    const QString filter = d_->condition(connection.dialect());
    if (!filter.isEmpty())
        conditions.append(filter);
    QStringList keys;
    for (const KeyPart &part : d_->order)
        keys.append(part.expression);
    if (!position.after.isEmpty()) {
        QStringList values;
        for (const QVariant &value : position.after)
            values.append(connection.bound(value, select.values));
        conditions.append(keys.size() == 1 ? QStringLiteral("%1 > %2").arg(keys[0], values[0])
                                           : QStringLiteral("(%1) > (%2)").arg(keys.join(u','), values.join(u',')));
    }
    select.sql = QStringLiteral("SELECT %1 FROM %2").arg(d_->selected.join(u','), d_->source);
    if (!conditions.isEmpty())
        select.sql += QLatin1String(" WHERE ") + conditions.join(QLatin1String(" AND "));
    if (!keys.isEmpty())
        select.sql += QLatin1String(" ORDER BY ") + keys.join(u',');
    select.keyColumns = d_->keyColumns;
    const qint64 skip = position.row - position.afterRow;
    if (connection.dialect() == Dialect::Other) {
        select.skip = skip;
        return select;
    }
    if (position.limit >= 0 || skip > 0) {
        const qint64 all = std::numeric_limits<qint64>::max();
        select.sql += QStringLiteral(" LIMIT %1 OFFSET %2").arg(position.limit >= 0 ? position.limit : all).arg(skip);
        select.limited = position.limit >= 0;
    }
    return select;
}

nuvo::Select TTable::CountStatement(const Connection &connection)
{
    nuvo::Select select;
    select.sql = QStringLiteral("SELECT COUNT(*) FROM %1").arg(d_->source);
    const QString filter = d_->condition(connection.dialect());
    if (!filter.isEmpty())
        select.sql += QLatin1String(" WHERE ") + filter;
    return select;
}
