// SPDX-License-Identifier: MIT
#include "workbench/Leaveout.h"

#include "platform/Errors.h"
#include "platform/Sqltext.h"
#include "platform/Table.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <vector>

namespace nuvo {

namespace {

struct Leaveout
{
    Q_DECLARE_TR_FUNCTIONS(Leaveout)
};

constexpr qsizetype kLongestText = 100;

Dialect dialectOf(const QString &database)
{
    if (database.startsWith(u"mysql:"))
        return Dialect::Mysql;
    return database.contains(u"://") || database.startsWith(u"odbc:") ? Dialect::Other : Dialect::Sqlite;
}

/// A field of a record, as conditions name them.
struct Value
{
    QString name;
    QString literal; ///< empty for a null
    bool isExact = false;

    QString is() const
    {
        return literal.isEmpty() ? name + QLatin1String(" IS NULL") : name + QLatin1String(" = ") + literal;
    }
};

std::optional<Value> valueOf(const TField &field, Dialect dialect)
{
    Value value{quotedName(field.FieldName(), dialect), {}, true};
    const QVariant stored = field.Value();
    if (!stored.isValid() || stored.isNull())
        return value;
    switch (stored.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        value.literal = stored.toString();
        return value;
    case QMetaType::Double:
        value.literal = QString::number(stored.toDouble(), 'g', QLocale::FloatingPointShortest);
        value.isExact = stored.toDouble() == std::trunc(stored.toDouble());
        return value;
    case QMetaType::QString: {
        QString text = stored.toString();
        // Not every database reads a backslash as it stands.
        if (text.size() > kLongestText || text.contains(u'\\') || text.contains(QChar()))
            return std::nullopt;
        value.literal = u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\'';
        return value;
    }
    default:
        return std::nullopt;
    }
}

QString both(const QString &filter, const QString &condition)
{
    return filter.isEmpty() ? condition : QStringLiteral("(%1) AND %2").arg(filter, condition);
}

class Records
{
public:
    explicit Records(const ModelState &state) : state_(state), dialect_(dialectOf(state.database))
    {
        table_.SetDatabaseName(state.database);
        table_.SetTableName(state.table);
        table_.SetFilter(state.filter);
        table_.SetFiltered(!state.filter.isEmpty());
        table_.Open();
    }

    /// The values of a record; what stands in no condition is left out.
    std::vector<Value> at(qint64 record)
    {
        table_.MoveBy(record - table_.RecNo());
        if (table_.RecNo() != record)
            throw EPlatformError(Leaveout::tr("There is no record %1 any more.").arg(record));
        std::vector<Value> values;
        for (int i = 0; i < table_.FieldCount(); ++i) {
            if (const auto value = valueOf(table_.Fields(i), dialect_))
                values.push_back(*value);
        }
        std::stable_sort(values.begin(), values.end(),
                         [](const Value &a, const Value &b) { return a.isExact && !b.isExact; });
        return values;
    }
    /// How many of them fulfil a condition; -1 where the database does not take it.
    qint64 count(const QString &condition)
    {
        try {
            TTable table;
            table.SetDatabaseName(state_.database);
            table.SetTableName(state_.table);
            table.SetFilter(both(state_.filter, u'(' + condition + u')'));
            table.SetFiltered(true);
            table.Open();
            return table.RecordCount();
        } catch (const EPlatformError &) {
            return -1;
        }
    }

private:
    const ModelState &state_;
    const Dialect dialect_;
    TTable table_;
};

} // namespace

ModelState leavingOut(const ModelState &state, const std::set<qint64> &ordinals)
{
    if (state.isQuery())
        throw EPlatformError(Leaveout::tr("Records of a query are left out in its statement."));
    Records records(state);
    std::map<QString, QStringList> literals; // of fields that tell a record alone
    QStringList others;
    QString last; // what told one record often tells the next one
    for (const qint64 ordinal : ordinals) {
        std::vector<Value> values = records.at(ordinal);
        std::stable_partition(values.begin(), values.end(), [&](const Value &value) { return value.name == last; });
        const auto own = std::find_if(values.begin(), values.end(), [&](const Value &value) {
            return !value.literal.isEmpty() && records.count(value.is()) == 1;
        });
        if (own != values.end()) {
            last = own->name;
            literals[last].append(own->literal);
            continue;
        }
        QStringList all;
        QStringList none;
        for (const Value &value : values) {
            all.append(value.is());
            // A comparison with a null is neither true nor false.
            none.append(value.literal.isEmpty()
                            ? value.name + QLatin1String(" IS NOT NULL")
                            : QStringLiteral("%1 <> %2 OR %1 IS NULL").arg(value.name, value.literal));
        }
        if (values.empty() || records.count(all.join(QLatin1String(" AND "))) != 1)
            throw EPlatformError(
                Leaveout::tr("Record %1 is not the only one with its values: a filter cannot leave it out alone.")
                    .arg(ordinal));
        others.append(u'(' + none.join(QLatin1String(" OR ")) + u')');
    }
    QStringList conditions;
    for (const auto &[name, list] : literals) {
        const QString not_ = list.size() == 1
                                 ? QStringLiteral("%1 <> %2").arg(name, list.first())
                                 : QStringLiteral("%1 NOT IN (%2)").arg(name, list.join(QLatin1String(", ")));
        const QString null = name + QLatin1String(" IS NULL");
        conditions.append(records.count(null) > 0 ? QStringLiteral("(%1 OR %2)").arg(not_, null) : not_);
    }
    ModelState without = state;
    without.filter = both(state.filter, (conditions + others).join(QLatin1String(" AND ")));
    return without;
}

} // namespace nuvo
