// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "design/model/Modeleditor.h"
#include "design/sql/Sqldialog.h"
#include "design/sql/Sqleditor.h"
#include "engine/Mlrquery.h"
#include "platform/Sqltext.h"
#include "workbench/Ascommand.h"
#include "workbench/Asform.h"
#include "workbench/Pages.h"
#include "workbench/Recordspage.h"

#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

class QueryWindow : public HostileWindow
{
protected:
    QString file;
    QString typed;                 ///< into the editor of statements
    QMap<QString, QString> values; ///< of parameters
    /// A statement that takes minutes.
    const QString slow = u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2000000000) "
                           "SELECT max(i) AS y, min(i) AS x FROM n");

    void SetUp() override
    {
        HostileWindow::SetUp();
        file = database("own.db", {u("CREATE TABLE t (x REAL, y REAL, d TEXT)"),
                                   u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
                                     "INSERT INTO t SELECT i, 3 + 2 * i + i % 5, 'n' || (i % 3) FROM n")});
        drop(file);
        answer = [this](QDialog &dialog) {
            if (auto *const statement = qobject_cast<TSqlDialog *>(&dialog)) {
                auto *const text = statement->findChild<QPlainTextEdit *>();
                text->selectAll();
                text->insertPlainText(typed);
            }
            for (auto value = values.begin(); value != values.end(); ++value) {
                if (auto *const edit = dialog.findChild<QLineEdit *>(u("Parameter_") + value.key()))
                    edit->setText(value.value());
            }
            return int(QDialog::Accepted);
        };
    }
    void ask(const QString &statement)
    {
        typed = statement;
        action("Query").trigger();
    }
    bool isShown() const { return !window->Near().IsFetching() && sitting().State().isQuery(); }
};

TEST_F(QueryWindow, OpensWhatIsTypedLikeATable)
{
    ask(u("SELECT x, y * 2 AS twice FROM t WHERE x <= 100"));
    ASSERT_TRUE(wait([this] { return isShown(); })) << message().toStdString();
    EXPECT_EQ(window->Editor().Fields().numericNames(), (QStringList{u("x"), u("twice")})) << message().toStdString();
    EXPECT_EQ(window->ShownPages().Records().View().model()->rowCount(), 100);
    EXPECT_EQ(cell(99, 0).toDouble(), 100);
    defineModel("twice", "x");
    ASSERT_TRUE(fit().HasFit()) << message().toStdString();
    // To the bit what the component itself makes of the statement.
    TMLRQuery query;
    query.SetDatabaseName(file);
    query.SetSQL(sitting().State().sql);
    nuvo::apply(sitting().State(), query);
    query.Open();
    ASSERT_TRUE(query.ReLoad());
    query.Execute();
    EXPECT_EQ(fit().Regression()->Getb(1), query.Getb(1));
    EXPECT_EQ(fit().Regression()->GetSyx(), query.GetSyx());
    // Undone, done again, and back in another run.
    const nuvo::ModelState state = sitting().State();
    action("Undo").trigger();
    action("Undo").trigger();
    action("Undo").trigger();
    EXPECT_FALSE(sitting().State().isQuery());
    for (int i = 0; i < 3; ++i)
        action("Redo").trigger();
    EXPECT_EQ(sitting().State(), state);
    EXPECT_TRUE(fit().HasFit()) << message().toStdString();
    window.reset();
    begin();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    EXPECT_EQ(fit().Regression()->Getb(1), query.Getb(1));
}

TEST_F(QueryWindow, ReadsEveryRecordOfWhatIsTyped)
{
    ask(u("SELECT x, y FROM t"));
    ASSERT_TRUE(wait([this] { return isShown(); })) << message().toStdString();
    defineModel("y", "x");
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 2500);
    action("Every Record").trigger();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 5000);
}

