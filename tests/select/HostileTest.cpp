// SPDX-License-Identifier: MIT
#include "select/Methods.h"
#include "support/Postgres.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUrl>

#include <limits>

// What a program, a person or a server can do to a search while it is at work, and data that no search expects. It
// may end with an EDatabaseError or early, but never in a crash, a hang or a component left half switched.

namespace {

class Hostile : public testing::TestWithParam<Method>
{
protected:
    Hostile() : regression(std::make_unique<TMLRTable>()), search(GetParam().make())
    {
        search->SetTable(regression.get());
    }

    void fill(const char *columns, const std::vector<Row> &rows, const char *controls)
    {
        makeTable(*db, "data", columns, rows);
        ::bind(*regression, *db, "data");
        define(*regression, controls);
        fit();
    }
    void fit()
    {
        if (regression->ReLoad())
            regression->Execute();
        messages.shown.clear();
    }
    void fillCement() { fill("y a b c d", cement(), "a b c d"); }

    std::vector<QStringList> definitions() const
    {
        std::vector<QStringList> all;
        for (int k = 1; k <= MaxControls; ++k)
            all.push_back(regression->ControlVar(k).ToQStringList());
        return all;
    }

    /// Counts the calls of a slot; at number `at` it does something.
    void atLoad(int at, const std::function<void()> &what)
    {
        QObject::connect(regression.get(), &TMLRTable::LoadEnded, [this, at, what] {
            if (++loads_ == at)
                what();
        });
    }
    void atFit(int at, const std::function<void()> &what)
    {
        QObject::connect(regression.get(), &TMLRTable::Fitted, [this, at, what] {
            if (++fits_ == at)
                what();
        });
    }
    /// How many loads a run takes.
    int loadsOfARun()
    {
        int count = 0;
        const auto counting = QObject::connect(regression.get(), &TMLRTable::LoadEnded, [&count] { ++count; });
        search->Run();
        QObject::disconnect(counting);
        define(*regression, "a b c d");
        fit();
        return count;
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    std::unique_ptr<TMLRTable> regression;
    std::unique_ptr<TCorvane> search;

private:
    int loads_ = 0;
    int fits_ = 0;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Methods, Hostile, testing::ValuesIn(methods), methodName);

TEST_P(Hostile, TheSameFieldTwiceAmongEightEnds)
{
    std::vector<Row> rows;
    for (int i = 1; i <= 24; ++i) {
        const double v = i;
        rows.push_back({3 * v + i * i % 7, v, i * 5 % 11, i * i % 13, i * 3 % 8, i * 7 % 9, i % 4, i * 11 % 17});
    }
    makeTable(*db, "data", "y a b c d e f g", rows);
    ::bind(*regression, *db, "data");
    for (const char *controls : {"a a b c d e f g", "a b c d e f g a", "a b c d d e f g", "g b c a e a d f"}) {
        SCOPED_TRACE(controls);
        define(*regression, controls);
        fit();
        search->Run();
        EXPECT_TRUE(regression->Loaded());
        EXPECT_LE(regression->GetNumVars(), 8);
    }
}

TEST_P(Hostile, LinearCombinationsAndTooFewRecordsEnd)
{
    // c = a + b; and fewer records than parameters.
    const std::vector<Row> rows = {
        {1, 2, 3, 5, 9}, {4, 1, 1, 2, 7}, {2, 5, 2, 7, 1}, {8, 3, 6, 9, 4}, {5, 5, 1, 6, 6}};
    for (size_t count = 0; count <= rows.size(); ++count) {
        SCOPED_TRACE(count);
        const QString name = QStringLiteral("data%1").arg(count);
        makeTable(*db, name.toUtf8().constData(), "y a b c d", {rows.begin(), rows.begin() + std::ptrdiff_t(count)});
        ::bind(*regression, *db, name.toUtf8().constData());
        define(*regression, "a b c d");
        fit();
        search->Run();
        EXPECT_FALSE(search->Report().isEmpty());
    }
}

TEST_P(Hostile, HugeTinyAndInfiniteValuesEnd)
{
    fill("y a b c d", wildRows(), "a b c d");
    search->Run();
    regression->SetControl(1, control("Inverse", "a"));
    regression->SetControl(2, power("b", "7"));
    regression->SetControl(3, control("Quotient", "d", "a"));
    fit();
    search->Run();
}

TEST_P(Hostile, AnErrorAtAnyLoadLeavesTheDefinitions)
{
    fillCement();
    const std::vector<QStringList> before = definitions();
    const int loads = loadsOfARun();
    ASSERT_GT(loads, 3);
    regression->SetShowWarnings(true);
    int failures = 0;
    for (int at = 1; at <= loads; ++at) {
        SCOPED_TRACE(at);
        int count = 0;
        const auto failing = QObject::connect(regression.get(), &TMLRTable::LoadEnded, [&] {
            if (++count == at)
                regression->ControlVar(2).SetField1(text("gone"));
        });
        bool failed = false;
        try {
            search->Run();
        } catch (const EDatabaseError &) {
            failed = true;
        }
        QObject::disconnect(failing);
        EXPECT_TRUE(regression->ShowWarnings());
        EXPECT_FALSE(regression->ControlsDisabled());
        EXPECT_FALSE(search->Running());
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        if (failed) {
            ++failures;
            EXPECT_EQ(definitions(), before);
            EXPECT_TRUE(regression->ResultsCurrent());
        }
        define(*regression, "a b c d");
        fit();
    }
    EXPECT_GT(failures, 1);
}

TEST_P(Hostile, ARunOnAnotherComponentMayNest)
{
    fillCement();
    TMLRTable second;
    ::bind(second, *db, "data");
    define(second, "a b c d");
    second.ReLoad();
    second.Execute();
    const std::unique_ptr<TCorvane> other = GetParam().make();
    other->SetTable(&second);
    atFit(2, [&] { other->Run(); });
    search->Run();
    EXPECT_EQ(search->Steps(), other->Steps());
    EXPECT_EQ(regression->GetNumVars(), second.GetNumVars());
    EXPECT_EQ(regression->GetMSE(), second.GetMSE());
}

TEST_P(Hostile, EitherComponentMayGoAtAnyLoadOrFit)
{
    fillCement();
    const int loads = loadsOfARun();
    for (const bool itself : {false, true}) {
        for (const bool atLoadEnd : {false, true}) {
            for (int at = 1; at <= loads; ++at) {
                regression = std::make_unique<TMLRTable>();
                ::bind(*regression, *db, "data");
                define(*regression, "a b c d");
                fit();
                search = GetParam().make();
                search->SetTable(regression.get());
                int count = 0;
                const auto go = [&] {
                    if (++count != at)
                        return;
                    if (itself)
                        search.reset();
                    else
                        regression.reset();
                };
                if (atLoadEnd)
                    QObject::connect(regression.get(), &TMLRTable::LoadEnded, go);
                else
                    QObject::connect(regression.get(), &TMLRTable::Fitted, go);
                TCorvane &running = *search;
                running.Run();
                EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
                if (regression) {
                    EXPECT_FALSE(regression->ControlsDisabled());
                    EXPECT_NO_THROW(regression->ReLoad());
                }
                if (search) {
                    EXPECT_FALSE(search->Running());
                }
            }
        }
    }
}

TEST_P(Hostile, TheFormMayGoWithTheReport)
{
    for (const bool itself : {false, true}) {
        auto form = std::make_unique<QWidget>();
        auto *table = new TMLRTable(form.get());
        table->setObjectName(text("Regression"));
        if (!itself)
            makeTable(*db, "data", "y a b c d", cement());
        ::bind(*table, *db, "data");
        define(*table, "a b c d");
        table->ReLoad();
        table->Execute();
        TCorvane *const selector = GetParam().make().release();
        selector->setParent(form.get());
        selector->SetDataset(text("Regression"));
        selector->setProperty("ShowReport", true);
        if (itself)
            QObject::connect(selector, &TCorvane::Finished, [&form] { form.reset(); });
        else
            messages.meanwhile = [&form] { form.reset(); };
        selector->Run();
        EXPECT_EQ(form, nullptr);
        messages.meanwhile = {};
    }
}

TEST_P(Hostile, AMessageBoxMayTakeTheComponentsAway)
{
    // Half of the candidates cannot be loaded, and each says so.
    const std::vector<Row> rows = {{1, 1, null, 3, 4}, {3, 2, null, 5, 4}, {2, 3, 1, null, 4},
                                   {5, 4, 1, 2, null}, {4, 5, 1, 9, null}, {7, 6, 1, 4, 4}};
    makeTable(*db, "data", "y a b c d", rows);
    for (const bool itself : {false, true}) {
        for (int at = 1; at <= 12; ++at) {
            regression = std::make_unique<TMLRTable>();
            ::bind(*regression, *db, "data");
            define(*regression, "a b c d");
            fit();
            search = GetParam().make();
            search->SetTable(regression.get());
            int count = 0;
            messages.meanwhile = [&] {
                if (++count != at)
                    return;
                if (itself)
                    search.reset();
                else
                    regression.reset();
            };
            TCorvane &running = *search;
            running.Run();
            messages.meanwhile = {};
        }
    }
}

TEST_P(Hostile, ADefinitionThatCodeHasEmptiedDoesNoHarm)
{
    fillCement();
    TIndepVar empty;
    empty.Assign(TStringList());
    regression->SetControl(2, empty);
    regression->SetControl(7, empty);
    regression->ReLoad();
    regression->SetShowWarnings(true);
    try {
        search->Run();
    } catch (const EStringListError &) {
    }
    EXPECT_TRUE(regression->ShowWarnings());
    EXPECT_FALSE(search->Running());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_FALSE(regression->ControlsDisabled());
    define(*regression, "a b c d");
    regression->SetControl(7, TIndepVar());
    fit();
    search->Run();
    EXPECT_TRUE(regression->Loaded());
}

TEST_P(Hostile, SlotsThatRewriteDefinitionsAndMoveTheCursorEndTheSearchSomehow)
{
    fillCement();
    int count = 0;
    QObject::connect(regression.get(), &TMLRTable::LoadEnded, [&] {
        ++count;
        regression->Last();
        regression->ControlVar(1 + count % 10).SetUsage(text("Inactive"));
        regression->ControlVar(1 + count * 7 % 10).SetField1(text(count % 3 ? "a" : "b"));
    });
    search->Run();
    EXPECT_GT(count, 0);
    EXPECT_LT(count, 10000);
}

TEST_P(Hostile, TheDatabaseMayGoAwayBetweenTwoLoads)
{
    fillCement();
    const std::vector<QStringList> before = definitions();
    atLoad(3, [&] { db->exec(QStringLiteral("DROP TABLE data")); });
    search->Run();
    EXPECT_TRUE(regression->Loaded()) << "what was read stays in memory";
    define(*regression, "a b c d");
    EXPECT_TRUE(regression->ReLoad());
    EXPECT_EQ(definitions(), before);
}

TEST_P(Hostile, AServerThatGoesAwayBetweenTwoLoadsEndsItWithAnError)
{
    PostgresServer server;
    {
        QSqlDatabase maker = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("maker"));
        const QUrl url(server.url());
        maker.setHostName(url.host());
        maker.setPort(url.port());
        maker.setUserName(url.userName());
        maker.setDatabaseName(url.path().mid(1));
        ASSERT_TRUE(maker.open());
        // More than is kept of a dataset, and the usable records come last, so that a load asks the server.
        ASSERT_TRUE(QSqlQuery(maker).exec(QStringLiteral(
            "CREATE TABLE data AS SELECT i AS id, i * 7 % 1009 AS y, "
            "CASE WHEN i > 40000 THEN i * 3 % 101 END AS a, CASE WHEN i > 40000 THEN i * i % 97 END AS b, "
            "CASE WHEN i > 40000 THEN i * 5 % 89 END AS c, CASE WHEN i > 40000 THEN i * 11 % 83 END AS d "
            "FROM generate_series(1, 40300) n(i)")));
        ASSERT_TRUE(QSqlQuery(maker).exec(QStringLiteral("ALTER TABLE data ADD PRIMARY KEY (id)")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("maker"));
    regression->SetDatabaseName(server.url());
    regression->SetTableName(text("data"));
    regression->Open();
    define(*regression, "a b c d");
    fit();
    ASSERT_EQ(regression->GetNumObs(), 300);
    const std::vector<QStringList> before = definitions();
    regression->SetShowWarnings(true);
    atLoad(4, [&] { server.kill(); });
    EXPECT_THROW(search->Run(), EDatabaseError);
    EXPECT_EQ(definitions(), before);
    EXPECT_FALSE(regression->Loaded()) << "it cannot be";
    EXPECT_FALSE(regression->Computed());
    EXPECT_TRUE(regression->ShowWarnings());
    EXPECT_FALSE(regression->ControlsDisabled());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    server.startAgain();
    fit();
    search->Run();
    EXPECT_TRUE(regression->Loaded());
    regression->Close();
}

TEST_P(Hostile, EscapeMayComeAtAnyCandidate)
{
    fillCement();
    const std::vector<QStringList> before = definitions();
    search->setProperty("ShowProgress", true);
    const int loads = loadsOfARun();
    int stopped = 0;
    for (int at = 1; at <= loads; ++at) {
        SCOPED_TRACE(at);
        int count = 0;
        const auto pressing = QObject::connect(regression.get(), &TMLRTable::LoadEnded, [&] {
            if (++count == at)
                escapeFromDialogs();
        });
        search->Run();
        QObject::disconnect(pressing);
        EXPECT_TRUE(regression->ResultsCurrent());
        EXPECT_FALSE(regression->ControlsDisabled());
        if (search->Ended() == TRunEnd::Stopped) {
            ++stopped;
            EXPECT_EQ(definitions(), before);
            EXPECT_EQ(search->Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\rStopped by the user."));
        }
        define(*regression, "a b c d");
        fit();
    }
    EXPECT_GT(stopped, 1);
}

namespace {

/// The searches that read a table of critical values.
class HostileTable : public Hostile
{
protected:
    HostileTable()
    {
        db->exec(QStringLiteral("PRAGMA synchronous = OFF"));
        db->exec(QStringLiteral("CREATE TABLE f (Numerator INTEGER, Denominator INTEGER, \"5 Percent\" REAL, "
                                "\"95 Percent\" REAL, PRIMARY KEY (Numerator, Denominator))"));
        for (int i = 1; i <= 12; ++i)
            db->exec(QStringLiteral("INSERT INTO f VALUES (1, ?, 4.5, 3.5)"), {i});
        table = std::make_unique<TTable>();
        ::bind(*table, *db, "f");
        fillCement();
        take(table.get());
    }

    void take(TTable *critical)
    {
        dynamic_cast<TPartialFSearch &>(*search).SetFDistTable(critical);
        search->setProperty("FPercent", text("5 Percent"));
    }

    std::unique_ptr<TTable> table;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Methods, HostileTable, testing::ValuesIn(methods + 1, methods + std::size(methods)),
                         methodName);

TEST_P(HostileTable, TheDataMayBeTheTableOfCriticalValues)
{
    take(regression.get());
    search->Run();
    EXPECT_TRUE(regression->Loaded());
    // A key that fits, and the column: each look-up moves the cursor of the data.
    db->exec(QStringLiteral("CREATE TABLE both (Numerator INTEGER, Denominator INTEGER, y REAL, \"5 Percent\" REAL, "
                            "\"95 Percent\" REAL, PRIMARY KEY (Numerator, Denominator))"));
    for (int i = 1; i <= 12; ++i)
        db->exec(QStringLiteral("INSERT INTO both VALUES (1, ?, ?, ?, ?)"), {i, i * 7 % 5, i * 3 % 7, i * i % 11});
    regression->SetTableName(text("both"));
    define(*regression, "Denominator");
    regression->SetControl(2, control("None", "5 Percent"));
    regression->SetControl(3, control("None", "95 Percent"));
    regression->SetControl(4, TIndepVar());
    regression->Open();
    fit();
    search->Run();
    EXPECT_TRUE(regression->Loaded());
    EXPECT_EQ(regression->GetNumObs(), 12);
}

TEST_P(HostileTable, WhoeverFollowsItsRecordsMayTakeAnythingAway)
{
    enum Gone { Table, Data, Itself, All };
    for (const Gone gone : {Table, Data, Itself, All}) {
        for (int at = 1; at <= 6; ++at) {
            SCOPED_TRACE(gone * 10 + at);
            table = std::make_unique<TTable>();
            ::bind(*table, *db, "f");
            regression = std::make_unique<TMLRTable>();
            ::bind(*regression, *db, "data");
            define(*regression, "a b c d");
            fit();
            search = GetParam().make();
            search->SetTable(regression.get());
            take(table.get());
            int count = 0;
            QObject::connect(table.get(), &TDataSet::Scrolled, [&] {
                if (++count != at)
                    return;
                if (gone == Data || gone == All)
                    regression.reset();
                if (gone == Itself || gone == All)
                    search.reset();
                if (gone == Table || gone == All)
                    table.release()->deleteLater(); // a signal of its own is under way
            });
            TCorvane &running = *search;
            running.Run();
            if (gone == Table && table == nullptr)
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        }
    }
}

TEST_P(HostileTable, ItMayBeClosedRenamedFilteredAndSortedMeanwhile)
{
    atFit(2, [&] { table->Close(); });
    atFit(4, [&] {
        table->SetTableName(text("data"));
        table->Open();
    });
    atFit(5, [&] {
        table->SetTableName(text("f"));
        table->SetFilter(text("no such column > 4"));
        table->SetFiltered(true);
        table->WishActive(true);
    });
    search->Run();
    EXPECT_TRUE(regression->Loaded());
}

TEST_P(HostileTable, ThresholdsMayBeAnyNumber)
{
    take(nullptr);
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double all = std::numeric_limits<double>::infinity();
    for (const double threshold : {0.0, -0.0, none, all, -all, 1e308, 5e-324}) {
        SCOPED_TRACE(threshold);
        for (const char *name : {"FDefault", "FInDefault", "FOutDefault"})
            search->setProperty(name, threshold);
        search->Run();
        define(*regression, "a b c d");
        fit();
    }
}
