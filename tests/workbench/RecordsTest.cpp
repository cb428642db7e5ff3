// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "workbench/Pages.h"
#include "workbench/Recordsmodel.h"
#include "workbench/Recordspage.h"

#include "engine/Regression.h"
#include "present/statistics/Observationspage.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QProgressDialog>
#include <QTableView>
#include <QTest>

class RecordsGrid : public HostileWindow
{
protected:
    nuvo::RecordsPage &page() const { return window->ShownPages().Records(); }
    QTableView &view() const { return page().View(); }
    void copy(const char *text = "Copy Table") const
    {
        for (QAction *const action : window->findChild<QMenu *>(u("EditMenu"))->actions()) {
            if (action->text().remove(u'&') == u(text))
                action->trigger();
        }
    }
    /// Larger than what is read at once.
    QString large(int rows)
    {
        return database("large.db",
                        {u("CREATE TABLE t (x INTEGER, y REAL, note TEXT)"),
                         u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ") +
                             QString::number(rows) +
                             u(") INSERT INTO t SELECT i, 3 + 2 * i + i % 5, printf('%0100d', i) FROM n")});
    }
};

TEST_F(RecordsGrid, IsOfTheWholeTableAndReadsWhatIsLookedAt)
{
    constexpr int rows = 200000; // 24 MB
    drop(large(rows));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); })) << message().toStdString();
    EXPECT_EQ(view().model()->rowCount(), rows);
    EXPECT_EQ(cell(0, 0), u("1"));
    EXPECT_EQ(cell(rows - 1, 0), QString::number(rows));
    EXPECT_EQ(cell(rows / 2, 0), QString::number(rows / 2 + 1));
    EXPECT_EQ(cell(rows / 2 - 300, 0), QString::number(rows / 2 - 299)) << "the page before";
    EXPECT_EQ(cell(12345, 2).toInt(), 12346);
}

TEST_F(RecordsGrid, GoesToARecordByItsNumber)
{
    drop(large(200000));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    auto *const goTo = window->findChild<QLineEdit *>(u("GoTo"));
    goTo->setFocus();
    QTest::keyClicks(goTo, u("150000"));
    QTest::keyClick(goTo, Qt::Key_Return);
    EXPECT_EQ(view().currentIndex().row(), 149999);
    EXPECT_EQ(cell(149999, 0), u("150000"));
    EXPECT_TRUE(view().viewport()->rect().intersects(view().visualRect(view().currentIndex())));
    QTest::keyClicks(goTo, u("999999999"));
    QTest::keyClick(goTo, Qt::Key_Return);
    EXPECT_EQ(view().currentIndex().row(), 199999) << "the last one there is";
}

TEST_F(RecordsGrid, SortsByAClickOnAHeadingAndBack)
{
    drop(large(200000));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    const QPoint heading(view().horizontalHeader()->sectionViewportPosition(0) + 10, 5);
    const auto click = [&] { QTest::mouseClick(view().horizontalHeader()->viewport(), Qt::LeftButton, {}, heading); };
    click();
    EXPECT_EQ(cell(0, 0), u("1"));
    click();
    EXPECT_EQ(page().Model().SortedBy(), 0);
    ASSERT_TRUE(wait([this] { return cell(0, 0) == u("200000"); }));
    EXPECT_EQ(cell(199999, 0), u("1"));
    view().selectRow(0);
    EXPECT_EQ(page().Selected(), std::set<qint64>()) << "no numbers while it is sorted";
    click();
    EXPECT_EQ(page().Model().SortedBy(), -1);
    ASSERT_TRUE(wait([this] { return cell(0, 0) == u("1"); }));
}

TEST_F(RecordsGrid, ShowsTheRecordThatIsSelectedElsewhere)
{
    drop(large(200000));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    ASSERT_TRUE(wait([this] { return !window->Near().IsFetching(); }));
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit()) << message().toStdString();
    page().Model().SortBy(0, Qt::DescendingOrder);
    window->ShownPages().Observations().View().selectRow(2000);
    EXPECT_EQ(page().Model().SortedBy(), -1) << "in the table's own order";
    EXPECT_EQ(page().Selected(), window->ShownPages().Observations().Selected());
    EXPECT_EQ(page().Selected().size(), 1U);
}

