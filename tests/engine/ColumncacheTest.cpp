#include "engine/Columncache.h"
#include "support/Recordlimits.h"
#include "support/Regressions.h"

#include <QSignalSpy>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

// Loads and fits with the cache beside the same ones without it: nothing that can be observed differs, to the last
// bit.

namespace {

std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

/// Everything that a component shows, in the order in which somebody might ask.
QStringList everything(TRegression &regression)
{
    QStringList out;
    const auto add = [&](const char *name, auto... values) {
        QString line = text(name);
        ((line += u' ' + QString::number(bits(double(values)), 16)), ...);
        out.append(line);
    };
    const int n = regression.GetNumObs();
    const int m = regression.GetNumVars();
    add("state", n, m, regression.GetDOF(), regression.RecordsRead(), regression.RecordsUsed(),
        regression.RecordsSkipped(), regression.Loaded(), regression.Computed(), regression.ResultsCurrent(),
        regression.LoadStopped());
    add("y", regression.GetyMax(), regression.GetyMin(), regression.GetyBar(), regression.GetyStdErr());
    for (int j = 1; j <= m; ++j) {
        out.append(regression.GetcVar(j).ToQStringList().join(u'|'));
        add("x", regression.GetxMax(j), regression.GetxMin(j), regression.GetxBar(j), regression.GetxStdErr(j));
    }
    add("mse", regression.GetMSE());
    add("sums", regression.GetSSE(), regression.GetSSR(), regression.GetSST(), regression.GetRSquared(),
        regression.GetSyx(), regression.GetF(), regression.GetMSE());
    for (int i = 0; i <= m; ++i) {
        add("b", regression.Getb(i));
        for (int j = 0; j <= m; ++j)
            add("matrices", regression.GetCovar(i, j), regression.GetCorr(i, j));
    }
    for (int i = 1; i <= n; ++i) {
        add("observation", regression.Gety(i), regression.Gete(i), regression.GetyHat(i));
        for (int j = 1; j <= m; ++j)
            add("value", regression.Getx(i, j));
    }
    for (const int column : regression.DependentColumns())
        add("dependent", column);
    return out;
}

/// What a call throws: the kind of error and its words.
template <class Call>
QString thrownBy(Call call)
{
    try {
        call();
        return {};
    } catch (const EConvertError &error) {
        return text("EConvertError ") + error.Message();
    } catch (const EDatabaseError &error) {
        return text("EDatabaseError ") + error.Message();
    } catch (const EStringListError &error) {
        return text("EStringListError ") + error.Message();
    }
}

std::shared_ptr<nuvo::ColumnCache> cacheFor(TRegression &regression)
{
    std::vector<TIndepVar> terms;
    for (int k = 1; k <= MaxControls; ++k)
        terms.push_back(regression.ControlVar(k));
    return std::make_shared<nuvo::ColumnCache>(regression.DataSet(), terms);
}

/// Two components on the same records, of which one has the cache.
template <class Component>
class Twins : public testing::Test
{
protected:
    struct Twin
    {
        Component component;
        QSignalSpy loads{&component, &Component::LoadEnded};
        QSignalSpy fits{&component, &Component::Fitted};
        QStringList story;
    };

    void fill(const char *columns, const std::vector<Row> &rows) { makeTable(*db, "data", columns, rows); }

    void start()
    {
        for (Twin &twin : twins)
            bind(twin.component, *db, "data");
        twins[0].component.SetColumnCache(cacheFor(twins[0].component));
    }

    /// Does the same with both, and says what differs.
    void both(const std::function<void(Component &)> &act, const QString &what)
    {
        for (Twin &twin : twins) {
            messages.shown.clear();
            QString line = what + text(": ") + thrownBy([&] { act(twin.component); });
            for (const Message &message : messages.shown)
                line += text(" [") + message.text + u']';
            twin.story.append(line);
        }
        EXPECT_EQ(twins[0].story.last(), twins[1].story.last());
    }

