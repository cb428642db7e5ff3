// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "design/model/Modeleditor.h"
#include "design/model/Modelfields.h"
#include "engine/Mlrtable.h"
#include "platform/Databasename.h"
#include "platform/Passwords.h"
#include "support/Badserver.h"
#include "support/Databases.h"
#include "support/Odbcsource.h"
#include "support/Postgres.h"
#include "workbench/Ascode.h"
#include "workbench/Ascommand.h"
#include "workbench/Asform.h"
#include "workbench/Asking.h"
#include "workbench/Pages.h"
#include "workbench/Recordsmodel.h"
#include "workbench/Recordspage.h"

#include <QAction>
#include <QComboBox>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSqlDatabase>
#include <QTableView>
#include <QTest>

class ServerWindow : public HostileWindow
{
protected:
    QListWidget &tables() const { return *window->findChild<QListWidget *>(u("Tables")); }
    nuvo::RecordsPage &page() const { return window->ShownPages().Records(); }
    bool opened(const QString &table)
    {
        window->OpenTable(table);
        return wait([&] { return sitting().State().table == table && !window->Near().IsFetching(); });
    }
    bool listed(const QString &name)
    {
        window->OpenDatabase(name);
        return wait([&] { return sitting().State().database == name && tables().count() > 0; });
    }
    void click(const char *button) const
    {
        QTest::mouseClick(window->findChild<QPushButton *>(u(button)), Qt::LeftButton);
    }
    /// Whether a text stands in any file of the folder.
    bool isStored(const QString &text) const
    {
        QDirIterator files(folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly) && file.readAll().contains(text.toUtf8()))
                return true;
        }
        return false;
    }
};

TEST_F(ServerWindow, IsOpenedThroughADialogThatTriesItFirst)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("many"), 6000, 3);
    db->makeNumbers(u("other"), 10, 2);
    const nuvo::ServerAddress address = nuvo::serverAddress(db->name());
    answer = [&](QDialog &dialog) {
        const auto type = [&](const char *box, const QString &text) {
            dialog.findChild<QLineEdit *>(u(box))->setText(text);
        };
        EXPECT_EQ(dialog.findChild<QComboBox *>(u("kind"))->currentIndex(), 1) << "a server is offered first";
        type("host", address.host);
        type("port", address.port);
        type("database", address.name);
        type("user", address.user);
        dialog.show();
        QTest::mouseClick(dialog.findChild<QPushButton *>(u("try")), Qt::LeftButton);
        auto *const status = dialog.findChild<QLabel *>(u("status"));
        EXPECT_TRUE(wait([&] { return status->text().startsWith(u("It opens")); })) << status->text().toStdString();
        return int(QDialog::Accepted);
    };
    action("Open Server").trigger();
    ASSERT_TRUE(wait([&] { return tables().count() == 2; })) << message().toStdString();
    ASSERT_TRUE(opened(u("many"))) << message().toStdString();
    EXPECT_EQ(window->Editor().Fields().numericNames(), (QStringList{u("id"), u("x0"), u("x1"), u("x2")}));
    defineModel("x0", "x1");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 2500);
    EXPECT_TRUE(message().contains(u("Every Record"))) << message().toStdString();
    // To the bit what the component itself makes of the table.
    TMLRTable direct;
    nuvo::apply(sitting().State(), direct);
    direct.Open();
    ASSERT_TRUE(direct.ReLoad());
    direct.Execute();
    EXPECT_EQ(fit().Regression()->Getb(1), direct.Getb(1));
    EXPECT_EQ(fit().Regression()->GetSyx(), direct.GetSyx());
    action("Every Record").trigger();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 6000);
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    EXPECT_EQ(page().View().model()->rowCount(), 6000);
    EXPECT_EQ(cell(5999, 0), u("6000"));
    EXPECT_EQ(cell(3000, 0), u("3001"));
    page().Model().SortBy(0, Qt::DescendingOrder);
    ASSERT_TRUE(wait([this] { return cell(0, 0) == u("6000"); }));
    EXPECT_EQ(cell(5999, 0), u("1"));
}

