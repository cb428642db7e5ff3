// SPDX-License-Identifier: MIT
// Every way to move, over datasets of every size around the block bounds, compared with an independent read.

#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Recordlimits.h"
#include "support/Text.h"

#include <QAbstractItemModel>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <sstream>

namespace {

/// What kind of order reading has to begin again in.
enum Source {
    IntegerKey,
    TextKey,
    TwoPartKey,
    ExactKey, // of values that do not come through the driver as they are stored
    NoKey,
    OrderWithTies,
    OrderWithNulls,
    View,
    OrderedQuery,
    QueryWithParameter
};
constexpr std::array kSources = {IntegerKey,    TextKey,        TwoPartKey, ExactKey,     NoKey,
                                 OrderWithTies, OrderWithNulls, View,       OrderedQuery, QueryWithParameter};
constexpr const char *kSourceNames[] = {"IntegerKey",   "TextKey",           "TwoPartKey",     "ExactKey",
                                        "NoKey",        "OrderWithTies",     "OrderWithNulls", "View",
                                        "OrderedQuery", "QueryWithParameter"};

struct Case
{
    TestDatabase::Backend backend;
    Source source;

    friend std::ostream &operator<<(std::ostream &out, const Case &of)
    {
        return out << backendName(of.backend) << kSourceNames[of.source];
    }
};

std::vector<Case> cases()
{
    std::vector<Case> all;
    for (const TestDatabase::Backend backend : {TestDatabase::Sqlite, TestDatabase::Postgres}) {
        for (const Source source : kSources)
            all.push_back({backend, source});
    }
    return all;
}

/// The small bounds make every path of reading again run within a few hundred rows; tiny ones count bytes.
nuvo::RecordLimits smallLimits(bool tiny)
{
    nuvo::RecordLimits limits;
    if (tiny) {
        limits.blockBytes = 300;
        limits.headBytes = 1500;
        limits.windowBytes = 900;
        limits.firstChunk = 5;
        return limits;
    }
    limits.blockRows = 8;
    limits.headRows = 24;
    limits.windowRows = 32;
    limits.firstChunk = 4;
    limits.lastChunk = 16;
    limits.scanChunk = 3;
    return limits;
}

/// What a record is compared by.
struct Record
{
    qint64 id;
    double x;
    bool xIsNull;
    QString name;
    qint64 a;

    friend bool operator==(const Record &, const Record &) = default;
    friend std::ostream &operator<<(std::ostream &out, const Record &record)
    {
        return out << record.id << ' ' << (record.xIsNull ? "null" : std::to_string(record.x)) << ' '
                   << record.name.toStdString();
    }
};

} // namespace

class Walks : public testing::TestWithParam<Case>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam().backend);
    std::unique_ptr<TDataSet> dataset;
    std::vector<Record> expected;

    void make(int rows, bool tiny = false);
    Record current() const;
    void check(qint64 row) const;
    std::optional<QVariantList> keyOf(const Record &record, int parts) const;
    void walk(unsigned seed, int steps);
};

INSTANTIATE_TEST_SUITE_P(On, Walks, testing::ValuesIn(cases()), [](const auto &each) {
    std::ostringstream name;
    name << each.param;
    return name.str();
});

