// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "workbench/Pages.h"
#include "workbench/Recordsmodel.h"
#include "workbench/Recordspage.h"

#include "engine/Regression.h"
#include "present/statistics/Observationspage.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QTest>

class RecordsGrid : public HostileWindow
{
protected:
    nuvo::RecordsPage &page() const { return window->ShownPages().Records(); }
    QTableView &view() const { return page().View(); }
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
