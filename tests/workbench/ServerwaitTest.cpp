// SPDX-License-Identifier: MIT
#include "workbench/Serverwindow.h"

#include "design/model/Modeleditor.h"
#include "engine/Regression.h"
#include "support/Badserver.h"
#include "support/Databases.h"
#include "support/Postgres.h"
#include "workbench/Choicepage.h"
#include "workbench/Recordsmodel.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableView>

TEST_F(ServerWindow, ThatGoesAwayIsToldAndComesBack)
{
    PostgresServer server;
    const auto db = TestDatabase::makeOn(server.url());
    db->makeNumbers(u("many"), 20000, 3);
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    ASSERT_TRUE(opened(u("many"))) << message().toStdString();
    defineModel("x0", "x1");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    const nuvo::ModelState state = sitting().State();
    server.kill();
    // The first records are at hand: the model can be changed.
    window->Editor().AddFields({u("x2")});
    EXPECT_TRUE(fit().HasFit()) << message().toStdString();
    EXPECT_EQ(fit().Regression()->GetNumVars(), 2);
    // The grid says why it goes no further.
    page().GoTo(15000);
    page().View().model()->index(14999, 0).data();
    EXPECT_TRUE(wait([this] { return window->findChild<QLabel *>(u("RecordsError"))->isVisibleTo(&page()); }));
    action("Every Record").trigger();
    ASSERT_TRUE(wait([this] { return !fit().IsReading() && message().startsWith(u("Error: ")); }))
        << message().toStdString();
    EXPECT_TRUE(isAlive());
    action("Read Again").trigger();
    ASSERT_TRUE(wait([this] { return !window->Near().IsFetching() && message().startsWith(u("Error: ")); }));
    EXPECT_EQ(sitting().State().terms(), (QStringList{u("x1"), u("x2")})) << "nothing is lost";
    server.startAgain();
    action("Read Again").trigger();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 20000);
    EXPECT_EQ(cell(14999, 0), u("15000"));
}

TEST_F(ServerWindow, ThatNeverAnswersKeepsNobodyWaiting)
{
    const BadServer silent(PostgresServer::sharedUrl(), BadServer::FallSilent, 1);
    LoopGap gap;
    window->OpenDatabase(silent.url() + u("?connect_timeout=3"));
    EXPECT_TRUE(isAlive());
    ASSERT_TRUE(wait([this] { return message().startsWith(u("Error: ")); }, 20000)) << message().toStdString();
    EXPECT_FALSE(sitting().State().hasData());
    EXPECT_TRUE(isAlive());
    std::printf("Event loop: longest gap %lld ms\n", gap.largest());
    EXPECT_LT(gap.largest(), 1500) << "it is waited for 3 s";
}

TEST_F(ServerWindow, ThatFallsSilentIsGivenUpByStop)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("many"), 200000, 3);
    db->makeNumbers(u("other"), 10, 3); // one alone is opened at once
    // Behind the tables' names nothing more is answered.
    BadServer bad(db->name(), BadServer::FallSilent, 1000000);
    ASSERT_TRUE(listed(bad.url())) << message().toStdString();
    const nuvo::ModelState before = sitting().State();
    bad.behaveBadly();
    LoopGap gap;
    window->OpenTable(u("many"));
    QTest::qWait(1500);
    ASSERT_TRUE(window->Near().IsFetching()) << message().toStdString();
    EXPECT_TRUE(isAlive());
    click("Stop");
    EXPECT_FALSE(window->Near().IsFetching());
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(message().contains(u("stopped"))) << message().toStdString();
    QTest::qWait(500);
    std::printf("Event loop: longest gap %lld ms\n", gap.largest());
    EXPECT_LT(gap.largest(), 1000) << "it would be waited for without end";
    QElapsedTimer since;
    since.start();
    window.reset();
    EXPECT_LT(since.elapsed(), 3000) << "nor does it keep the window from closing";
}

TEST_F(ServerWindow, EndsAStatementThatTakesAMinuteOnTheServer)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("few"), 100, 2);
    ASSERT_TRUE(listed(db->name()));
    ASSERT_TRUE(opened(u("few")));
    const nuvo::ModelState before = sitting().State();
    answer = [](QDialog &dialog) {
        dialog.findChild<QPlainTextEdit *>()->insertPlainText(u("SELECT 1 AS x, pg_sleep(60) FROM few"));
        return int(QDialog::Accepted);
    };
    action("Query").trigger();
    const QString running = u("SELECT count(*) FROM pg_stat_activity WHERE state = 'active' AND query LIKE "
                              "'%pg_sleep(60)%' AND datname = current_database() AND pid <> pg_backend_pid()");
    LoopGap gap;
    ASSERT_TRUE(wait([&] {
        return db->value(u("SELECT count(*) FROM pg_stat_activity WHERE wait_event = 'PgSleep' "
                           "AND datname = current_database()"))
                   .toInt() == 1;
    }));
    EXPECT_TRUE(isAlive());
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(wait([&] { return db->value(running).toInt() == 0; }, 10000)) << "the server has been told";
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(wait([this] { return message().contains(u("stopped")); })) << message().toStdString();
    EXPECT_EQ(cell(99, 0), u("100"));
    std::printf("Event loop: longest gap %lld ms\n", gap.largest());
}