    void expectAlike(const QString &when)
    {
        const QStringList cached = everything(twins[0].component);
        const QStringList plain = everything(twins[1].component);
        ASSERT_EQ(cached.size(), plain.size()) << when.toStdString();
        for (qsizetype i = 0; i < plain.size(); ++i)
            ASSERT_EQ(cached[i], plain[i]) << when.toStdString();
        ASSERT_EQ(twins[0].loads, twins[1].loads) << when.toStdString();
        ASSERT_EQ(twins[0].fits.size(), twins[1].fits.size()) << when.toStdString();
    }

    void reload()
    {
        bool loaded[2] = {};
        int at = 0;
        both([&](Component &component) { loaded[at++] = component.ReLoad(); }, text("reload"));
        EXPECT_EQ(loaded[0], loaded[1]);
    }

    void expectSamePlace()
    {
        twins[0].component.SetColumnCache(nullptr);
        EXPECT_EQ(twins[0].component.RecNo(), twins[1].component.RecNo());
        EXPECT_EQ(twins[0].component.Eof(), twins[1].component.Eof());
        EXPECT_EQ(twins[0].component.Bof(), twins[1].component.Bof());
        // Next() from the same place comes to the same place.
        for (Twin &twin : twins)
            twin.component.Next();
        EXPECT_EQ(twins[0].component.RecNo(), twins[1].component.RecNo());
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    Twin twins[2];
};
using Components = testing::Types<TMLRTable, TMLRQuery>;
struct ComponentNames
{
    template <class Component>
    static std::string GetName(int)
    {
        return std::is_same_v<Component, TMLRTable> ? "Table" : "Query";
    }
};
TYPED_TEST_SUITE(Twins, Components, ComponentNames);

using Tables = Twins<TMLRTable>;

/// Records with nulls, zeros and negative numbers; column d is constant wherever b is there.
std::vector<Row> mixedRecords(std::mt19937 &random, int count, double nulls)
{
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform;
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i) {
        const double a = 3 + normal(random);
        const double b = std::fabs(normal(random)) + (i % 11 == 0 ? 0 : 0.5);
        const double c = double(i % 7) - (i % 13 == 0 ? 4 : 0);
        const bool noB = uniform(random) < nulls;
        Row row = {2 + a - b + 0.1 * normal(random), a, b, c, noB ? normal(random) : 4.0, 100 + uniform(random)};
        if (noB)
            row[2] = null;
        for (const std::size_t at : {0u, 1u, 3u, 5u}) {
            if (uniform(random) < nulls / 3)
                row[at] = null;
        }
        rows.push_back(row);
    }
    return rows;
}

/// Definitions over columns y a b c d e, all nine transformations among them and some that are none.
std::vector<TIndepVar> manyTerms()
{
    return {control("None", "a"),
            control("None", "b"),
            control("Log", "b"),
            control("Inverse", "a"),
            control("Sqrt", "b"),
            power("c", "2"),
            power("a", "3"),
            scaled("Scale", "e", "7"),
            scaled("Scaled", "e", "7"),
            control("Product", "a", "e"),
            control("Quotient", "a", "c"),
            control("None", "c"),
            control("None", "d"),
            control("Inactive", "e"),
            control("Log", "c"),
            power("a", "0")};
}

/// Terms that raise, at once or at some records only.
std::vector<TIndepVar> termsThatRaise()
{
    TIndepVar tooShort;
    tooShort.Assign(QStringList{text("Active"), text("None")});
    return {control("None", "nothing"),
            power("a", "much"),
            power("b", "1.5"),
            control("Product", "a", "nowhere"),
            scaled("Scale", "a", "some"),
            scaled("Scale", "b", "0"),
            tooShort};
}

} // namespace

