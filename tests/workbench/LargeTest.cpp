// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"
#include "workbench/Killing.h"

#include "engine/Regression.h"
#include "support/Databases.h"
#include "workbench/Pages.h"
#include "workbench/Recordsmodel.h"
#include "workbench/Recordspage.h"

#include <QAbstractItemView>
#include <QAction>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressDialog>
#include <QScrollBar>
#include <QSqlDatabase>
#include <QSqlTableModel>
#include <QTableView>
#include <QTableWidget>
#include <QTest>

#include <unistd.h>

namespace {

/// Of this process, in MB.
double memoryInUse()
{
    QFile file(u("/proc/self/statm"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().split(' ').value(1).toDouble() * double(::sysconf(_SC_PAGESIZE)) / 1e6;
}

/// The most that it was since the last call, in MB.
double peakOfMemory()
{
    QFile status(u("/proc/self/status"));
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    double peak = 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            peak = line.mid(6).trimmed().split(' ').value(0).toDouble() / 1e3;
    }
    QFile reset(u("/proc/self/clear_refs"));
    if (reset.open(QIODevice::WriteOnly))
        reset.write("5");
    return peak;
}

} // namespace

class LargeWindow : public HostileWindow
{
protected:
    nuvo::RecordsPage &page() const { return window->ShownPages().Records(); }
    /// Scrolls to a record: milliseconds until it is there.
    qint64 timeTo(int row)
    {
        QElapsedTimer since;
        since.start();
        page().GoTo(row + 1);
        EXPECT_FALSE(cell(row, 0).isEmpty());
        return since.elapsed();
    }
};

TEST_F(LargeWindow, OpensAFileOf200Megabytes)
{
    const QString name = folder.filePath(u("large.csv"));
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("id,y,x1,x2,note\n");
        QByteArray text;
        for (int i = 1; file.pos() + text.size() < 200000000; ++i) {
            text += QByteArray::number(i) + ',' + QByteArray::number(3 + 2.5 * i + i % 7) + ',' +
                    QByteArray::number(i) + ".25," + QByteArray::number(i % 997) + ",a note of some length\n";
            if (text.size() > (1 << 20)) {
                file.write(text);
                text.clear();
            }
        }
        file.write(text);
    }
    const double before = memoryInUse();
    peakOfMemory();
    int percentage = -1;
    QTimer watch;
    watch.callOnTimeout([&] {
        if (const auto *const progress = window->findChild<QProgressDialog *>())
            percentage = std::max(percentage, progress->value());
    });
    watch.start(20);
    QElapsedTimer since;
    since.start();
    LoopGap gap;
    drop(name);
    std::printf("200 MB of CSV: %.1f s, %.0f MB more memory at most, largest gap of the event loop %lld ms\n",
                double(since.elapsed()) / 1e3, peakOfMemory() - before, gap.largest());
    ASSERT_EQ(sitting().State().table, u("large")) << message().toStdString();
    EXPECT_GT(percentage, 50);
    ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
    const int rows = page().View().model()->rowCount();
    EXPECT_GT(rows, 3000000);
    EXPECT_EQ(cell(rows - 1, 0), QString::number(rows));
    EXPECT_LT(gap.largest(), 1500);
}

TEST_F(LargeWindow, RefusesACellOf100Megabytes)
{
    write("cell.csv", "y,x\n1,2\n2,\"" + QByteArray(100000000, 'a') + "\"\n");
    const double before = memoryInUse();
    peakOfMemory();
    QElapsedTimer since;
    since.start();
    drop(folder.filePath(u("cell.csv")));
    std::printf("A cell of 100 MB: told after %.1f s, %.0f MB more memory at most\n", double(since.elapsed()) / 1e3,
                peakOfMemory() - before);
    EXPECT_TRUE(message().contains(u("longer than 64 MiB"))) << message().toStdString();
    EXPECT_FALSE(sitting().State().hasData());
    EXPECT_TRUE(isAlive());
}