TEST_F(ServerWindow, HasTablesOfSeveralSchemasAndThousandsToFindOneAmong)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->exec(u("CREATE SCHEMA \"Other one\""));
    db->exec(
        u("CREATE TABLE \"Other one\".\"my data\" AS SELECT i AS x, 2.0 * i + i % 3 AS y FROM generate_series(1, "
          "40) i"));
    db->exec(u("DO $$ BEGIN FOR i IN 1..3000 LOOP EXECUTE format('CREATE TABLE t%s (x int)', i); END LOOP; END $$"));
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    EXPECT_EQ(tables().count(), 3001);
    auto *const find = window->findChild<QLineEdit *>(u("FindTable"));
    EXPECT_TRUE(find->isVisibleTo(window.get()));
    QTest::keyClicks(find, u("my d"));
    QStringList left;
    for (int row = 0; row < tables().count(); ++row) {
        if (!tables().item(row)->isHidden())
            left.append(tables().item(row)->text());
    }
    EXPECT_EQ(left, QStringList(u("Other one.my data")));
    Q_EMIT tables().itemClicked(tables().findItems(left.value(0), Qt::MatchExactly).value(0));
    ASSERT_TRUE(wait([&] { return sitting().State().table == left.value(0); })) << message().toStdString();
    defineModel("y", "x");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 40);
}

TEST_F(ServerWindow, OpensNoTableOnTheWindowsThreadForEveryRecord)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("few"), 100, 2);
    db->exec(u("CREATE VIEW late AS SELECT i AS x, 3 + 2 * i + i % 5 AS y FROM generate_series(1, 20000) i, "
               "(SELECT pg_sleep(0.4)) s"));
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    ASSERT_TRUE(opened(u("late"))) << message().toStdString();
    defineModel("y", "x");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 2500);
    LoopGap gap;
    action("Every Record").trigger();
    EXPECT_TRUE(fit().IsReading());
    ASSERT_TRUE(wait([this] { return fit().HasFit(); }, 60000)) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 20000);
    EXPECT_LT(gap.take(), 400) << "each statement sleeps that long";
    window->ShownPages().Choosing().Choose();
    EXPECT_FALSE(window->ShownPages().Choosing().CurrentTable().rows.isEmpty());
    EXPECT_LT(gap.take(), 400);
    // Ended in the middle, the state asks for every record still, and it can be done again.
    const nuvo::ModelState state = sitting().State();
    fit().FitAgain(); // what is there of a slow server is not brought again, all of it perhaps
    ASSERT_TRUE(wait([this] { return fit().IsReading(); }));
    click("Stop");
    ASSERT_TRUE(wait([this] { return !fit().IsReading(); }));
    EXPECT_TRUE(message().contains(u("stopped"))) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    EXPECT_TRUE(isAlive());
}

TEST_F(ServerWindow, LeavesOutRecordsOfTablesWithAndWithoutAKey)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("keyed"), 300, 2);
    db->exec(u("CREATE TABLE keyless AS SELECT CASE i WHEN 1 THEN 9 WHEN 2 THEN 8 ELSE 1 END AS a, i % 2 = 0 AS e, "
               "(i % 4)::numeric(6,2) / 4 AS b, CASE WHEN i <> 3 THEN 'it''s ' || i / 2 END AS t "
               "FROM generate_series(1, 8) i"));
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    const auto leaveOut = [&](const QString &table, const std::set<qint64> &records) {
        EXPECT_TRUE(opened(table)) << message().toStdString();
        EXPECT_TRUE(wait([this] { return page().Model().IsCounted(); }));
        page().SetSelected(records);
        action("Leave Selected Records Out").trigger();
        const QString filter = sitting().State().filter;
        EXPECT_EQ(db->value(u("SELECT count(*) FROM %1 WHERE %2").arg(table, filter)).toInt(),
                  db->value(u("SELECT count(*) FROM %1").arg(table)).toInt() - int(records.size()))
            << filter.toStdString();
        return filter;
    };
    EXPECT_EQ(leaveOut(u("keyed"), {2, 3, 4, 200}), u("\"id\" NOT IN (2, 3, 4, 200)"));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); })) << message().toStdString();
    EXPECT_EQ(cell(1, 0), u("5"));
    EXPECT_EQ(leaveOut(u("keyless"), {1, 2, 3, 8}),
              u("\"a\" NOT IN (9, 8) AND (\"t\" <> 'it''s 4' OR \"t\" IS NULL) AND "
                "(\"a\" <> 1 OR \"a\" IS NULL OR \"t\" IS NOT NULL OR \"b\" <> 0.75 OR \"b\" IS NULL)"));
}