void Walks::make(int rows, bool tiny)
{
    const Source source = GetParam().source;
    dataset.reset();
    db->exec(u("DROP VIEW IF EXISTS v"));
    db->exec(u("DROP TABLE IF EXISTS t"));
    const bool ownKey = source != NoKey && source != TextKey && source != TwoPartKey && source != ExactKey;
    db->exec(
        u("CREATE TABLE t (id INTEGER%1, x DOUBLE PRECISION, name VARCHAR(20)%2, a INTEGER NOT NULL, b INTEGER NOT "
          "NULL, e TIMESTAMP%3%4)")
            .arg(ownKey ? u(" PRIMARY KEY") : QString(), source == TextKey ? u(" PRIMARY KEY") : QString(),
                 source == ExactKey ? u(" PRIMARY KEY") : QString(),
                 source == TwoPartKey ? u(", PRIMARY KEY (a, b)") : QString()));
    std::mt19937 random(unsigned(rows) + 1);
    QStringList values;
    for (int id = 1; id <= rows; ++id) {
        const auto some = unsigned(random());
        // Names in an order of their own, with quotes in them; moments that differ by microseconds.
        values.append(u("(%1, %2, '%3 \"''%1', %4, %5, '2024-01-01 00:00:00.%6')")
                          .arg(id)
                          .arg(some % 7 == 0 ? u("NULL") : QString::number(double(some % 1000) / 8),
                               QString(QChar(u'a' + int(some % 26))))
                          .arg(some % 5)
                          .arg(id)
                          .arg(1000 + id, 6, 10, QChar(u'0')));
    }
    if (!values.isEmpty())
        db->exec(u("INSERT INTO t VALUES ") + values.join(u','));
    db->exec(u("CREATE VIEW v AS SELECT * FROM t"));

    QString order;
    QString condition;
    if (source == OrderedQuery || source == QueryWithParameter) {
        auto query = std::make_unique<TQuery>();
        condition = source == QueryWithParameter ? u("WHERE a <> %1 ") : QString();
        order = u("a, id");
        query->SetSQL(u("SELECT x, id, a, name FROM t %1ORDER BY a, id")
                          .arg(condition.isEmpty() ? QString() : condition.arg(u(":skipped"))));
        query->SetParam(u("skipped"), 2);
        condition = condition.isEmpty() ? QString() : condition.arg(2);
        dataset = std::move(query);
    } else {
        auto table = std::make_unique<TTable>();
        table->SetTableName(source == View ? u("v") : u("t"));
        const std::map<Source, std::pair<const char *, const char *>> orders = {{IntegerKey, {"", "id"}},
                                                                                {TextKey, {"", "name"}},
                                                                                {TwoPartKey, {"", "a, b"}},
                                                                                {ExactKey, {"", "e"}},
                                                                                {NoKey, {"", "id"}},
                                                                                {OrderWithTies, {"a", "a, id"}},
                                                                                {OrderWithNulls, {"x", "x, id"}},
                                                                                {View, {"a;id", "a, id"}}};
        table->SetIndexFieldNames(u(orders.at(source).first));
        order = u(orders.at(source).second);
        dataset = std::move(table);
    }
    dataset->SetDatabaseName(db->name());
    setRecordLimits(*dataset, smallLimits(tiny));

    expected.clear();
    QSqlQuery read(db->writer());
    EXPECT_TRUE(read.exec(u("SELECT id, x, name, a FROM t %1ORDER BY %2").arg(condition, order)));
    while (read.next())
        expected.push_back({read.value(0).toLongLong(), read.value(1).toDouble(), read.value(1).isNull(),
                            read.value(2).toString(), read.value(3).toLongLong()});
}

Record Walks::current() const
{
    const TField &x = dataset->FieldByName(u("x"));
    return {dataset->FieldByName(u("id")).AsInteger(), x.AsFloat(), x.IsNull(),
            dataset->FieldByName(u("name")).AsString(), dataset->FieldByName(u("a")).AsInteger()};
}

void Walks::check(qint64 row) const
{
    ASSERT_EQ(dataset->IsEmpty(), expected.empty());
    if (expected.empty()) {
        ASSERT_EQ(dataset->RecNo(), 0);
        return;
    }
    ASSERT_EQ(dataset->RecNo(), row + 1);
    ASSERT_EQ(current(), expected[size_t(row)]);
}

/// Values for FindKey(): of the whole key or of its first part.
std::optional<QVariantList> Walks::keyOf(const Record &record, int parts) const
{
    switch (GetParam().source) {
    case IntegerKey:
        return QVariantList{record.id};
    case TextKey:
        return QVariantList{record.name};
    case TwoPartKey: // b is the id
    case View:
        return parts == 1 ? QVariantList{record.a} : QVariantList{record.a, record.id};
    case OrderWithTies:
        return QVariantList{record.a};
    case OrderWithNulls:
        return record.xIsNull ? std::nullopt : std::optional(QVariantList{record.x});
    default:
        return std::nullopt;
    }
}