TEST_F(LargeWindow, ScrollsThroughFiveMillionRecords)
{
    for (const auto backend : {TestDatabase::Sqlite, TestDatabase::Postgres}) {
        const auto db = TestDatabase::make(backend);
        constexpr int rows = 5000000;
        db->makeNumbers(u("many"), rows, 4);
        window->OpenDatabase(db->name());
        ASSERT_TRUE(wait([&] { return sitting().State().database == db->name(); })) << message().toStdString();
        const double before = memoryInUse();
        LoopGap gap;
        QElapsedTimer since;
        since.start();
        window->OpenTable(u("many"));
        ASSERT_TRUE(wait([&] { return page().View().model()->rowCount() > 0; })) << message().toStdString();
        const qint64 first = since.elapsed();
        const qint64 firstGap = gap.take();
        ASSERT_TRUE(wait([this] { return page().Model().IsCounted(); }));
        const qint64 counted = since.elapsed();
        const qint64 countedGap = gap.take();
        EXPECT_EQ(page().View().model()->rowCount(), rows);
        EXPECT_EQ(cell(0, 0), u("1"));
        const qint64 toEnd = timeTo(rows - 1);
        EXPECT_EQ(cell(rows - 1, 0), QString::number(rows));
        const qint64 toMiddle = timeTo(rows / 2);
        EXPECT_EQ(cell(rows / 2, 0), QString::number(rows / 2 + 1));
        const qint64 goneGap = gap.take();
        const double opened = memoryInUse();
        QScrollBar &bar = *page().View().verticalScrollBar();
        since.restart();
        for (int step = 0; step <= 400; ++step) {
            bar.setValue(int(double(bar.maximum()) * step / 400));
            QTest::qWait(5);
        }
        const qint64 scrolled = since.elapsed();
        const qint64 scrolledGap = gap.take();
        const double after = memoryInUse();
        since.restart();
        page().Model().SortBy(1, Qt::DescendingOrder);
        EXPECT_EQ(cell(0, 1).toDouble(), 1008);
        std::printf(
            "%s, 5 million records: first ones after %lld ms, counted after %lld ms, the end in %lld ms, the "
            "middle in %lld ms, the scroll bar from top to bottom in 400 steps in %lld ms, sorted in %lld ms; "
            "memory %.0f MB more when opened, %.0f MB more after scrolling; largest gaps of the event loop while "
            "opening, counting, going, scrolling, sorting: %lld, %lld, %lld, %lld, %lld ms\n",
            backendName(backend).c_str(), first, counted, toEnd, toMiddle, scrolled, since.elapsed(), opened - before,
            after - opened, firstGap, countedGap, goneGap, scrolledGap, gap.largest());
        EXPECT_LT(after - opened, 30) << "MB: what was scrolled over is not kept";
        EXPECT_LT(std::max({firstGap, countedGap, goneGap, scrolledGap, gap.largest()}), 1000);
        sitting().Change({}, u("close"));
    }
    // Beside it, the plain way: all of them in a model.
    const auto db = TestDatabase::make(TestDatabase::Sqlite);
    db->makeNumbers(u("many"), 500000, 4);
    const double before = memoryInUse();
    QElapsedTimer since;
    since.start();
    QSqlTableModel model(nullptr, db->writer());
    model.setTable(u("many"));
    ASSERT_TRUE(model.select());
    while (model.canFetchMore())
        model.fetchMore();
    std::printf("A model that fetches all, a tenth of them (500,000): %lld ms without a return to the event loop, "
                "%.0f MB\n",
                since.elapsed(), memoryInUse() - before);
}

TEST_F(LargeWindow, ReadsEveryRecordOfAMillionInTheBackground)
{
    const auto db = TestDatabase::make(TestDatabase::Sqlite);
    db->makeNumbers(u("many"), 1000000, 11);
    drop(db->name());
    LoopGap gap;
    ASSERT_TRUE(wait([this] { return !window->Near().IsFetching(); })) << message().toStdString();
    defineModel("x0", "x1");
    ASSERT_TRUE(fit().HasFit()) << message().toStdString();
    const qint64 before = gap.take();
    QElapsedTimer since;
    since.start();
    action("Every Record").trigger();
    ASSERT_TRUE(fit().IsReading());
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 1000000);
    std::printf("Every record of a million: %.1f s, largest gaps of the event loop before and then %lld, %lld ms\n",
                double(since.elapsed()) / 1e3, before, gap.largest());
    EXPECT_LT(gap.largest(), 1500);
    // And it is ended by Escape.
    action("Read Again").trigger();
    ASSERT_TRUE(wait([this] { return fit().IsReading(); })) << message().toStdString();
    QTest::qWait(50);
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(wait([this] { return !fit().IsReading(); }));
    EXPECT_TRUE(message().contains(u("stopped"))) << message().toStdString();
    EXPECT_TRUE(isAlive());
}

TEST(KilledManyTimes, TheSittingComesBackAsItWas)
{
    killAtRandomMoments(30);
}