TEST_F(ServerWindow, LeavesNothingOutWhereTheServerGoesAwayOrFallsSilent)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("few"), 100, 2);
    db->makeNumbers(u("other"), 10, 2);
    for (const auto behaviour : {BadServer::Close, BadServer::FallSilent}) {
        BadServer bad(db->name(), behaviour, 1000000);
        ASSERT_TRUE(listed(bad.url())) << message().toStdString();
        ASSERT_TRUE(opened(u("few"))) << message().toStdString();
        defineModel("x0", "x1");
        ASSERT_TRUE(wait([this] { return fit().HasFit() && page().Model().IsCounted(); })) << message().toStdString();
        page().SetSelected({7});
        const nuvo::ModelState before = sitting().State();
        bad.behaveBadly();
        QTimer escape;
        pressEscape(escape);
        LoopGap gap;
        QElapsedTimer since;
        since.start();
        action("Leave Selected Records Out").trigger();
        EXPECT_LT(since.elapsed(), 10000);
        EXPECT_LT(gap.largest(), 1000);
        EXPECT_TRUE(behaviour == BadServer::Close ? message().startsWith(u("Error: "))
                                                  : message() == u("The reading was stopped."))
            << message().toStdString();
        EXPECT_FALSE(message().contains(u("not the only one"))) << message().toStdString();
        EXPECT_EQ(sitting().State(), before);
        EXPECT_TRUE(fit().HasFit());
        EXPECT_TRUE(isAlive());
        sitting().Change({}, u("close"));
    }
}

TEST_F(ServerWindow, EndsTheLeavingOutOfRecordsOnTheServerByEscape)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("few"), 100, 2);
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    ASSERT_TRUE(opened(u("few"))) << message().toStdString();
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    page().SetSelected({7});
    const nuvo::ModelState before = sitting().State();
    db->exec(u("BEGIN"));
    db->exec(u("LOCK TABLE few IN ACCESS EXCLUSIVE MODE")); // nobody else reads it
    QTimer escape;
    pressEscape(escape);
    action("Leave Selected Records Out").trigger();
    EXPECT_EQ(message(), u("The reading was stopped."));
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(wait([&] {
        return db->value(u("SELECT count(*) FROM pg_locks WHERE NOT granted AND relation = 'few'::regclass"))
                   .toInt() == 0;
    })) << "the server has been told";
    db->exec(u("ROLLBACK"));
    action("Leave Selected Records Out").trigger();
    EXPECT_EQ(sitting().State().filter, u("\"id\" <> 7")) << message().toStdString();
}

TEST_F(ServerWindow, LivesWhileATableIsPredictedAndEndsThatByEscape)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("few"), 100, 2);
    db->exec(u("CREATE VIEW asleep AS SELECT x0, x1 FROM few, (SELECT pg_sleep(60)) s"));
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    ASSERT_TRUE(opened(u("few"))) << message().toStdString();
    defineModel("x0", "x1");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    const QString written = folder.filePath(u("out.csv"));
    QString table = u("few");
    answer = [&](QDialog &dialog) {
        if (auto *const choose = qobject_cast<QInputDialog *>(&dialog))
            choose->setTextValue(table);
        if (auto *const save = qobject_cast<QFileDialog *>(&dialog)) {
            save->setDirectory(folder.path());
            save->selectFile(written);
        }
        return int(QDialog::Accepted);
    };
    auto *const predict = window->findChild<QPushButton *>(u("PredictTable"));
    predict->click();
    EXPECT_TRUE(message().startsWith(u("Predictions for 100 records"))) << message().toStdString();
    ASSERT_TRUE(QFile::remove(written));
    table = u("asleep");
    QTimer escape;
    pressEscape(escape);
    LoopGap gap;
    QElapsedTimer since;
    since.start();
    predict->click();
    EXPECT_LT(since.elapsed(), 30000) << "it would be waited for a minute";
    EXPECT_LT(2 * gap.largest(), since.elapsed());
    EXPECT_EQ(message(), u("The predictions were stopped; no file was written."));
    EXPECT_FALSE(QFile::exists(written));
    EXPECT_TRUE(wait([&] {
        return db->value(u("SELECT count(*) FROM pg_stat_activity WHERE wait_event = 'PgSleep' "
                           "AND datname = current_database()"))
                   .toInt() == 0;
    })) << "the server has been told";
}
