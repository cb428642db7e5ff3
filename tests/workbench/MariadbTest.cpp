// SPDX-License-Identifier: MIT
#include "workbench/Serverwindow.h"

#include "engine/Mlrtable.h"
#include "platform/Databasename.h"
#include "support/Databases.h"
#include "support/Mariadb.h"
#include "workbench/Recordsmodel.h"

#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QTableView>

/// In front of a server of MariaDB.
class MariadbWindow : public ServerWindow
{
protected:
    void SetUp() override
    {
        if (!MariadbServer::isInstalled())
            GTEST_SKIP() << "MariaDB (mariadb-server-core) or Qt's driver for it (libqt6sql6-mysql) is not installed";
        ServerWindow::SetUp();
        db = TestDatabase::make(TestDatabase::Mariadb);
        written = folder.filePath(u("out.csv"));
    }
    /// Whether a statement of somebody else's sleeps on the server.
    bool isSomebodyAsleep() const
    {
        return db->value(u("SELECT COUNT(*) FROM information_schema.processlist WHERE state = 'User sleep'"))
                   .toInt() > 0;
    }
    void ask(const QString &sql)
    {
        answer = [sql](QDialog &dialog) {
            dialog.findChild<QPlainTextEdit *>()->insertPlainText(sql);
            return int(QDialog::Accepted);
        };
        action("Query").trigger();
    }
    /// Answers for the dialogs of a prediction.
    void predict(const QString &table)
    {
        answer = [this, table](QDialog &dialog) {
            if (auto *const choose = qobject_cast<QInputDialog *>(&dialog))
                choose->setTextValue(table);
            if (auto *const save = qobject_cast<QFileDialog *>(&dialog)) {
                save->setDirectory(folder.path());
                save->selectFile(written);
            }
            return int(QDialog::Accepted);
        };
        window->findChild<QPushButton *>(u("PredictTable"))->click();
    }

    std::unique_ptr<TestDatabase> db;
    QString written;
};

TEST_F(MariadbWindow, IsOpenedThroughADialogThatTriesItFirst)
{
    db->makeNumbers(u("many"), 6000, 3);
    db->exec(u("CREATE VIEW seen AS SELECT x0 AS y, x1 AS x FROM many"));
    const QString account = QString(u("u%1")).arg(QCoreApplication::applicationPid());
    db->exec(u("CREATE USER %1@'127.0.0.1' IDENTIFIED BY 's3cret'").arg(account));
    db->exec(
        u("GRANT SELECT, SHOW VIEW ON `%1`.* TO %2@'127.0.0.1'").arg(nuvo::serverAddress(db->name()).name, account));
    const nuvo::ServerAddress address = nuvo::serverAddress(db->name());
    answer = [&](QDialog &dialog) {
        const auto type = [&](const char *box, const QString &text) {
            dialog.findChild<QLineEdit *>(u(box))->setText(text);
        };
        dialog.findChild<QComboBox *>(u("kind"))->setCurrentText(u("MySQL, MariaDB"));
        type("host", address.host);
        type("port", address.port);
        type("database", address.name);
        type("user", account);
        dialog.show();
        auto *const status = dialog.findChild<QLabel *>(u("status"));
        auto *const tryIt = dialog.findChild<QPushButton *>(u("try"));
        type("password", u("not it"));
        QTest::mouseClick(tryIt, Qt::LeftButton);
        EXPECT_TRUE(wait([&] { return status->text().contains(u("denied")); })) << status->text().toStdString();
        EXPECT_FALSE(status->text().contains(u("not it"))) << status->text().toStdString();
        type("password", u("s3cret"));
        QTest::mouseClick(tryIt, Qt::LeftButton);
        EXPECT_TRUE(wait([&] { return status->text().startsWith(u("It opens")); })) << status->text().toStdString();
        return int(QDialog::Accepted);
    };
    action("Open Server").trigger();
    ASSERT_TRUE(wait([&] { return tables().count() == 2; })) << message().toStdString();
    EXPECT_EQ(tables().item(0)->text() + u' ' + tables().item(1)->text(), u("many seen"));
    answer = {};
    ASSERT_TRUE(opened(u("seen"))) << message().toStdString();
    defineModel("y", "x");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    ASSERT_TRUE(opened(u("many"))) << message().toStdString();
    defineModel("x0", "x1");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 2500);
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
    EXPECT_FALSE(isStored(u("s3cret")));
    db->exec(u("DROP USER %1@'127.0.0.1'").arg(account));
}

TEST_F(MariadbWindow, HasAGridThatGoesToItsEndAndIsSorted)
{
    db->makeNumbers(u("many"), 12000, 3);                                       // more than are copied
    db->exec(u("CREATE TABLE plain AS SELECT id % 7 AS a, id AS b FROM many")); // without a key
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    for (const bool hasKey : {true, false}) {
        ASSERT_TRUE(opened(hasKey ? u("many") : u("plain"))) << message().toStdString();
        ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
        EXPECT_EQ(page().View().model()->rowCount(), 12000);
        const int id = hasKey ? 0 : 1;
        page().GoTo(12000);
        EXPECT_EQ(cell(11999, id), u("12000"));
        EXPECT_EQ(cell(6000, id), u("6001"));
        // By a column of which many records have the same: each of them is there once.
        const int by = hasKey ? 2 : 0;
        page().Model().SortBy(by, hasKey ? Qt::AscendingOrder : Qt::DescendingOrder);
        std::set<QString> ids;
        double before = cell(0, by).toDouble();
        for (int row = 0; row < 12000; ++row) {
            ids.insert(cell(row, id));
            const double now = cell(row, by).toDouble();
            EXPECT_TRUE(hasKey ? now >= before : now <= before) << row;
            before = now;
        }
        EXPECT_EQ(ids.size(), 12000U);
        page().Model().SortBy(-1, Qt::AscendingOrder);
        EXPECT_EQ(cell(0, id), u("1"));
    }
}

