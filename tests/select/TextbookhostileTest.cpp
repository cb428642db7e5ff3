// SPDX-License-Identifier: MIT
#include "select/Choices.h"
#include "select/Methods.h"

#include <QTest>
#include <QTimer>

#include <limits>

// What a program or a person can do to a run under the rule Textbook while it is at work. It may end with an
// EDatabaseError or early, but never in a crash, a hang or a component left half switched.

namespace {

class TextbookHostile : public testing::TestWithParam<Method>
{
protected:
    TextbookHostile()
    {
        makeTable(*db, "data", "y a b c d", cement());
        begin();
    }
    /// New components over the same table, fitted.
    void begin()
    {
        regression = std::make_unique<TMLRTable>();
        ::bind(*regression, *db, "data");
        define(*regression, "a b c d");
        regression->ReLoad();
        regression->Execute();
        search = GetParam().make();
        search->SetRule(TCorvane::Textbook);
        search->SetTable(regression.get());
        messages.shown.clear();
    }
    QStringList transformations() const
    {
        QStringList list;
        for (int k = 1; k <= MaxControls; ++k)
            list.append(regression->ControlVar(k).Transformation());
        return list;
    }
    void expectAtRest() const
    {
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        if (regression) {
            EXPECT_FALSE(regression->ControlsDisabled());
            EXPECT_NO_THROW(regression->ReLoad());
        }
        if (search) {
            EXPECT_FALSE(search->Running());
        }
    }