TEST_F(QueryWindow, AsksForParametersAndKeepsThem)
{
    values = {{u("least"), u("4900")}, {u("name"), u("n'1")}};
    ask(u("SELECT x, y FROM t WHERE x > :least AND d <> :name"));
    ASSERT_TRUE(wait([this] { return isShown(); })) << message().toStdString();
    EXPECT_EQ(asked.count(u("ParametersDialog")), 1);
    EXPECT_EQ(sitting().State().params, values);
    EXPECT_EQ(window->ShownPages().Records().View().model()->rowCount(), 100);
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit()) << message().toStdString();
    const nuvo::ModelState state = sitting().State();
    // Commands and forms have them in the statement.
    EXPECT_TRUE(nuvo::fitCommand(state).contains(u("x > 4900"))) << nuvo::fitCommand(state).toStdString();
    const nuvo::ModelState form = nuvo::openForm(write("query.ui", nuvo::formFile(state, folder.path()))).state;
    EXPECT_EQ(form.sql, u("SELECT x, y FROM t WHERE x > 4900 AND d <> 'n''1'"));
    window.reset();
    begin();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    EXPECT_EQ(asked.count(u("ParametersDialog")), 1) << "they are known";
    // A form is opened like a statement that is typed.
    sitting().Change({}, u("close"));
    drop(folder.filePath(u("query.ui")));
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
}

TEST_F(QueryWindow, TellsWhatIsWrongAndChangesNothing)
{
    const nuvo::ModelState before = sitting().State();
    for (const char *statement : {"SELECT nothing FROM t", "SELECT * FROM none", "SELECT x, FROM t"}) {
        ask(u(statement));
        ASSERT_TRUE(wait([this] { return !window->Near().IsFetching(); }));
        EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
        EXPECT_EQ(sitting().State(), before);
        EXPECT_TRUE(isAlive());
    }
}

TEST_F(QueryWindow, ThatTakesMinutesIsStoppedAndTheSittingIsAsBefore)
{
    defineModel("y", "x");
    const nuvo::ModelState before = sitting().State();
    ASSERT_TRUE(fit().HasFit());
    ask(slow);
    LoopGap gap;
    ASSERT_TRUE(wait([this] { return window->findChild<QPushButton *>(u("Stop"))->isVisible(); }));
    QTest::qWait(1500);
    EXPECT_TRUE(window->Near().IsFetching());
    EXPECT_TRUE(isAlive());
    EXPECT_TRUE(fit().HasFit()) << "what is shown is still shown";
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(wait([this] { return !window->Near().IsFetching(); }, 2000)) << "Escape ends it";
    QTest::qWait(300);
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(fit().HasFit());
    EXPECT_TRUE(message().contains(u("stopped"))) << message().toStdString();
    std::printf("Event loop: longest gap %lld ms\n", gap.largest());
    EXPECT_LT(gap.largest(), 700) << "a statement that is waited for takes minutes";
    // No file of it is left.
    int left = 0;
    for (const QString &dir : QDir(folder.path()).entryList({u("copies-*")}, QDir::Dirs))
        left += int(QDir(folder.filePath(dir)).entryList(QDir::Files).size());
    EXPECT_EQ(left, 0);
}

TEST_F(QueryWindow, ThatTakesMinutesDoesNotKeepTheWindowFromClosing)
{
    ask(slow);
    QTest::qWait(300);
    QElapsedTimer since;
    since.start();
    window.reset();
    EXPECT_LT(since.elapsed(), 5000);
    begin();
    EXPECT_EQ(sitting().State().table, u("t"));
}

TEST_F(QueryWindow, TakesTheLastOfTwoThatAreOpenedInHaste)
{
    ask(slow);
    QTest::qWait(100);
    ask(u("SELECT x FROM t WHERE x < 10"));
    ASSERT_TRUE(wait([this] { return isShown(); })) << message().toStdString();
    EXPECT_EQ(sitting().State().sql, u("SELECT x FROM t WHERE x < 10"));
    EXPECT_EQ(window->ShownPages().Records().View().model()->rowCount(), 9);
}
