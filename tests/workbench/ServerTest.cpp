// SPDX-License-Identifier: MIT
#include "workbench/Serverwindow.h"

#include "design/model/Modelfields.h"
#include "engine/Mlrtable.h"
#include "platform/Databasename.h"
#include "platform/Passwords.h"
#include "support/Databases.h"
#include "support/Odbcsource.h"
#include "support/Postgres.h"
#include "workbench/Ascode.h"
#include "workbench/Ascommand.h"
#include "workbench/Asform.h"
#include "workbench/Asking.h"
#include "workbench/Recordsmodel.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableView>

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
