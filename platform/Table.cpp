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
#include <limits>
#include <map>

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

/// Whether a driver hands over a column's values without changing them on the way.
bool comesThrough(FieldKind kind, Dialect dialect)
{
    return dialect == Dialect::Sqlite || nuvo::isInteger(kind) || kind == FieldKind::String;
}

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
    std::vector<bool> nullable;
    std::vector<KeyPart> primaryKey;
    QString rowNumber;            // the engine's own row number where there is one, quoted
    bool rowNumberIsScan = false; // whether rows come in its order anyway
    bool keyIsUnique = true;
    std::vector<KeyPart> order;
    size_t indexParts = 0; // how many parts of it IndexFieldNames named
    bool orderIsUnique = false;
    QStringList selected; // expressions, and what is selected beyond them to begin again behind a row
    std::vector<int> keyColumns;

    bool describeSqlite(const Connection &connection);
    bool describePostgres(const Connection &connection);
    bool describeOther(const Connection &connection);
    void makeOrder(const Connection &connection, const QString &caption);
    std::vector<int> indexFields(const QString &caption) const;
    void addColumn(const Column &column, bool canBeNull, Dialect dialect);
    KeyPart keyPart(int field, Dialect dialect) const;
    QString condition(Dialect dialect) const;
    QVariant recordsBefore(const Connection &connection, const std::vector<KeyPart> &key, const QVariantList &values,
                           const QString &caption) const;
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
    CheckChange();
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
    CheckChange();
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
    CheckChange();
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

void TTable::Private::addColumn(const Column &column, bool canBeNull, Dialect dialect)
{
    // Named with its table: SQLite takes a quoted name that is no column of it for a text.
    QString expression = source + u'.' + nuvo::quotedName(column.name, dialect);
    // The server's money is a text in its own language.
    if (dialect == Dialect::Postgres && column.kind == FieldKind::Currency)
        expression += QLatin1String("::numeric");
    columns.push_back(column);
    expressions.append(expression);
    nullable.push_back(canBeNull);
}