TEST_F(RecordsGrid, FiltersInTheDatabaseWithoutStandingStill)
{
    drop(large(200000));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    defineModel("y", "x");
    auto *const filter = window->findChild<QLineEdit *>(u("Filter"));
    QTest::keyClicks(filter, u("x % 1000 = 1"));
    LoopGap gap;
    QTest::keyClick(filter, Qt::Key_Return);
    ASSERT_TRUE(wait([this] { return fit().HasFit() && page().Model().IsCounted(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 200);
    EXPECT_EQ(view().model()->rowCount(), 200);
    EXPECT_EQ(cell(199, 0), u("199001"));
    std::printf("Event loop: longest gap %lld ms\n", gap.largest());
}

TEST_F(RecordsGrid, CopiesRecordsThatWereNotReadYet)
{
    drop(large(200000));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    const auto select = [this](int first, int last) {
        const QAbstractItemModel &model = *view().model();
        view().selectionModel()->select({model.index(first, 0), model.index(last, 2)},
                                        QItemSelectionModel::ClearAndSelect);
    };
    const auto lines = [] { return QApplication::clipboard()->text().split(u'\n'); };
    select(150000, 151999);
    copy();
    ASSERT_EQ(lines().size(), 2002) << message().toStdString();
    for (int row = 150001; row <= 152000; ++row)
        ASSERT_EQ(lines()[row - 150000], QString::asprintf("%d\t%d\t%0100d", row, 3 + 2 * row + row % 5, row));
    // Sorted, as they are shown.
    page().Model().SortBy(0, Qt::DescendingOrder);
    ASSERT_TRUE(wait([this] { return cell(0, 0) == u("200000"); }));
    select(100000, 100001);
    copy("Copy Table as Markdown");
    EXPECT_TRUE(QApplication::clipboard()->text().contains(u("| 99999  |")))
        << QApplication::clipboard()->text().toStdString();
    EXPECT_FALSE(QApplication::clipboard()->text().contains(u("…")));
}

TEST_F(RecordsGrid, CopiesWholeTextsAndSaysWhereTheyAreTooLong)
{
    drop(database("texts.db",
                  {u("CREATE TABLE t (x TEXT)"), u("INSERT INTO t VALUES (printf('%05000d', 1)), (NULL), "
                                                   "(printf('%030000000d', 1)), (printf('%030000000d', 1))")}));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    view().selectRow(0);
    copy();
    EXPECT_EQ(QApplication::clipboard()->text().size(), 5000 + 3) << message().toStdString();
    view().clearSelection();
    copy();
    EXPECT_TRUE(message().contains(u("too long to copy"))) << message().toStdString();
}

TEST_F(RecordsGrid, SaysHowManyRecordsCanBeCopied)
{
    drop(large(200000));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    view().selectAll();
    copy();
    EXPECT_EQ(message(), u("Error: %1 records are too many to copy: select at most %2 of them.")
                             .arg(QLocale().toString(200000), QLocale().toString(100000)));
}

TEST_F(RecordsGrid, EndsACopyByEscapeAndTheClipboardIsAsBefore)
{
    // Each page of a view is looked for from its beginning, which takes its time.
    drop(database(
        "view.db",
        {u("CREATE VIEW v AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 90000) "
           "SELECT i AS x FROM n")}));
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); })) << message().toStdString();
    QApplication::clipboard()->setText(u("before"));
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
    copy();
    EXPECT_TRUE(message().contains(u("nothing was copied"))) << message().toStdString();
    EXPECT_LT(2 * gap.largest(), since.elapsed());
    EXPECT_EQ(QApplication::clipboard()->text(), u("before"));
    EXPECT_TRUE(isAlive());
}
