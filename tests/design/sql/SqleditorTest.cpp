// SPDX-License-Identifier: MIT
#include "design/sql/Sqlhands.h"

#include <QDir>
#include <QTextBlock>
#include <QTimer>

namespace {

class SqlEditor : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    void SetUp() override
    {
        db->exec(
            u("CREATE TABLE \"City data\" (\"Id\" INTEGER PRIMARY KEY, name TEXT, area DOUBLE PRECISION, \"a\"\"b\" "
              "INTEGER)"));
        for (int i = 1; i <= 12; ++i)
            db->exec(QStringLiteral("INSERT INTO \"City data\" VALUES (%1, 'c%1', %2, NULL)").arg(i).arg(i / 2.0));
        editor.SetDatabase(db->name());
        editor.resize(800, 500);
        editor.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&editor));
        editor.activateWindow();
        editor.setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    }
    QString marked()
    {
        const QList<QTextEdit::ExtraSelection> marks = sqlText(editor)->extraSelections();
        return marks.isEmpty() ? QString() : marks.first().cursor.selectedText();
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
    TSqlEditor editor;
};

std::string backend(const testing::TestParamInfo<TestDatabase::Backend> &info)
{
    return backendName(info.param);
}

} // namespace

TEST_P(SqlEditor, ShowsTheFirstTenRowsWithTheKindsOfTheColumns)
{
    typeSql(editor, "SELECT \"Id\", name, area, \"a\"\"b\", area * 2 AS twice FROM \"City data\" ORDER BY 1");
    tryOut(editor);
    const QStringList shown = grid(editor);
    ASSERT_EQ(shown.size(), 11) << state(editor).toStdString();
    EXPECT_EQ(shown[0], u("Id whole number|name text|area number|a\"b whole number|twice number"));
    EXPECT_EQ(shown[1], u("1|c1|0.5|null|1"));
    EXPECT_EQ(shown[10], u("10|c10|5|null|10"));
    EXPECT_EQ(state(editor), u("5 columns, 4 of them with numbers; the first 10 rows."));
    typeSql(editor, "SELECT name FROM \"City data\" WHERE \"Id\" = 7");
    tryOut(editor);
    EXPECT_EQ(grid(editor), (QStringList{u("name text"), u("c7")}));
    EXPECT_EQ(state(editor), u("1 column, 0 of them with numbers; 1 row."));
}

TEST_P(SqlEditor, InsertsQuotedNamesOfTablesAndFields)
{
    typeSql(editor, "SELECT ");
    QTreeWidgetItem *table = treeItem(editor, "City data");
    table->setExpanded(true);
    EXPECT_EQ(treeItem(editor, "area")->text(1), u("number"));
    EXPECT_EQ(treeItem(editor, "name")->text(1), u("text"));
    doubleClickOn(editor, treeItem(editor, "a\"b"));
    EXPECT_TRUE(sqlText(editor)->hasFocus()) << "typing goes on behind the name";
    QTest::keyClicks(sqlText(editor), u(" FROM "));
    auto *tree = part<QTreeWidget>(editor, "SqlTables");
    tree->setFocus();
    tree->setCurrentItem(table);
    QTest::keyClick(tree, Qt::Key_Return);
    EXPECT_TRUE(editor.Text().startsWith(u("SELECT \"a\"\"b\" FROM "))) << editor.Text().toStdString();
    EXPECT_TRUE(editor.Text().endsWith(u("\"City data\"")));
    tryOut(editor);
    EXPECT_EQ(grid(editor).value(0), u("a\"b whole number"));
}

TEST_P(SqlEditor, ShowsAnErrorWithItsPlace)
{
    typeSql(editor, "SELECT name,\n  aera\nFROM \"City data\"");
    tryOut(editor);
    EXPECT_TRUE(state(editor).contains(u("aera"))) << state(editor).toStdString();
    EXPECT_TRUE(state(editor).endsWith(u("(Line 2, letter 3.)"))) << state(editor).toStdString();
    EXPECT_EQ(marked(), u("aera"));
    EXPECT_EQ(sqlText(editor)->textCursor().blockNumber(), 1);
    QTest::keyClicks(sqlText(editor), u("x"));
    EXPECT_EQ(marked(), QString()) << "a change takes the mark away";
    typeSql(editor, "SELECT name FORM \"City data\"");
    tryOut(editor);
    EXPECT_FALSE(marked().isEmpty());
}