TEST_F(MariadbWindow, LeavesOutRecordsAndPredictsATable)
{
    db->makeNumbers(u("many"), 300, 3);
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    ASSERT_TRUE(opened(u("many"))) << message().toStdString();
    defineModel("x0", "x1");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    window->ShownPages().Records().SetSelected({3, 7});
    action("Leave Selected").trigger();
    ASSERT_TRUE(wait([this] { return fit().HasFit() && fit().Regression()->RecordsUsed() == 298; }))
        << message().toStdString() << sitting().State().filter.toStdString();
    action("Undo").trigger();
    ASSERT_TRUE(wait([this] { return fit().HasFit() && fit().Regression()->RecordsUsed() == 300; }))
        << message().toStdString();
    predict(u("many"));
    EXPECT_TRUE(message().startsWith(u("Predictions for 300 records"))) << message().toStdString();
    QFile file(written);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count('\n'), 301);
}

TEST_F(MariadbWindow, EndsOnTheServerWhatTakesAMinute)
{
    db->makeNumbers(u("few"), 100, 2);
    db->exec(u("CREATE VIEW asleep AS SELECT x0, x1 + SLEEP(60) AS x1 FROM few"));
    ASSERT_TRUE(listed(db->name())) << message().toStdString();
    ASSERT_TRUE(opened(u("few"))) << message().toStdString();
    defineModel("x0", "x1");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    const nuvo::ModelState before = sitting().State();
    // A statement,
    ask(u("SELECT x0, SLEEP(60) AS x FROM few"));
    ASSERT_TRUE(wait([this] { return isSomebodyAsleep(); }));
    EXPECT_TRUE(isAlive());
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(wait([this] { return !isSomebodyAsleep(); })) << "the server has been told";
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(message().contains(u("stopped"))) << message().toStdString();
    // a view,
    window->OpenTable(u("asleep"));
    ASSERT_TRUE(wait([this] { return isSomebodyAsleep(); }));
    click("Stop");
    EXPECT_TRUE(wait([this] { return !isSomebodyAsleep(); })) << "the server has been told";
    EXPECT_EQ(sitting().State(), before);
    // a prediction,
    QTimer escape;
    escape.callOnTimeout([&] {
        auto *const progress = window->findChild<QProgressDialog *>();
        if (progress != nullptr && progress->isVisible() && isSomebodyAsleep()) {
            escape.stop();
            QTest::keyClick(progress, Qt::Key_Escape);
        }
    });
    escape.start(10);
    predict(u("asleep"));
    EXPECT_EQ(message(), u("The predictions were stopped; no file was written."));
    EXPECT_FALSE(QFile::exists(written));
    EXPECT_TRUE(wait([this] { return !isSomebodyAsleep(); })) << "the server has been told";
    // and what is under way when the window is closed.
    ask(u("SELECT x0, SLEEP(60) AS x FROM few"));
    ASSERT_TRUE(wait([this] { return isSomebodyAsleep(); }));
    window.reset();
    EXPECT_TRUE(wait([this] { return !isSomebodyAsleep(); })) << "the server has been told";
}

TEST_F(MariadbWindow, ThatGoesAwayIsToldAndComesBack)
{
    MariadbServer server;
    const auto own = TestDatabase::makeOnMariadb(server.url());
    own->exec(u("SET GLOBAL innodb_flush_log_at_trx_commit = 1")); // or it forgets them
    own->makeNumbers(u("many"), 50000, 3);
    const auto sent = [&] {
        return own
            ->value(u("SELECT variable_value FROM information_schema.global_status WHERE variable_name = "
                      "'BYTES_SENT'"))
            .toLongLong();
    };
    const qint64 before = sent();
    ASSERT_TRUE(listed(own->name())) << message().toStdString();
    ASSERT_TRUE(opened(u("many"))) << message().toStdString();
    defineModel("x0", "x1");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_LT(sent() - before, 800000) << "of a table of 1.4 MB, its first records";
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    server.kill();
    window->Editor().AddFields({u("x2")});
    EXPECT_TRUE(fit().HasFit()) << "the first records are at hand: " << message().toStdString();
    page().GoTo(15000);
    page().View().model()->index(14999, 0).data();
    auto *const why = window->findChild<QLabel *>(u("RecordsError"));
    EXPECT_TRUE(wait([&] { return why->isVisibleTo(&page()); }));
    action("Every Record").trigger();
    ASSERT_TRUE(wait([this] { return !fit().IsReading() && message().startsWith(u("Error: ")); }))
        << message().toStdString();
    EXPECT_TRUE(isAlive());
    EXPECT_EQ(sitting().State().terms(), (QStringList{u("x1"), u("x2")})) << "nothing is lost";
    EXPECT_EQ(why->text(), u("Cannot read table \"many\": Lost connection to server during query."));
    server.startAgain();
    action("Read Again").trigger();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 50000);
    EXPECT_EQ(cell(14999, 0), u("15000"));
}