    /// Ends each of the two components at the load and at the fit of what is done.
    void takeAway(const std::function<void()> &before, const std::function<void(TCorvane &)> &act)
    {
        for (const bool itself : {false, true}) {
            for (const bool atLoadEnd : {false, true}) {
                begin();
                before();
                const auto go = [&] {
                    if (itself)
                        search.reset();
                    else
                        regression.reset();
                };
                if (atLoadEnd)
                    QObject::connect(regression.get(), &TMLRTable::LoadEnded, go);
                else
                    QObject::connect(regression.get(), &TMLRTable::Fitted, go);
                act(*search);
                EXPECT_TRUE(itself ? search == nullptr : regression == nullptr);
                expectAtRest();
            }
        }
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    std::unique_ptr<TMLRTable> regression;
    std::unique_ptr<TCorvane> search;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Methods, TextbookHostile, testing::ValuesIn(methods), methodName);

TEST_P(TextbookHostile, EitherComponentMayGoAtTheLoadOrAtTheFit)
{
    takeAway([] {}, [](TCorvane &running) { running.Run(); });
}

TEST_P(TextbookHostile, EitherComponentMayGoWhileAListedModelIsSelected)
{
    takeAway([this] { search->Run(); }, [](TCorvane &running) { running.SelectModel(1); });
}

TEST_P(TextbookHostile, SlotsThatRewriteDefinitionsAndMoveTheCursorDoNoHarm)
{
    QObject::connect(regression.get(), &TMLRTable::LoadEnded, [&] {
        regression->Last();
        regression->ControlVar(1).SetTransformation(text("Undefined"));
        regression->ControlVar(7).SetTransformation(text("None"));
        regression->ControlVar(3).SetField1(text("gone"));
    });
    search->Run();
    EXPECT_EQ(regression->ControlVar(7).Transformation(), text("Undefined"));
    EXPECT_EQ(regression->GetNumVars(), 10 - int(transformations().count(text("Undefined"))));
    EXPECT_TRUE(regression->ResultsCurrent());
    EXPECT_FALSE(regression->ControlsDisabled());
}

TEST_P(TextbookHostile, WhoeverIsToldOfTheFitCannotRunOrChangeAnything)
{
    int refused = 0;
    QObject::connect(regression.get(), &TMLRTable::Fitted, [&] {
        const std::initializer_list<std::function<void()>> calls = {
            [&] { search->Run(); }, [&] { search->SelectModel(1); }, [&] { search->SetRule(TCorvane::Written); },
            [&] { regression->ReLoad(); }, [&] { regression->Close(); }};
        for (const auto &call : calls) {
            try {
                call();
            } catch (const EDatabaseError &) {
                ++refused;
            }
        }
    });
    search->Run();
    EXPECT_EQ(refused, 5);
    EXPECT_TRUE(regression->ResultsCurrent());
    EXPECT_NE(search->Choice(), nullptr);
}

TEST_P(TextbookHostile, AMessageBoxMayTakeTheComponentsAway)
{
    search->setProperty("ShowReport", true);
    messages.meanwhile = [&] {
        search.reset();
        regression.reset();
    };
    TCorvane &running = *search;
    running.Run();
    EXPECT_EQ(search, nullptr);
    EXPECT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_P(TextbookHostile, TheTableMayGoAwayBeforeAnotherModelIsSelected)
{
    search->Run();
    const QStringList before = transformations();
    db->exec(QStringLiteral("DROP TABLE data"));
    regression->Close();
    EXPECT_THROW(search->SelectModel(1), EDatabaseError);
    EXPECT_EQ(transformations(), before);
    EXPECT_FALSE(regression->ControlsDisabled());
}

TEST_P(TextbookHostile, EscapeBeforeTheFirstStepOfTheShownDialogLeavesTheDefinitions)
{
    regression->Close(); // its records have to be read, which can take long
    search->setProperty("ShowProgress", true);
    const QStringList before = transformations();
    bool escaped = false;
    QObject::connect(regression.get(), &TMLRTable::LoadEnded, [&] { escaped = escapeFromDialogs() || escaped; });
    regression->Open();
    search->Run();
    EXPECT_TRUE(escaped);
    EXPECT_EQ(search->Ended(), TRunEnd::Stopped);
    EXPECT_EQ(transformations(), before);
    EXPECT_TRUE(regression->ResultsCurrent());
    EXPECT_EQ(search->Choice(), nullptr);
}

TEST_P(TextbookHostile, ARunThatTakesLongShowsItsDialogAndEndsByEscape)
{
    search->setProperty("ShowProgress", true);
    const QStringList before = transformations();
    bool early = false;
    bool escaped = false;
    QTimer person;
    QObject::connect(&person, &QTimer::timeout, [&] { escaped = escapeFromDialogs() || escaped; });
    QObject::connect(regression.get(), &TMLRTable::LoadEnded, [&] {
        early = escapeFromDialogs();
        QTest::qSleep(250);
        person.start(0);
    });
    search->Run();
    EXPECT_FALSE(early) << "the records are in memory, which mostly takes no time";
    EXPECT_TRUE(escaped);
    EXPECT_EQ(search->Ended(), TRunEnd::Stopped);
    EXPECT_EQ(transformations(), before);
    EXPECT_TRUE(regression->ResultsCurrent());
    EXPECT_EQ(search->Choice(), nullptr);
}

TEST_P(TextbookHostile, AShortRunShowsNoDialog)
{
    search->setProperty("ShowProgress", true);
    QObject::connect(regression.get(), &TMLRTable::Fitted, [&] { EXPECT_FALSE(escapeFromDialogs()); });
    search->Run();
    EXPECT_EQ(search->Ended(), TRunEnd::Converged);
    EXPECT_FALSE(search->Steps().isEmpty());
}

TEST_P(TextbookHostile, ThresholdsAndCountsMayBeAnyNumber)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double all = std::numeric_limits<double>::infinity();
    for (const double threshold : {0.0, -0.0, none, all, -all, 1e308, 5e-324}) {
        SCOPED_TRACE(threshold);
        for (const char *name : {"FDefault", "FInDefault", "FOutDefault"})
            search->setProperty(name, threshold);
        search->setProperty("ModelsPerSize", threshold > 0 ? 2147483647 : -2147483647);
        search->Run();
        EXPECT_TRUE(regression->ResultsCurrent());
        EXPECT_FALSE(search->Report().isEmpty());
        define(*regression, "a b c d");
    }
    for (const double p : {5e-324, 1e-300, 0.999999999999}) {
        SCOPED_TRACE(p);
        search->setProperty("P", p);
        search->setProperty("PIn", p);
        search->setProperty("POut", p);
        search->Run();
        EXPECT_TRUE(regression->ResultsCurrent());
        define(*regression, "a b c d");
    }
}

TEST_P(TextbookHostile, HugeTinyAndInfiniteValuesEnd)
{
    makeTable(*db, "wild", "y a b c d", wildRows());
    regression->SetTableName(text("wild"));
    regression->Open();
    search->Run();
    EXPECT_FALSE(search->Report().isEmpty());
    regression->SetControl(1, control("Inverse", "a"));
    regression->SetControl(2, power("b", "7"));
    regression->SetControl(3, control("Quotient", "d", "a"));
    search->Run();
    EXPECT_FALSE(search->Report().isEmpty());
}

TEST(TextbookHostileTable, WhoeverFollowsItsRecordsMayTakeAnythingAway)
{
    const auto db = TestDatabase::make(TestDatabase::Sqlite);
    const Messages messages;
    makeTable(*db, "data", "y a b c d", cement());
    db->exec(
        text("CREATE TABLE f (n INTEGER, d INTEGER, \"5 Percent\" REAL, \"95 Percent\" REAL, PRIMARY KEY (n, d))"));
    for (int d = 1; d <= 12; ++d)
        db->exec(text("INSERT INTO f VALUES (1, ?, 4.5, 3.5)"), {d});
    enum Gone { Table, Data, Itself, All };
    for (const Gone gone : {Table, Data, Itself, All}) {
        for (int at = 1; at <= 6; ++at) {
            SCOPED_TRACE(gone * 10 + at);
            auto table = std::make_unique<TTable>();
            bind(*table, *db, "f");
            auto regression = std::make_unique<TMLRTable>();
            bind(*regression, *db, "data");
            define(*regression, "a b c d");
            auto search = std::make_unique<TStepWiseMLR>();
            search->SetTable(regression.get());
            search->SetFDistTable(table.get());
            search->SetRule(TCorvane::Textbook);
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
            if (table == nullptr)
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
            EXPECT_GE(count, 1);
        }
    }
}