TEST_P(SqlEditor, RefusesWhatAQueryDoesNotRead)
{
    typeSql(editor, "DELETE FROM \"City data\"");
    tryOut(editor);
    EXPECT_TRUE(state(editor).contains(u("DELETE"))) << state(editor).toStdString();
    EXPECT_EQ(db->value(u("SELECT count(*) FROM \"City data\"")).toInt(), 12);
    EXPECT_FALSE(editor.CheckStatement());
    typeSql(editor, "SELECT 1; SELECT 2");
    EXPECT_FALSE(editor.CheckStatement());
    typeSql(editor, "");
    QTest::keyClick(sqlText(editor), Qt::Key_Delete);
    tryOut(editor);
    EXPECT_FALSE(state(editor).isEmpty());
    typeSql(editor, "VALUES (1, 2)");
    EXPECT_TRUE(editor.CheckStatement());
}

TEST_P(SqlEditor, StopsAStatementThatTakesLongAndStaysAliveMeanwhile)
{
    typeSql(editor, Endless);
    QTest::keyClick(sqlText(editor), Qt::Key_F5);
    EXPECT_TRUE(editor.Trying());
    EXPECT_EQ(state(editor), u("Reading…"));
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&turns] { ++turns; });
    timer.start(10);
    EXPECT_TRUE(QTest::qWaitFor([&turns] { return turns > 5; }, 20000)) << "the window stood still";
    ASSERT_TRUE(editor.Trying());
    QSignalSpy tried(&editor, &TSqlEditor::Tried);
    click(editor, "StopSql");
    ASSERT_TRUE(tried.count() > 0 || tried.wait(10000));
    EXPECT_FALSE(editor.Trying());
    EXPECT_EQ(state(editor), u("Stopped."));
    typeSql(editor, "SELECT 1 AS one");
    tryOut(editor);
    EXPECT_EQ(grid(editor).value(1), u("1"));
}

TEST_P(SqlEditor, BeginsAnewWhileAStatementIsUnderWay)
{
    typeSql(editor, Endless);
    QTest::keyClick(sqlText(editor), Qt::Key_F5);
    QTest::qWait(100);
    typeSql(editor, "SELECT 1 AS one");
    tryOut(editor);
    EXPECT_EQ(grid(editor).value(0).section(u' ', 0, 0), u("one"));
}

TEST_P(SqlEditor, EndsWithAStatementUnderWay)
{
    auto second = std::make_unique<TSqlEditor>();
    second->SetDatabase(db->name());
    second->SetText(u(Endless));
    second->Try();
    QTest::qWait(100);
    second.reset();
}

TEST_P(SqlEditor, TakesParametersWithoutValuesAsNull)
{
    typeSql(editor, "SELECT name FROM \"City data\" WHERE \"Id\" > :low");
    tryOut(editor);
    EXPECT_EQ(grid(editor), QStringList(u("name text"))) << state(editor).toStdString();
    EXPECT_EQ(state(editor), u("1 column, 0 of them with numbers; 0 rows. Without a value, and taken as null here: "
                               "low."));
    editor.SetDatabase(db->name(), {{u("low"), 11}});
    tryOut(editor);
    EXPECT_EQ(grid(editor), (QStringList{u("name text"), u("c12")}));
}

TEST_P(SqlEditor, KeepsEveryLetterOfAStatement)
{
    const QString text = u("SELECT 'a\u00a0b',\n\t'ä€😀'  -- why\n\n");
    editor.SetText(text);
    EXPECT_EQ(editor.Text(), text);
    EXPECT_FALSE(editor.Changed());
    QTest::keyClick(sqlText(editor), Qt::Key_X);
    EXPECT_TRUE(editor.Changed());
    EXPECT_EQ(editor.Text(), u("x") + text);
}

TEST_P(SqlEditor, SaysWhatIsWrongWithTheDatabase)
{
    editor.SetDatabase(u("nowhere.db"));
    const QString missing =
        QStringLiteral("Cannot open the database \"nowhere.db\": there is no such file in \"%1\" and "
                       "no registered connection of that name.")
            .arg(QDir::currentPath());
    EXPECT_EQ(part<QTreeWidget>(editor, "SqlTables")->topLevelItem(0)->text(0), missing);
    typeSql(editor, "SELECT 1");
    tryOut(editor);
    EXPECT_EQ(state(editor), missing);
}

INSTANTIATE_TEST_SUITE_P(Databases, SqlEditor, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         backend);
