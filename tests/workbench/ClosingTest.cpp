// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "design/model/Modeleditor.h"
#include "platform/Table.h"
#include "workbench/Pages.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QPushButton>
#include <QTest>

/// A window that is closed while something is under way in front of it: by the system, whoever has the keys.
class ClosingWindow : public HostileWindow
{
protected:
    QTimer closing;
    QElapsedTimer since; ///< the close

    /// A file with a table t of 100 records, a view of which none comes for long, and one that goes on for long.
    QString withView() const
    {
        return database("view.db",
                        {u("CREATE TABLE t (x REAL, z REAL, y REAL)"),
                         u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) "
                           "INSERT INTO t SELECT i, i % 7, 3 + 2 * i + i % 5 FROM n"),
                         u("CREATE VIEW endless AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                           "SELECT i + 1 FROM n WHERE i < 60000000) SELECT i AS x, i AS z, i AS y "
                           "FROM n WHERE i % 7 = 8"),
                         u("CREATE VIEW slow AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE "
                           "i < 60000000) "
                           "SELECT i % 1009 AS x, i % 13 AS z, i * 3 % 997 AS y FROM n WHERE i % 100 = 0")});
    }
    /// Closes the window so many milliseconds from now, or as soon as a dialog is in front of it.
    void close(int milliseconds = -1)
    {
        QElapsedTimer begun;
        begun.start();
        closing.disconnect();
        closing.callOnTimeout([this, milliseconds, begun] {
            if (milliseconds < 0 ? QApplication::activeModalWidget() == nullptr : begun.elapsed() < milliseconds)
                return;
            closing.stop();
            since.start();
            EXPECT_TRUE(window->close());
        });
        closing.start(10);
    }
    /// That the close has come and has kept nobody waiting; then the program is started again.
    void expectClosed()
    {
        ASSERT_TRUE(since.isValid()) << "it ended before the window was closed: " << message().toStdString();
        EXPECT_LT(since.elapsed(), 5000);
        EXPECT_FALSE(window->isVisible());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        window.reset();
        begin();
    }
};

TEST_F(ClosingWindow, EndsAnImportAndLosesNothing)
{
    drop(write("good.csv", "y,x\n1,2\n3,5\n4,9\n8,1\n"));
    defineModel("y", "x");
    const nuvo::ModelState before = sitting().State();
    QByteArray rows = "y,x\n";
    for (int i = 0; i < 1500000; ++i)
        rows += QByteArray::number(3 + 2 * i + i % 3) + ',' + QByteArray::number(i) + '\n';
    const QString large = write("large.csv", rows);
    for (const int milliseconds : {50, -1}) { // before its progress is shown, and then
        since.invalidate();
        close(milliseconds);
        drop(large);
        expectClosed();
        EXPECT_EQ(sitting().State(), before);
        EXPECT_TRUE(fit().HasFit()) << message().toStdString();
        TTable table;
        table.SetDatabaseName(before.database);
        EXPECT_EQ(table.TableNames(), (QStringList{u("good")}));
    }
}

TEST_F(ClosingWindow, EndsTheProgramThatWasStartedWithAFile)
{
    const QString file = write("data.csv", "y,x\n1,2\n3,5\n4,9\n8,1\n");
    answer = [this](QDialog &) {
        EXPECT_TRUE(window->close());
        return int(QDialog::Rejected);
    };
    window->OpenSoon({file, file});
    QTimer late;
    late.callOnTimeout([] { QCoreApplication::exit(1); });
    late.start(10000);
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(asked, (QStringList{u("CsvPreview")})) << "and the second file is not asked about";
}

TEST_F(ClosingWindow, EndsAPredictionAndLeavesNoFile)
{
    drop(withView());
    window->OpenTable(u("t"));
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit());
    const nuvo::ModelState before = sitting().State();
    const QString written = folder.filePath(u("out.csv"));
    answer = [&](QDialog &dialog) {
        if (auto *const choose = qobject_cast<QInputDialog *>(&dialog))
            choose->setTextValue(u("endless"));
        if (auto *const save = qobject_cast<QFileDialog *>(&dialog)) {
            save->setDirectory(folder.path());
            save->selectFile(written);
        }
        return int(QDialog::Accepted);
    };
    close();
    window->findChild<QPushButton *>(u("PredictTable"))->click();
    expectClosed();
    EXPECT_FALSE(QFile::exists(written));
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(fit().HasFit());
}

TEST_F(ClosingWindow, EndsAChoiceAndAReadingOfEveryRecord)
{
    drop(withView());
    window->OpenTable(u("slow"));
    ASSERT_TRUE(wait([this] { return sitting().State().table == u("slow"); })) << message().toStdString();
    defineModel("y", "x");
    window->Editor().AddFields({u("z")});
    ASSERT_TRUE(wait([this] { return fit().HasFit(); })) << message().toStdString();
    nuvo::ModelState every = sitting().State();
    every.records = nuvo::RecordUse::All;
    sitting().Change(every, u("every record"));
    EXPECT_TRUE(wait([this] { return fit().IsReading(); })) << message().toStdString();
    close();
    window->findChild<QPushButton *>(u("Choose"))->click();
    expectClosed();
    EXPECT_EQ(sitting().State(), every);
    EXPECT_TRUE(wait([this] { return fit().IsReading(); })) << message().toStdString();
    window->close();
    EXPECT_FALSE(fit().IsReading());
}
