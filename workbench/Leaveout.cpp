// SPDX-License-Identifier: MIT
#include "workbench/Leaveout.h"

#include "platform/Errors.h"
#include "platform/Recordpages.h"
#include "platform/Sqltext.h"
#include "workbench/Waiting.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace nuvo {

namespace {

struct Leaveout
{
    Q_DECLARE_TR_FUNCTIONS(Leaveout)
};

constexpr qsizetype kLongestText = 100;
constexpr qint64 kRowsAtOnce = 64;
constexpr qsizetype kTogether = 512; // records that are asked for in one statement

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

/// Nothing for what stands in no condition.
std::optional<Value> valueOf(const QString &field, const QVariant &stored, Dialect dialect)
{
    Value value{quotedName(field, dialect), {}, true};
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

/// A record by its values, whole numbers and texts before other numbers.
struct Record
{
    qint64 ordinal;
    std::vector<Value> values;

    const Value *find(const QString &name) const
    {
        const auto found =
            std::find_if(values.begin(), values.end(), [&](const Value &value) { return value.name == name; });
        return found == values.end() || found->literal.isEmpty() ? nullptr : &*found;
    }
};

QString isOneOf(const QString &name, const QStringList &literals, bool isNot)
{
    if (literals.size() == 1)
        return name + (isNot ? QLatin1String(" <> ") : QLatin1String(" = ")) + literals.first();
    return QStringLiteral("%1 %2 (%3)")
        .arg(name, isNot ? QLatin1String("NOT IN") : QLatin1String("IN"), literals.join(QLatin1String(", ")));
}

QString both(const QString &filter, const QString &condition)
{
    return filter.isEmpty() ? condition : QStringLiteral("(%1) AND %2").arg(filter, condition);
}

ScanSource sourceOf(const ModelState &state)
{
    ScanSource source;
    source.databaseName = state.database;
    source.table = state.table;
    source.filter = state.filter;
    return source;
}

/// The records of a state, and what tells one from the others: the database is asked, on a connection of its own.
class Records
{
public:
    Records(const ModelState &state, Task &task)
        : filter_(state.filter), dialect_(dialectOf(state.database)), pages_(sourceOf(state)),
          cancelling_(task, [this] { pages_.cancel(); })
    {
        pages_.open();
    }

    std::vector<Record> at(const std::set<qint64> &ordinals)
    {
        std::vector<Record> records;
        for (auto next = ordinals.begin(); next != ordinals.end();) {
            const qint64 first = *next;
            qint64 end = first;
            for (; next != ordinals.end() && *next == end && end - first < kRowsAtOnce; ++next)
                ++end;
            qint64 ordinal = first;
            for (const QVariantList &row : pages_.values(first - 1, int(end - first)))
                records.push_back({ordinal++, valuesOf(row)});
            if (ordinal < end)
                throw EPlatformError(Leaveout::tr("There is no record %1 any more.").arg(ordinal));
        }
        return records;
    }
    /// Whether so many fulfil a condition, or more do, of those that the filter leaves.
    bool areAtLeast(qint64 count, const QString &condition)
    {
        return pages_.count(both(filter_, u'(' + condition + u')'), count) == count;
    }
    bool isOne(const QString &condition) { return pages_.count(both(filter_, u'(' + condition + u')'), 2) == 1; }
    /// How many of the records from one on are known to be told by a field; 0 where each has to be asked for.
    size_t told(const std::vector<Record> &records, size_t first, const QString &field)
    {
        QStringList literals;
        for (size_t i = first; i < records.size() && literals.size() < together_; ++i) {
            const Value *const value = records[i].find(field);
            if (value == nullptr)
                break;
            literals.append(value->literal);
        }
        if (literals.size() < 2)
            return 0;
        const QString condition = both(filter_, u'(' + isOneOf(field, literals, false) + u')');
        const bool all = pages_.areTold(condition, field, literals.size()) == true;
        together_ = all ? std::min(2 * together_, kTogether) : together_ / 8;
        return all ? size_t(literals.size()) : 0;
    }

private:
    std::vector<Value> valuesOf(const QVariantList &row) const
    {
        std::vector<Value> values;
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (auto value = valueOf(pages_.fields()[size_t(i)].name, row[i], dialect_))
                values.push_back(*std::move(value));
        }
        std::stable_sort(values.begin(), values.end(),
                         [](const Value &a, const Value &b) { return a.isExact && !b.isExact; });
        return values;
    }

    const QString filter_;
    const Dialect dialect_;
    RecordPages pages_;
    const Task::Cancelling cancelling_;
    qsizetype together_ = kTogether;
};

} // namespace

ModelState leavingOut(const ModelState &state, const std::set<qint64> &ordinals, Task &task)
{
    if (state.isQuery())
        throw EPlatformError(Leaveout::tr("Records of a query are left out in its statement."));
    Records records(state, task);
    const std::vector<Record> all = records.at(ordinals);
    std::map<QString, QStringList> literals; // of fields that tell a record alone
    QStringList others;
    QString last;    // what told one record often tells the next one
    size_t told = 0; // records up to there that it is known to tell
    for (size_t i = 0; i < all.size(); ++i) {
        if (all.size() > 1)
            task.percentage = int(100 * i / all.size());
        if (i < told) {
            literals[last].append(all[i].find(last)->literal);
            continue;
        }
        std::vector<Value> values = all[i].values;
        std::stable_partition(values.begin(), values.end(), [&](const Value &value) { return value.name == last; });
        const auto own = std::find_if(values.begin(), values.end(), [&](const Value &value) {
            return !value.literal.isEmpty() && records.isOne(value.is());
        });
        if (own != values.end()) {
            last = own->name;
            literals[last].append(own->literal);
            told = i + 1 + records.told(all, i + 1, last);
            continue;
        }
        QStringList every;
        QStringList none;
        for (const Value &value : values) {
            every.append(value.is());
            // A comparison with a null is neither true nor false.
            none.append(value.literal.isEmpty()
                            ? value.name + QLatin1String(" IS NOT NULL")
                            : QStringLiteral("%1 <> %2 OR %1 IS NULL").arg(value.name, value.literal));
        }
        if (values.empty() || !records.isOne(every.join(QLatin1String(" AND "))))
            throw EPlatformError(
                Leaveout::tr("Record %1 is not the only one with its values: a filter cannot leave it out alone.")
                    .arg(all[i].ordinal));
        others.append(u'(' + none.join(QLatin1String(" OR ")) + u')');
    }
    QStringList conditions;
    for (const auto &[name, list] : literals) {
        const QString isNot = isOneOf(name, list, true);
        const QString null = name + QLatin1String(" IS NULL");
        conditions.append(records.areAtLeast(1, null) ? QStringLiteral("(%1 OR %2)").arg(isNot, null) : isNot);
    }
    ModelState without = state;
    without.filter = both(state.filter, (conditions + others).join(QLatin1String(" AND ")));
    return without;
}

std::optional<ModelState> leavingOut(QWidget &window, const ModelState &state, const std::set<qint64> &records)
{
    const auto without = std::make_shared<ModelState>();
    const bool isDone =
        waitFor(&window, Leaveout::tr("Leave records out"), Leaveout::tr("Looking for what tells the records…"),
                [=](Task &task) { *without = leavingOut(state, records, task); });
    return isDone ? std::optional(*without) : std::nullopt;
}

} // namespace nuvo