void Walks::walk(unsigned seed, int steps)
{
    std::mt19937 random(seed);
    const qint64 count = qint64(expected.size());
    const auto below = [&](qint64 limit) { return qint64(random() % unsigned(std::max<qint64>(limit, 1))); };
    while (dataset->ControlsDisabled())
        dataset->EnableControls();
    dataset->Close();
    dataset->Open();
    qint64 row = 0;
    int disabled = 0;
    ASSERT_NO_FATAL_FAILURE(check(row));
    for (int step = 0; step < steps; ++step) {
        const qint64 from = row;
        const int what = int(below(16));
        SCOPED_TRACE("step " + std::to_string(step) + " action " + std::to_string(what) + " from row " +
                     std::to_string(from));
        switch (what) {
        case 0:
            dataset->First();
            row = 0;
            ASSERT_TRUE(dataset->Bof());
            ASSERT_EQ(dataset->Eof(), count == 0);
            break;
        case 1:
            dataset->Last();
            row = std::max<qint64>(0, count - 1);
            ASSERT_TRUE(dataset->Eof());
            break;
        case 2:
        case 3: {
            // A run of steps forward.
            for (qint64 n = below(40); n > 0; --n) {
                dataset->Next();
                ASSERT_EQ(dataset->Eof(), row + 1 >= count);
                row = std::min(row + 1, std::max<qint64>(0, count - 1));
                ASSERT_NO_FATAL_FAILURE(check(row));
            }
            break;
        }
        case 4: {
            for (qint64 n = below(40); n > 0; --n) {
                dataset->Prior();
                ASSERT_EQ(dataset->Bof(), row == 0);
                row = std::max<qint64>(0, row - 1);
                ASSERT_NO_FATAL_FAILURE(check(row));
            }
            break;
        }
        case 5:
        case 6: {
            const qint64 distance = below(2 * count + 4) - count - 2;
            const qint64 moved = dataset->MoveBy(distance);
            row = count == 0 ? 0 : std::clamp<qint64>(from + distance, 0, count - 1);
            ASSERT_EQ(moved, row - from);
            break;
        }
        case 7: {
            const qint64 wanted = below(count + count / 4 + 1);
            const bool there = wanted < count;
            const QVariant id = there ? expected[size_t(wanted)].id : -7;
            ASSERT_EQ(dataset->Locate({u("ID")}, {id}), there);
            row = there ? wanted : row;
            break;
        }
        case 8:
            dataset->DisableControls();
            ++disabled;
            break;
        case 9:
            dataset->EnableControls();
            disabled = std::max(0, disabled - 1);
            break;
        case 10:
            ASSERT_EQ(dataset->RecordCount(), count);
            break;
        case 11: {
            // To the end, as a load does.
            const nuvo::ControlsOff quiet(*dataset);
            qint64 seen = 0;
            for (dataset->First(); !dataset->Eof(); dataset->Next())
                ASSERT_EQ(current(), expected[size_t(seen++)]);
            ASSERT_EQ(seen, count);
            row = std::max<qint64>(0, count - 1);
            break;
        }
        case 14:
        case 15: {
            // What an attached view shows elsewhere.
            QAbstractItemModel *model = dataset->Model();
            if (disabled > 0)
                break;
            if (what == 15 && model->canFetchMore({}))
                model->fetchMore({});
            ASSERT_LE(model->rowCount(), count);
            const int idColumn = dataset->FieldByName(u("id")).Index();
            for (int i = 0; i < 5 && model->rowCount() > 0; ++i) {
                const int shown = int(below(model->rowCount()));
                ASSERT_EQ(model->index(shown, idColumn).data().toString(),
                          QString::number(expected[size_t(shown)].id));
            }
            break;
        }
        case 12:
        case 13: {
            auto *table = dynamic_cast<TTable *>(dataset.get());
            const qint64 wanted = below(count + 2);
            const int parts = int(below(2)) + 1;
            const Record record = wanted < count ? expected[size_t(wanted)] : Record{5000, 5000, false, u("~"), 2};
            const std::optional<QVariantList> key = keyOf(record, parts);
            if (table == nullptr || !key)
                break;
            const auto first = std::find_if(expected.begin(), expected.end(),
                                            [&](const Record &other) { return keyOf(other, parts) == key; });
            ASSERT_EQ(table->FindKey(*key), first != expected.end());
            row = first != expected.end() ? first - expected.begin() : row;
            break;
        }
        }
        ASSERT_NO_FATAL_FAILURE(check(row));
        ASSERT_EQ(dataset->ControlsDisabled(), disabled > 0);
    }
}

TEST_P(Walks, AtRandomShowTheRecordsThatAnIndependentReadShows)
{
    for (const int rows : {0, 1, 2, 3, 4, 7, 8, 9, 23, 24, 25, 32, 57, 200}) {
        for (const bool tiny : {false, true}) {
            make(rows, tiny);
            SCOPED_TRACE(std::to_string(rows) + (tiny ? " rows, tiny bounds" : " rows"));
            ASSERT_NO_FATAL_FAILURE(walk(unsigned(rows) * 31 + 7, 60));
            ASSERT_NO_FATAL_FAILURE(walk(unsigned(rows) * 17 + 3, 60));
        }
    }
}

TEST_P(Walks, RefreshKeepsTheRecordNumber)
{
    make(100);
    dataset->Open();
    for (const qint64 row :
         {qint64(0), qint64(10), qint64(23), qint64(24), qint64(60), qint64(expected.size()) - 1}) {
        dataset->First();
        ASSERT_EQ(dataset->MoveBy(row), row);
        dataset->Refresh();
        ASSERT_NO_FATAL_FAILURE(check(row));
        ASSERT_EQ(dataset->MoveBy(-5), -std::min<qint64>(5, row));
        ASSERT_NO_FATAL_FAILURE(check(std::max<qint64>(0, row - 5)));
    }
    db->exec(u("DELETE FROM t WHERE id > 40"));
    dataset->Refresh();
    EXPECT_LE(dataset->RecNo(), 40);
    EXPECT_LE(dataset->RecordCount(), 40);
}