TYPED_TEST(Twins, HundredsOfRandomCandidatesAreAlike)
{
    std::mt19937 random(20241121);
    this->fill("y a b c d e", mixedRecords(random, 400, 0.1));
    this->start();
    const std::vector<TIndepVar> terms = manyTerms();
    const auto pick = [&](std::size_t count) { return std::size_t(random() % count); };
    int loaded = 0;
    int failed = 0;
    for (auto &twin : this->twins)
        twin.component.SetResponse(response("None", "y"));
    for (int candidate = 0; candidate < 300 && !this->HasFatalFailure(); ++candidate) {
        for (int k = 1; k <= MaxControls; ++k) {
            if (random() % 3 == 0) {
                const TIndepVar definition = random() % 2 == 0 ? TIndepVar() : terms[pick(terms.size())];
                this->both([&](auto &component) { component.ControlVar(k).Assign(definition); }, text("assign"));
            } else if (random() % 5 == 0) {
                this->both([&](auto &component) { component.ControlVar(k).SetTransformation(text("Undefined")); },
                           text("undefined"));
            }
        }
        this->reload();
        (this->twins[1].component.Loaded() ? loaded : failed) += 1;
        if (random() % 4 != 0)
            this->both([](auto &component) { component.Execute(); }, text("execute"));
        if (random() % 4 != 0)
            this->expectAlike(QStringLiteral("candidate %1").arg(candidate));
    }
    EXPECT_GT(loaded, 100);
    EXPECT_GT(failed, 5);
    this->expectSamePlace();
}

TYPED_TEST(Twins, EverySubsetIsAlike)
{
    std::mt19937 random(7);
    this->fill("y a b c d e", mixedRecords(random, 200, 0.05));
    this->start();
    const std::vector<TIndepVar> terms = {control("None", "a"), control("None", "b"),          control("Log", "c"),
                                          control("None", "e"), control("Quotient", "a", "c"), power("e", "2")};
    for (auto &twin : this->twins) {
        twin.component.SetResponse(response("Scale", "y", "2.5"));
        for (std::size_t k = 0; k < terms.size(); ++k)
            twin.component.SetControl(int(k) + 1, terms[k]);
    }
    for (unsigned subset = 0; subset < 64 && !this->HasFatalFailure(); ++subset) {
        for (std::size_t k = 0; k < terms.size(); ++k) {
            const QString transformation = (subset >> k & 1) != 0 ? terms[k].Transformation() : text("Undefined");
            for (auto &twin : this->twins)
                twin.component.ControlVar(int(k) + 1).SetTransformation(transformation);
        }
        this->reload();
        this->both([](auto &component) { component.Execute(); }, text("execute"));
        this->expectAlike(QString::number(subset, 2));
    }
    this->expectSamePlace();
}

TYPED_TEST(Twins, MoreThan2500RecordsAreAlike)
{
    std::mt19937 random(99);
    this->fill("y a b c d e", mixedRecords(random, 3200, 0.04));
    this->start();
    const std::vector<TIndepVar> terms = {control("None", "a"), control("None", "b"), control("Log", "b"),
                                          control("None", "c"), control("None", "e"), control("Log", "c")};
    for (auto &twin : this->twins) {
        twin.component.SetResponse(response("None", "y"));
        twin.component.SetShowWarnings(true);
    }
    int full = 0;
    int ended = 0;
    for (int candidate = 0; candidate < 12 && !this->HasFatalFailure(); ++candidate) {
        for (std::size_t k = 0; k < terms.size(); ++k) {
            const TIndepVar definition = random() % 2 == 0 ? terms[k] : TIndepVar();
            for (auto &twin : this->twins)
                twin.component.ControlVar(int(k) + 1).Assign(definition);
        }
        this->reload();
        this->both([](auto &component) { component.Execute(); }, text("execute"));
        this->expectAlike(QString::number(candidate));
        (this->twins[1].component.Eof() ? ended : full) += 1;
    }
    EXPECT_GT(full, 0);
    EXPECT_GT(ended, 0);
    this->expectSamePlace();
}

