// SPDX-License-Identifier: MIT
#include "design/Propertyeditors.h"
#include "design/sql/Sqlhands.h"
#include "engine/Mlrquery.h"

namespace {

class SqlDialog : public testing::Test
{
protected:
    SqlDialog()
    {
        db->exec(u("CREATE TABLE t (x INTEGER, y DOUBLE)"));
        query.SetName(u("mlrQuery"));
        query.SetDatabaseName(db->name());
    }

    /// Edits the statement; how often it was written.
    int edit(const std::function<void(TSqlDialog &)> &act)
    {
        int writes = 0;
        TSqlProperty property({&query}, u("SQL"));
        property.SetWriter([&](TComponent &component, const QString &name, const QVariant &value) {
            EXPECT_EQ(name, u("SQL"));
            component.setProperty("SQL", value);
            ++writes;
        });
        const Person person([&](QDialog &dialog) {
            dialog.activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
            act(static_cast<TSqlDialog &>(dialog));
        });
        property.Edit();
        return writes;
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    TMLRQuery query;
};

} // namespace

TEST_F(SqlDialog, WritesTheStatementOnOk)
{
    EXPECT_EQ(edit([](TSqlDialog &dialog) {
                  EXPECT_EQ(dialog.windowTitle(), u("mlrQuery SQL"));
                  EXPECT_TRUE(sqlText(dialog)->hasFocus());
                  QTest::keyClicks(sqlText(dialog), u("SELECT x, y"));
                  QTest::keyClick(sqlText(dialog), Qt::Key_Return);
                  QTest::keyClicks(sqlText(dialog), u("FROM t"));
                  QTest::keyClick(sqlText(dialog), Qt::Key_Return, Qt::ControlModifier);
              }),
              1);
    EXPECT_EQ(query.SQLLines(), (QStringList{u("SELECT x, y"), u("FROM t")}));
}

TEST_F(SqlDialog, WritesNothingOnCancelAndWithoutAChange)
{
    query.SetSQLLines({u("SELECT x FROM t"), u("  -- kept "), QString()});
    const QStringList before = query.SQLLines();
    EXPECT_EQ(edit([](TSqlDialog &dialog) { click(dialog, "SqlOK"); }), 0);
    EXPECT_EQ(edit([](TSqlDialog &dialog) {
                  typeSql(dialog, "SELECT 1");
                  QTest::keyClick(&dialog, Qt::Key_Escape);
              }),
              0);
    EXPECT_EQ(query.SQLLines(), before);
}

TEST_F(SqlDialog, RefusesAStatementThatDoesNotReadAndTakesAnEmptyOne)
{
    query.SetSQL(u("SELECT 1"));
    EXPECT_EQ(edit([](TSqlDialog &dialog) {
                  typeSql(dialog, "DROP TABLE t");
                  click(dialog, "SqlOK");
                  EXPECT_TRUE(dialog.isVisible());
                  EXPECT_TRUE(state(dialog).contains(u("DROP"))) << state(dialog).toStdString();
                  sqlText(dialog)->selectAll();
                  QTest::keyClick(sqlText(dialog), Qt::Key_Delete);
                  click(dialog, "SqlOK");
              }),
              1);
    EXPECT_EQ(query.SQLLines(), QStringList());
}

TEST_F(SqlDialog, EndsATrialWithEscapeBeforeItself)
{
    query.SetSQL(u(Endless));
    edit([](TSqlDialog &dialog) {
        QTest::keyClick(sqlText(dialog), Qt::Key_F5);
        QTest::qWait(100);
        ASSERT_TRUE(dialog.Editor().Trying());
        QTest::keyClick(&dialog, Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.Editor().Trying(); }, 10000));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
}

TEST_F(SqlDialog, FitsOnASmallScreen)
{
    edit([](TSqlDialog &dialog) {
        dialog.resize(dialog.minimumSizeHint());
        EXPECT_LE(dialog.width(), 800);
        EXPECT_LE(dialog.height(), 480);
        for (const char *name : {"SqlText", "SqlTables", "SqlRows", "TrySql", "StopSql"})
            EXPECT_FALSE(part(dialog, name)->accessibleName().isEmpty()) << name;
        dialog.reject();
    });
}
