// SPDX-License-Identifier: MIT
#pragma once

#include "design/sql/Sqldialog.h"
#include "design/sql/Sqleditor.h"
#include "present/Windowtest.h"
#include "support/Databases.h"
#include "support/Text.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTreeWidget>

// What a person does with the SQL editor.

/// Endless, unless it is ended.
inline const char *const Endless =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) AS c FROM n";

inline QPlainTextEdit *sqlText(const QWidget &window)
{
    return part<QPlainTextEdit>(window, "SqlText");
}

inline QString state(const QWidget &window)
{
    return part<QLabel>(window, "SqlState")->text();
}

/// Types a statement over what is there.
inline void typeSql(const QWidget &window, const char *sql)
{
    QPlainTextEdit *text = sqlText(window);
    text->selectAll();
    const QStringList lines = u(sql).split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0)
            QTest::keyClick(text, Qt::Key_Return);
        QTest::keyClicks(text, lines[i]);
    }
}

/// Presses F5 and waits for the end.
inline void tryOut(TSqlEditor &editor)
{
    QSignalSpy tried(&editor, &TSqlEditor::Tried);
    QTest::keyClick(sqlText(editor), Qt::Key_F5);
    EXPECT_TRUE(tried.count() > 0 || tried.wait(20000));
}

inline QTreeWidgetItem *treeItem(const QWidget &window, const char *name)
{
    auto *tree = part<QTreeWidget>(window, "SqlTables");
    const QList<QTreeWidgetItem *> found = tree->findItems(u(name), Qt::MatchExactly | Qt::MatchRecursive);
    EXPECT_FALSE(found.isEmpty()) << name;
    return found.value(0);
}

inline void doubleClickOn(const QWidget &window, QTreeWidgetItem *item)
{
    auto *tree = part<QTreeWidget>(window, "SqlTables");
    const QPoint place = tree->visualItemRect(item).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, place);
}

/// The titles of the columns and the rows, cells parted by bars.
inline QStringList grid(const QWidget &window)
{
    const auto *rows = part<QTableWidget>(window, "SqlRows");
    QStringList lines;
    QStringList titles;
    for (int column = 0; column < rows->columnCount(); ++column)
        titles += rows->horizontalHeaderItem(column)->text().replace(u'\n', u' ');
    lines += titles.join(u'|');
    for (int row = 0; row < rows->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < rows->columnCount(); ++column)
            cells += rows->item(row, column)->text();
        lines += cells.join(u'|');
    }
    return lines;
}