TYPED_TEST(Twins, TermsThatRaiseDoSoAtTheSamePoint)
{
    std::mt19937 random(5);
    this->fill("y a b c d e", mixedRecords(random, 60, 0.1));
    this->db->exec(text("UPDATE data SET e = 'n/a' WHERE id IN (9, 30, 31)"));
    this->db->exec(text("UPDATE data SET b = NULL WHERE id IN (1, 2, 3, 9, 30, 31)"));
    // A term raises also where the response would have rejected the record.
    this->db->exec(text("UPDATE data SET y = NULL, e = 'n/a' WHERE id IN (5, 6, 40)"));
    this->db->exec(text("UPDATE data SET b = 1, a = 'none', y = NULL WHERE id IN (7, 41)"));
    this->start();
    std::vector<TIndepVar> terms = manyTerms();
    for (const TIndepVar &term : termsThatRaise())
        terms.push_back(term);
    for (auto &twin : this->twins)
        twin.component.SetResponse(response("None", "y"));
    for (int candidate = 0; candidate < 300 && !this->HasFatalFailure(); ++candidate) {
        for (int k = 1; k <= 4; ++k) {
            const TIndepVar definition = random() % 3 == 0 ? TIndepVar() : terms[random() % terms.size()];
            for (auto &twin : this->twins)
                twin.component.ControlVar(k).Assign(definition);
        }
        this->reload();
        EXPECT_EQ(this->twins[0].component.ControlsDisabled(), false);
        this->both([](auto &component) { component.Execute(); }, text("execute"));
        this->expectAlike(QString::number(candidate));
    }
    const QString errors = this->twins[0].story.join(u'\n');
    for (const char *error : {"EConvertError \"n/a\"", "EConvertError The exponent", "EDatabaseError No field",
                              "EConvertError The scale", "EStringListError"})
        EXPECT_TRUE(errors.contains(text(error))) << error;
}

TYPED_TEST(Twins, AResponseThatRaisesOrChangesIsAlike)
{
    std::mt19937 random(6);
    this->fill("y a b c d e", mixedRecords(random, 60, 0.1));
    this->db->exec(text("UPDATE data SET e = 'n/a', c = NULL WHERE id = 40"));
    this->start();
    TDependentVar tooShort;
    tooShort.Assign(QStringList());
    for (const TDependentVar &definition :
         {response("None", "y"), response("Log", "b"), response("None", "e"), response("Inverse", "c"),
          response("Scale", "a", "0"), response("Scale", "a", "none"), response("Scale", "e", "3"), tooShort,
          response("None", "nothing"), response("None", "y")}) {
        for (const char *controls : {"a b", "c", "a", "d c", ""}) {
            for (auto &twin : this->twins) {
                for (int k = 1; k <= MaxControls; ++k)
                    twin.component.ControlVar(k).Assign(TIndepVar());
                define(twin.component, controls);
                twin.component.ResponseVarY().Assign(definition);
            }
            this->reload();
            this->both([](auto &component) { component.Execute(); }, text("execute"));
            this->expectAlike(definition.ToQStringList().join(u'|') + text(controls));
        }
    }
}

TYPED_TEST(Twins, RowsThatAreReadAnewAreNoticed)
{
    std::mt19937 random(8);
    this->fill("y a b c d e", mixedRecords(random, 50, 0.1));
    this->start();
    for (auto &twin : this->twins)
        define(twin.component, "a b c");
    const auto run = [&](const char *when) {
        this->reload();
        this->both([](auto &component) { component.Execute(); }, text("execute"));
        this->expectAlike(text(when));
        return this->twins[1].component.GetSSE();
    };
    const double first = run("first");
    this->db->exec(text("UPDATE data SET y = y + a * a"));
    EXPECT_EQ(run("the same snapshot"), first);
    this->both([](auto &component) { component.Refresh(); }, text("refresh"));
    const double second = run("refreshed");
    EXPECT_NE(second, first);
    this->db->exec(text("UPDATE data SET y = y + b * b"));
    this->both(
        [](auto &component) {
            component.Close();
            component.Open();
        },
        text("reopen"));
    EXPECT_NE(run("opened again"), second);
    this->both([](auto &component) { component.Close(); }, text("close"));
    run("closed");
    this->both([](auto &component) { component.WishActive(true); }, text("wish"));
    run("wished open");
    run("and once more");
    this->both([](auto &component) { component.Last(); }, text("somewhere else"));
    run("from somewhere else");
    this->expectSamePlace();
}