TEST_F(ServerWindow, GivesTheFieldsAndRecordsOfEveryKindAsTheyAre)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->exec(u("CREATE TABLE kinds (n numeric(12,4), m money, b boolean, d date, t text, i smallint, f double "
               "precision, s timestamp, big bigint, bits bit(3), j json)"));
    for (int i = 1; i <= 12; ++i)
        db->exec(
            u("INSERT INTO kinds VALUES (%1.1, '$1,%2.50', %3, DATE '2020-01-01' + %1, 'a %1', %1, %4 / 7.0, now(), "
              "9007199254740993, '101', '{}')")
                .arg(i)
                .arg(100 + i * i)
                .arg(i % 2 == 0 ? u("true") : u("false"))
                .arg(i * i));
    db->exec(u("INSERT INTO kinds (f) VALUES ('NaN'), (NULL)"));
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    ASSERT_TRUE(opened(u("kinds"))) << message().toStdString();
    TMLRTable direct;
    nuvo::apply(sitting().State(), direct);
    const nuvo::ModelFields there = nuvo::modelFields(direct);
    const nuvo::ModelFields here = window->Editor().Fields();
    ASSERT_EQ(here.fields.size(), there.fields.size());
    for (size_t i = 0; i < there.fields.size(); ++i) {
        EXPECT_EQ(here.fields[i].name, there.fields[i].name);
        EXPECT_EQ(here.fields[i].kind, there.fields[i].kind) << there.fields[i].name.toStdString();
    }
    window->Editor().MakeResponse(u("n"));
    window->Editor().AddFields({u("f"), u("m")});
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    nuvo::apply(sitting().State(), direct);
    direct.Open();
    ASSERT_TRUE(direct.ReLoad());
    direct.Execute();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), direct.RecordsUsed());
    EXPECT_EQ(fit().Regression()->Getb(1), direct.Getb(1));
    EXPECT_EQ(fit().Regression()->Getb(2), direct.Getb(2));
}