KeyPart TTable::Private::keyPart(int field, Dialect dialect) const
{
    return {source + u'.' + nuvo::quotedName(columns[size_t(field)].name, dialect), field, nullable[size_t(field)]};
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
        addColumn(column, info.value(2).toInt() == 0, Dialect::Sqlite);
        if (info.value(3).toInt() > 0)
            key[info.value(3).toInt()] = keyPart(int(columns.size()) - 1, Dialect::Sqlite);
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
    const QString caption = QStringLiteral("table \"%1\"").arg(tableName);
    const auto rows = [&](const QString &sql) { return connection.query(sql, {}, caption); };
    const auto literal = [&](const QString &text) {
        QVariantList none;
        return connection.bound(text, none);
    };
    // The whole text as a name first, then every way to part it into schema and table.
    QString oid;
    QString kind;
    bool hasChildren = false;
    for (qsizetype point = -1; oid.isEmpty();) {
        const QString table = tableName.mid(point + 1);
        const QString schema = tableName.left(std::max<qsizetype>(point, 0));
        QSqlQuery found =
            rows(QStringLiteral("SELECT c.oid, c.relkind, c.relhassubclass, n.nspname FROM pg_class c "
                                "JOIN pg_namespace n ON n.oid = c.relnamespace "
                                "WHERE c.relkind IN ('r', 'v', 'm', 'f', 'p') AND c.relname = %1 AND %2")
                     .arg(literal(table), point < 0 ? QStringLiteral("pg_table_is_visible(c.oid)")
                                                    : QStringLiteral("n.nspname = %1").arg(literal(schema))));
        if (found.next()) {
            oid = found.value(0).toString();
            kind = found.value(1).toString();
            hasChildren = found.value(2).toBool();
            source = nuvo::quotedName(found.value(3).toString(), Dialect::Postgres) + u'.' +
                     nuvo::quotedName(table, Dialect::Postgres);
        }
        point = tableName.indexOf(u'.', point + 1);
        if (point < 0)
            break;
    }
    if (oid.isEmpty())
        return false;

    // A domain is what it is made of.
    QSqlQuery info =
        rows(QStringLiteral("WITH RECURSIVE base(attnum, type) AS (SELECT attnum, atttypid FROM pg_attribute "
                            "WHERE attrelid = %1 AND attnum > 0 AND NOT attisdropped UNION ALL "
                            "SELECT b.attnum, t.typbasetype FROM base b JOIN pg_type t ON t.oid = b.type "
                            "WHERE t.typtype = 'd') "
                            "SELECT a.attname, format_type(a.atttypid, a.atttypmod), format_type(b.type, NULL), "
                            "a.attnotnull, a.attidentity <> '' OR "
                            "COALESCE(pg_get_expr(d.adbin, d.adrelid) LIKE 'nextval(%', false), "
                            "(SELECT array_position(i.indkey::int[], a.attnum::int) FROM pg_index i "
                            "WHERE i.indrelid = a.attrelid AND i.indisprimary) "
                            "FROM pg_attribute a JOIN base b USING (attnum) JOIN pg_type t ON t.oid = b.type "
                            "LEFT JOIN pg_attrdef d ON d.adrelid = a.attrelid AND d.adnum = a.attnum "
                            "WHERE a.attrelid = %1 AND t.typtype <> 'd' ORDER BY a.attnum")
                 .arg(oid));
    std::map<int, KeyPart> key;
    while (info.next()) {
        Column column;
        column.name = info.value(0).toString();
        column.declaredType = info.value(1).toString();
        column.kind = nuvo::kindOfDeclaredType(info.value(2).toString());
        if (info.value(2).toString() == u"bit") // the length is the column's
            column.kind = column.declaredType == u"bit(1)" ? FieldKind::Boolean : FieldKind::Bits;
        if (column.kind == FieldKind::Unknown)
            column.kind = FieldKind::String; // the driver makes texts of the rest
        if (nuvo::isInteger(column.kind) && info.value(4).toBool())
            column.kind = FieldKind::AutoInc;
        addColumn(column, !info.value(3).toBool(), Dialect::Postgres);
        if (!info.value(5).isNull())
            key[info.value(5).toInt()] = keyPart(int(columns.size()) - 1, Dialect::Postgres);
    }
    if (info.lastError().isValid())
        connection.fail(info.lastError(), caption);
    // A SELECT of a table gives the rows of the tables that inherit from it too, and their keys may be the same.
    for (const auto &[place, part] : key)
        primaryKey.push_back(part);
    keyIsUnique = !hasChildren || kind == u"p";
    // A scan gives the rows in the order of their places, and can begin behind a place; sorting by it would take the
    // whole table.
    if ((kind == u"r" && !hasChildren) || kind == u"m") {
        rowNumber = source + QLatin1String(".ctid");
        rowNumberIsScan = true;
    }
    return true;
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
        addColumn(column, true, dialect);
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
    // A name may hold the signs that part names.
    const int whole = find(indexFieldNames);
    if (whole >= 0)
        return {whole};
    if (indexFieldNames.trimmed().isEmpty())
        return found;
    for (const QString &name : indexFieldNames.split(indexFieldNames.contains(u';') ? u';' : u',')) {
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
        order.push_back(part != primaryKey.end() ? *part : keyPart(field, connection.dialect()));
    }
    indexParts = order.size();
    orderIsUnique = !primaryKey.empty() && keyIsUnique;
    for (const KeyPart &part : primaryKey) {
        orderIsUnique = orderIsUnique && !part.nullable;
        if (std::none_of(order.begin(), order.end(), [&](const KeyPart &key) { return key.field == part.field; }))
            order.push_back(part);
    }
    if (!orderIsUnique && !rowNumber.isEmpty()) {
        order.push_back({rowNumber, -1, false});
        orderIsUnique = true;
    }
    // Where nulls come last, a comparison with the key of a row loses them.
    const bool nullsLast = connection.dialect() == Dialect::Postgres;
    if (!orderIsUnique || connection.dialect() == Dialect::Other ||
        (nullsLast && std::any_of(order.begin(), order.end(), [](const KeyPart &part) { return part.nullable; })))
        return;
    for (const KeyPart &part : order) {
        // What comes through the driver as it is stored can be handed back; the rest is selected as text beside it.
        if (part.field >= 0 && comesThrough(columns[size_t(part.field)].kind, connection.dialect())) {
            keyColumns.push_back(part.field);
            continue;
        }
        keyColumns.push_back(int(selected.size()));
        selected.append(connection.dialect() == Dialect::Postgres ? part.expression + QLatin1String("::text")
                                                                  : part.expression);
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
    d_->rowNumberIsScan = false;
    d_->nullable.clear();
    d_->keyIsUnique = true;
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

/// How many records come before the first one with these key values; null when there is none with them.
QVariant TTable::Private::recordsBefore(const Connection &connection, const std::vector<KeyPart> &key,
                                        const QVariantList &values, const QString &caption) const
{
    const QString filterHere = condition(connection.dialect());
    QVariantList bound;
    const auto from = [&](const QString &where) {
        return QStringLiteral("FROM %1 WHERE %2")
            .arg(source, filterHere.isEmpty() ? where : filterHere + QLatin1String(" AND ") + where);
    };
    const auto equalUpTo = [&](qsizetype parts) {
        QString where;
        for (qsizetype i = 0; i < parts; ++i)
            where +=
                QStringLiteral("%1 = %2 AND ").arg(key[size_t(i)].expression, connection.bound(values[i], bound));
        return where;
    };
    QString sql =
        QStringLiteral("SELECT CASE WHEN EXISTS (SELECT 1 %1) THEN 0").arg(from(equalUpTo(values.size()).chopped(5)));
    // Each of these counts a range of the index.
    for (qsizetype i = 0; i < values.size(); ++i) {
        const KeyPart &part = key[size_t(i)];
        const QString equal = equalUpTo(i);
        sql += QStringLiteral(" + (SELECT COUNT(*) %1)")
                   .arg(from(equal +
                             QStringLiteral("%1 < %2").arg(part.expression, connection.bound(values[i], bound))));
        if (part.nullable && connection.dialect() != Dialect::Postgres)
            sql += QStringLiteral(" + (SELECT COUNT(*) %1)")
                       .arg(from(equalUpTo(i) + QStringLiteral("%1 IS NULL").arg(part.expression)));
    }
    sql += QLatin1String(" END");
    nuvo::Select select;
    select.sql = sql;
    select.values = bound;
    // A cursor keeps the program's transaction on a registered connection from harm, and takes back what a function
    // in the filter writes.
    select.cursor = !connection.isOwn() || !filterHere.isEmpty();
    const std::unique_ptr<nuvo::RowSource> result = nuvo::RowSource::open(connection, select, caption);
    return result->next() ? result->value(0) : QVariant();
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
    const bool scanOrder = d_->rowNumberIsScan && keys.size() == 1 && d_->order[0].field < 0;
    if (!keys.isEmpty() && !scanOrder)
        select.sql += QLatin1String(" ORDER BY ") + keys.join(u',');
    select.keyColumns = d_->keyColumns;
    const qint64 skip = position.row - position.afterRow;
    // Rows that the order does not tell apart can change places from one LIMIT to another.
    if (connection.dialect() == Dialect::Other || !d_->orderIsUnique) {
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

bool TTable::FindKey(const QVariantList &values)
{
    NeedRecords();
    const std::vector<KeyPart> key =
        d_->indexParts > 0 ? std::vector<KeyPart>(d_->order.begin(), d_->order.begin() + qint64(d_->indexParts))
                           : d_->primaryKey;
    if (key.empty())
        throw EDatabaseError(
            QStringLiteral("%1 has no primary key, and no IndexFieldNames are set, to find a record by.")
                .arg(nuvo::sentenceStart(Caption())));
    if (values.isEmpty() || size_t(values.size()) > key.size())
        throw EDatabaseError(QStringLiteral("The key of %1 has %2 fields; %3 values were given.")
                                 .arg(Caption())
                                 .arg(key.size())
                                 .arg(values.size()));
    std::vector<int> fields;
    std::vector<double> numbers;
    QStringList names;
    for (const QVariant &value : values) {
        if (value.isNull())
            return false;
        const int field = key[fields.size()].field;
        fields.push_back(field);
        names.append(Fields(field).FieldName());
        // Whether two numbers are equal is the same everywhere; for texts the engine has rules of its own.
        if (Fields(field).IsNumeric() && nuvo::isExactNumber(value))
            numbers.push_back(value.toDouble());
    }
    const bool numeric = numbers.size() == fields.size();
    if (numeric) {
        bool complete = false;
        const qint64 kept = FindKeptNumbers(fields, numbers, complete);
        if (kept >= 0)
            return MoveToRow(kept);
        if (complete)
            return false;
    }
    QVariant before;
    WithConnection(
        [&](const Connection &connection) { before = d_->recordsBefore(connection, key, values, Caption()); });
    if (before.isNull())
        return false;
    const qint64 row = before.toLongLong();
    // The engine speaks of the table as it is now, the rows kept are from the time they were read.
    if (!MoveToRow(row))
        return Locate(names, values);
    if (numeric && !std::equal(fields.begin(), fields.end(), numbers.begin(),
                               [&](int field, double number) { return Fields(field).AsFloat() == number; }))
        return Locate(names, values);
    return true;
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