TEST_F(Tables, AFilterIsNoticed)
{
    std::mt19937 random(9);
    fill("y a b c d e", mixedRecords(random, 90, 0.1));
    start();
    for (Twin &twin : twins)
        define(twin.component, "a c");
    for (const char *filter : {"", "a > 3", "c < 3", "y = -1000", ""}) {
        both(
            [&](TMLRTable &component) {
                component.SetFilter(text(filter));
                component.SetFiltered(*filter != '\0');
            },
            text(filter));
        for (int time = 0; time < 2; ++time) {
            reload();
            both([](TMLRTable &component) { component.Execute(); }, text("execute"));
            expectAlike(text(filter));
        }
    }
    expectSamePlace();
}

TEST_F(Tables, RowsBeyondWhatADatasetKeepsAreAlike)
{
    std::mt19937 random(10);
    std::vector<Row> rows = mixedRecords(random, 3000, 0.05);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i % 8 != 0)
            rows[i][0] = null; // most have no response
    }
    fill("y a b c d e", rows);
    nuvo::RecordLimits limits;
    limits.blockRows = 32;
    limits.headRows = 128;
    limits.windowRows = 64;
    for (Twin &twin : twins)
        setRecordLimits(twin.component, limits);
    start();
    for (const char *controls : {"a", "a b", "b c e", "a", "c", "a b c d e"}) {
        for (Twin &twin : twins) {
            for (int k = 1; k <= MaxControls; ++k)
                twin.component.ControlVar(k).Assign(TIndepVar());
            define(twin.component, controls);
        }
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(text(controls));
        EXPECT_EQ(twins[0].component.RecordsRead(), 3000);
    }
    expectSamePlace();
}

TEST_F(Tables, WhatIsBeyondTheCacheIsLoadedFromTheRecords)
{
    // 40000 records of which a term accepts few, so that the walk goes past what is kept.
    db->exec(text("PRAGMA synchronous = OFF"));
    db->exec(text("CREATE TABLE data (id INTEGER PRIMARY KEY, y DOUBLE PRECISION, a DOUBLE PRECISION, b DOUBLE "
                  "PRECISION)"));
    db->exec(text("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 40000) "
                  "INSERT INTO data SELECT i, i % 17, i % 23, CASE WHEN i % 1000 < 7 THEN i % 29 END FROM n"));
    start();
    for (const char *controls : {"a", "a b", "b", "b a", "a"}) {
        for (Twin &twin : twins) {
            for (int k = 1; k <= MaxControls; ++k)
                twin.component.ControlVar(k).Assign(TIndepVar());
            define(twin.component, controls);
        }
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(text(controls));
    }
    EXPECT_EQ(twins[0].component.RecordsRead(), 2500);
    expectSamePlace();
}

TEST_F(Tables, MoreSetsAndTermsThanAreKeptAreAlike)
{
    // Eight columns with nulls of their own make 256 sets of usable records.
    std::mt19937 random(11);
    std::normal_distribution<double> normal;
    std::vector<Row> rows;
    for (int i = 0; i < 60; ++i) {
        Row row;
        for (int j = 0; j < 9; ++j)
            row.push_back(j > 0 && i == 7 * j % 60 ? std::optional<double>() : normal(random));
        rows.push_back(row);
    }
    fill("y a b c d e f g h", rows);
    start();
    for (Twin &twin : twins)
        twin.component.SetResponse(response("None", "y"));
    for (unsigned round = 0; round < 2; ++round) {
        for (unsigned subset = 1; subset < 256 && !HasFatalFailure(); subset += 2) {
            for (int k = 0; k < 8; ++k) {
                const char name[2] = {char('a' + k), '\0'};
                for (Twin &twin : twins)
                    twin.component.ControlVar(k + 1).Assign((subset >> k & 1) != 0 ? control("None", name)
                                                                                   : TIndepVar());
            }
            reload();
            both([](TMLRTable &component) { component.Execute(); }, text("execute"));
            expectAlike(QString::number(subset, 2));
        }
    }
    for (int factor = 1; factor < 200 && !HasFatalFailure(); ++factor) {
        for (Twin &twin : twins)
            twin.component.ControlVar(1 + factor % 3)
                .Assign(scaled("Scale", "a", QByteArray::number(factor).constData()));
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(QString::number(factor));
    }
}