TEST_F(ServerWindow, GoesOnReadingWhereTheFirstRecordsCannotBeUsed)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->exec(u("CREATE TABLE late AS SELECT i AS id, CASE WHEN i > 15000 THEN i END AS x, 2 * i + i % 3 AS y FROM "
               "generate_series(1, 30000) i"));
    db->exec(u("ALTER TABLE late ADD PRIMARY KEY (id)"));
    ASSERT_TRUE(listed(db->name()));
    ASSERT_TRUE(opened(u("late"))) << message().toStdString();
    defineModel("y", "x");
    ASSERT_TRUE(wait([this] { return fit().HasFit() && !window->Near().IsFetching(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 2500);
    TMLRTable direct;
    nuvo::apply(sitting().State(), direct);
    direct.Open();
    ASSERT_TRUE(direct.ReLoad());
    direct.Execute();
    EXPECT_EQ(fit().Regression()->Getb(1), direct.Getb(1));
    EXPECT_EQ(fit().Regression()->Getb(0), direct.Getb(0));
}

TEST_F(ServerWindow, IsAskedForItsPasswordWhichIsStoredNowhere)
{
    const PostgresServer server(PostgresServer::AsksForAPassword);
    const QString password = PostgresServer::password();
    qputenv("PGPASSFILE", "/dev/null");
    int wrong = 1;
    QStringList shown;
    answer = [&](QDialog &dialog) {
        auto *const edit = dialog.findChild<QLineEdit *>(u("Password"));
        if (edit == nullptr)
            return int(QDialog::Accepted);
        EXPECT_EQ(edit->echoMode(), QLineEdit::Password);
        for (const QLabel *const label : dialog.findChildren<QLabel *>())
            shown.append(label->text());
        edit->setText(wrong-- > 0 ? u("not it") : password);
        return int(QDialog::Accepted);
    };
    const QString name = server.url();
    window->OpenDatabase(name);
    ASSERT_TRUE(wait([&] { return sitting().State().database == name; })) << message().toStdString();
    EXPECT_EQ(asked.count(u("PasswordDialog")), 2) << "again after a wrong one";
    EXPECT_FALSE(shown.join(u' ').contains(u("not it")));
    answer = [&](QDialog &dialog) {
        dialog.findChild<QPlainTextEdit *>()->insertPlainText(
            u("SELECT i AS x, 3 + 2 * i + i % 3 AS y FROM generate_series(1, 50) i"));
        return int(QDialog::Accepted);
    };
    action("Query").trigger();
    ASSERT_TRUE(wait([this] { return sitting().State().isQuery(); })) << message().toStdString();
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit()) << message().toStdString();
    EXPECT_EQ(asked.count(u("PasswordDialog")), 2) << "it is known now";
    const nuvo::ModelState state = sitting().State();
    window.reset();
    EXPECT_FALSE(isStored(password)) << "in sitting, settings or copies";
    // Another run does not know it.
    nuvo::setPassword(name, {});
    wrong = 0;
    answer = [&](QDialog &dialog) {
        dialog.findChild<QLineEdit *>(u("Password"))->setText(password);
        return int(QDialog::Accepted);
    };
    asked.clear();
    begin();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(asked.count(u("PasswordDialog")), 1) << "once, for records and tables";
    EXPECT_EQ(sitting().State(), state);
    window.reset();
    EXPECT_FALSE(isStored(password));
    // Somebody who does not know it finds the model as it was.
    nuvo::setPassword(name, {});
    answer = [](QDialog &) { return int(QDialog::Rejected); };
    begin();
    ASSERT_TRUE(wait([this] { return message().startsWith(u("Error: ")); })) << message().toStdString();
    EXPECT_TRUE(message().contains(u("password"))) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    EXPECT_TRUE(isAlive());
}

TEST_F(ServerWindow, KeepsThePasswordOfAnOdbcConnectionInMemoryAlone)
{
    if (!OdbcSource::isInstalled())
        GTEST_SKIP() << "odbc-postgresql or libqt6sql6-odbc is not installed";
    const PostgresServer server(PostgresServer::AsksForAPassword);
    const QString password = PostgresServer::password();
    qputenv("PGPASSWORD", password.toUtf8());
    const auto db = TestDatabase::makeOn(server.url());
    db->makeNumbers(u("many"), 300, 3);
    qunsetenv("PGPASSWORD");
    qputenv("PGPASSFILE", "/dev/null");
    const nuvo::ServerAddress address = nuvo::serverAddress(db->name());
    const QString name = u("odbc:Driver=%1;Server=%2;Port=%3;Database=%4;Uid=%5")
                             .arg(OdbcSource::driver(), address.host, address.port, address.name, address.user);
    answer = [&](QDialog &dialog) {
        if (auto *const edit = dialog.findChild<QLineEdit *>(u("Password")))
            edit->setText(password);
        return int(QDialog::Accepted);
    };
    for (const bool given : {true, false}) {
        asked.clear();
        nuvo::setPassword(name, {});
        window->OpenDatabase(given ? name + u(";PWD={") + password + u("}") : name);
        ASSERT_TRUE(wait([&] { return sitting().State().database == name && tables().count() > 0; }))
            << message().toStdString();
        EXPECT_EQ(asked.count(u("PasswordDialog")), given ? 0 : 1);
        EXPECT_EQ(nuvo::passwordOf(name), password);
        window->OpenTable(u("many"));
        ASSERT_TRUE(wait([&] { return sitting().State().table == u("many"); })) << message().toStdString();
        defineModel("x0", "x1");
        ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
        EXPECT_EQ(fit().Regression()->RecordsUsed(), 300);
        EXPECT_FALSE(nuvo::fitCommand(sitting().State()).contains(password));
        EXPECT_FALSE(nuvo::formFile(sitting().State(), folder.path()).contains(password.toUtf8()));
        EXPECT_FALSE(nuvo::fitProgram(sitting().State()).contains(password));
        sitting().Change({}, u("close"));
    }
    window.reset();
    EXPECT_FALSE(isStored(password)) << "in sitting, settings or copies";
    nuvo::setPassword(name, {});
}

TEST_F(ServerWindow, TakesThePasswordOutOfEveryFormOfAConnectionString)
{
    for (const auto &[given, password] : std::initializer_list<std::pair<const char *, const char *>>{
             {"odbc:sales;PWD=a b", "a b"},
             {"odbc:sales;pwd = x=y;", "x=y"},
             {"odbc:Password={a;b}}c};sales", "a;b}c"},
         }) {
        EXPECT_EQ(nuvo::keepOdbcPassword(u(given)), u("odbc:sales")) << given;
        EXPECT_EQ(nuvo::passwordOf(u("odbc:sales")), u(password)) << given;
    }
    for (const char *const plain : {"odbc:sales", "odbc:Driver={a;b};Server=c", "/home/me/odbc;PWD=x.db"})
        EXPECT_EQ(nuvo::keepOdbcPassword(u(plain)), u(plain));
    nuvo::setPassword(u("odbc:sales"), {});
}

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
               "(SELECT pg_sleep(0.6)) s"));
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
    EXPECT_LT(gap.largest(), 600) << "each statement sleeps that long";
    // Ended in the middle, the state asks for every record still, and it can be done again.
    const nuvo::ModelState state = sitting().State();
    action("Read Again").trigger();
    ASSERT_TRUE(wait([this] { return fit().IsReading(); }));
    QTest::qWait(50); // the button that has the key is shown
    QTest::keyClick(window.get(), Qt::Key_Escape);
    ASSERT_TRUE(wait([this] { return !fit().IsReading(); }));
    EXPECT_TRUE(message().contains(u("stopped"))) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    EXPECT_TRUE(isAlive());
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
    escape.callOnTimeout([&] {
        if (auto *const progress = window->findChild<QProgressDialog *>(); progress && progress->isVisible()) {
            escape.stop();
            QTest::keyClick(progress, Qt::Key_Escape);
        }
    });
    escape.start(10);
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
