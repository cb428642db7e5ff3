// SPDX-License-Identifier: MIT
#include "platform/Table.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Observationspage.h"
#include "workbench/Leaveout.h"
#include "workbench/Recordspage.h"
#include "workbench/Waiting.h"
#include "workbench/Workbenchtest.h"

#include <QContextMenuEvent>
#include <QItemSelectionModel>
#include <QMenu>
#include <QTableView>

namespace {

class Selecting : public Workbench
{
protected:
    void SetUp() override
    {
        Workbench::SetUp();
        drop(csv("trial.csv", 50));
        defineXY();
        ASSERT_TRUE(window->Fit().HasFit());
    }
    nuvo::Pages &pages() { return window->ShownPages(); }
    void expectEverywhere(const std::set<qint64> &records)
    {
        EXPECT_EQ(pages().Records().Selected(), records);
        EXPECT_EQ(pages().Observations().Selected(), records);
        EXPECT_EQ(pages().FiguresPage().Selected(), records);
    }
    qint64 used() const { return window->Fit().Regression()->RecordsUsed(); }
    QString filter() const { return window->CurrentSitting().State().filter; }
    /// A table of its own in an SQLite file.
    void openTable(const char *name, const QByteArray &text)
    {
        QFile file(folder.filePath(u(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        drop(file.fileName());
    }
};

} // namespace

TEST_F(Selecting, ARecordOfTheGridIsSelectedEverywhere)
{
    pages().setCurrentWidget(&pages().Records());
    QTableView &view = pages().Records().View();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(3, 1)).center());
    expectEverywhere({4});
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      view.visualRect(view.model()->index(5, 1)).center());
    expectEverywhere({4, 6});
}

TEST_F(Selecting, AnObservationIsSelectedEverywhereAndItsRecordIsSeen)
{
    pages().setCurrentWidget(&pages().Observations());
    QTableView &view = pages().Observations().View();
    view.sortByColumn(0, Qt::DescendingOrder);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(0, 0)).center());
    expectEverywhere({50});
    pages().setCurrentWidget(&pages().Records());
    QTableView &records = pages().Records().View();
    EXPECT_TRUE(records.viewport()->rect().intersects(records.visualRect(records.model()->index(49, 0))));
}

TEST_F(Selecting, APointOfAFigureIsSelectedEverywhere)
{
    pages().setCurrentWidget(&pages().FiguresPage());
    QTest::keyClick(&pages().FiguresPage().View(), Qt::Key_Home);
    const std::set<qint64> first = pages().FiguresPage().Selected();
    ASSERT_EQ(first.size(), 1U);
    expectEverywhere(first);
    QTest::keyClick(&pages().FiguresPage().View(), Qt::Key_End);
    EXPECT_NE(pages().FiguresPage().Selected(), first);
    expectEverywhere(pages().FiguresPage().Selected());
}

TEST_F(Selecting, IsLeftOutOfTheFitAndComesBackByUndo)
{
    pages().Observations().View().selectRow(9);
    entry("ModelMenu", "Leave Selected Records Out").trigger();
    EXPECT_EQ(used(), 49) << message().toStdString();
    EXPECT_EQ(filter(), u("\"x\" <> 10"));
    pages().Records().View().selectRow(0);
    pages().Records().View().selectionModel()->select(pages().Records().View().model()->index(48, 0),
                                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    entry("ModelMenu", "Leave Selected Records Out").trigger();
    EXPECT_EQ(used(), 47);
    EXPECT_EQ(filter(), u("(\"x\" <> 10) AND \"x\" NOT IN (1, 50)"));
    entry("EditMenu", "Undo").trigger();
    entry("EditMenu", "Undo").trigger();
    EXPECT_EQ(used(), 50);
}

TEST_F(Selecting, APointIsLeftOutByTheMenuThatIsOpenedOnIt)
{
    pages().setCurrentWidget(&pages().FiguresPage());
    QApplication::processEvents();
    TFigureView &view = pages().FiguresPage().View();
    ASSERT_FALSE(view.Figure().records.empty());
    const QPoint place = view.Painter().Place(view.Figure().x[4], view.Figure().y[4]).toPoint();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, view.mapToGlobal(place));
    QApplication::sendEvent(&view, &event);
    expectEverywhere({view.Figure().records[4]});
    auto *const menu = view.findChild<QMenu *>(u("FigureMenu"));
    ASSERT_NE(menu, nullptr);
    QAction *const out = &entry("ModelMenu", "Leave Selected Records Out");
    ASSERT_TRUE(menu->actions().contains(out));
    out->trigger();
    menu->close();
    EXPECT_EQ(used(), 49) << message().toStdString();
}

TEST_F(Selecting, MustBeThereToBeLeftOut)
{
    entry("ModelMenu", "Leave Selected Records Out").trigger();
    EXPECT_TRUE(message().contains(u("Select what to leave out"))) << message().toStdString();
}

TEST_F(Selecting, LeavesOutARecordThatOnlyAllItsFieldsTell)
{
    openTable("pairs.csv", "Grö\"ße,z,name\n1.5,1,a'b\n1.5,2,a'b\n2.5,1,a'b\n2.5,2,\n,2,a'b\n1.5,2,\n");
    nuvo::ModelState state = window->CurrentSitting().State();
    nuvo::Task task;
    const auto without = [&](qint64 record) {
        const nuvo::ModelState left = nuvo::leavingOut(state, {record}, task);
        TTable table;
        table.SetDatabaseName(left.database);
        table.SetTableName(left.table);
        table.SetFilter(left.filter);
        table.SetFiltered(true);
        table.Open();
        return table.RecordCount();
    };
    for (qint64 record = 1; record <= 6; ++record)
        EXPECT_EQ(without(record), 5) << record << ' '
                                      << nuvo::leavingOut(state, {record}, task).filter.toStdString();
    EXPECT_TRUE(errorOf([&] { nuvo::leavingOut(state, {7}, task); }).contains(u("no record 7")));
    state.table.clear();
    state.sql = u("SELECT 1");
    EXPECT_TRUE(errorOf([&] { nuvo::leavingOut(state, {1}, task); }).contains(u("statement")));
}

TEST_F(Selecting, LeavesOutManyAtOnceAsOneByOne)
{
    // Two records have a value of the first field together; a field of their own tells them.
    QByteArray text("a,b\n");
    QStringList own;
    std::set<qint64> records;
    for (int i = 1; i <= 200; ++i) {
        const bool twin = i == 30 || i == 80;
        text += u("%1,%2\n").arg(twin ? 1000 : i).arg(twin ? i : 500).toUtf8();
        records.insert(i);
        if (!twin)
            own.append(QString::number(i));
    }
    openTable("many.csv", text + "7000,500\n,500\n");
    nuvo::Task task;
    EXPECT_EQ(nuvo::leavingOut(window->CurrentSitting().State(), records, task).filter,
              u("(\"a\" NOT IN (%1) OR \"a\" IS NULL) AND \"b\" NOT IN (30, 80)").arg(own.join(u(", "))));
}

TEST_F(Selecting, RefusesToLeaveOutOneOfTwoTwins)
{
    openTable("twins.csv", "a,b\n1,2\n1,2\n3,4\n");
    nuvo::Task task;
    EXPECT_TRUE(
        errorOf([&] { nuvo::leavingOut(window->CurrentSitting().State(), {2}, task); }).contains(u("Record 2")));
}