TEST_F(Tables, AnEmptyTableAndFewRecordsAreAlike)
{
    fill("y a b", {});
    start();
    for (Twin &twin : twins)
        define(twin.component, "a b");
    reload();
    expectAlike(text("empty"));
    for (const char *row : {"(1, 1, 2)", "(2, 4, 3)", "(4, 5, 3)", "(3, 1, 0)"}) {
        db->exec(text("INSERT INTO data (y, a, b) VALUES ") + text(row));
        both([](TMLRTable &component) { component.Refresh(); }, text("refresh"));
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(text(row));
    }
    EXPECT_TRUE(twins[0].story.join(u'\n').contains(text("There are 0 degrees of freedom.")));
    EXPECT_TRUE(twins[0].story.join(u'\n').contains(text("invariant")));
    expectSamePlace();
}

TEST_F(Tables, ALoadThatShowsItsProgressIsAlike)
{
    std::mt19937 random(12);
    fill("y a b c d e", mixedRecords(random, 30, 0.1));
    start();
    for (Twin &twin : twins)
        define(twin.component, "a c");
    for (const bool show : {false, true, false}) {
        for (Twin &twin : twins)
            twin.component.SetShowLoadProgress(show);
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(show ? text("shown") : text("not shown"));
    }
}

TEST_F(Tables, WhatWasLoadedStaysWhenTheCacheGoes)
{
    std::mt19937 random(13);
    fill("y a b c d e", mixedRecords(random, 80, 0.1));
    start();
    for (Twin &twin : twins)
        define(twin.component, "a c");
    reload();
    both([](TMLRTable &component) { component.Execute(); }, text("execute"));
    twins[0].component.SetColumnCache(nullptr);
    expectAlike(text("gone"));
    both([](TMLRTable &component) { component.Execute(); }, text("execute"));
    expectAlike(text("fitted again"));
    reload();
    both([](TMLRTable &component) { component.Execute(); }, text("execute"));
    expectAlike(text("loaded again"));
    const auto first = cacheFor(twins[0].component);
    twins[0].component.SetColumnCache(first);
    reload();
    twins[0].component.SetColumnCache(cacheFor(twins[0].component));
    reload();
    twins[0].component.SetColumnCache(first);
    reload();
    both([](TMLRTable &component) { component.Execute(); }, text("execute"));
    expectAlike(text("two of them"));
}

TEST_F(Tables, ARegressionCanGoBeforeItsCache)
{
    fill("y a b", {{1, 2, 3}, {2, 3, 5}, {4, 1, 1}, {3, 3, 2}});
    auto component = std::make_unique<TMLRTable>();
    bind(*component, *db, "data");
    define(*component, "a");
    const auto held = cacheFor(*component);
    component->SetColumnCache(held);
    EXPECT_TRUE(component->ReLoad());
    component.reset();
}

TEST_F(Tables, TheDatabaseIsAskedOnce)
{
    // What others write meanwhile does not show even where a dataset would have to read again.
    std::mt19937 random(14);
    fill("y a b c d e", mixedRecords(random, 2000, 0.1));
    nuvo::RecordLimits limits;
    limits.blockRows = 32;
    limits.headRows = 64;
    limits.windowRows = 64;
    setRecordLimits(twins[0].component, limits);
    start();
    TMLRTable &component = twins[0].component;
    define(component, "a b c");
    ASSERT_TRUE(component.ReLoad());
    component.Execute();
    const double sse = component.GetSSE();
    db->exec(text("DROP TABLE data"));
    component.ControlVar(2).SetTransformation(text("Undefined"));
    EXPECT_TRUE(component.ReLoad());
    component.Execute();
    EXPECT_GT(component.GetSSE(), sse);
    component.ControlVar(2).SetTransformation(text("None"));
    EXPECT_TRUE(component.ReLoad());
    component.Execute();
    EXPECT_EQ(component.GetSSE(), sse);
    component.SetColumnCache(nullptr); // cannot go where it should, and keeps quiet about it
    EXPECT_EQ(component.GetSSE(), sse);
}
