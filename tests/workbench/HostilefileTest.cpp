// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "platform/Table.h"
#include "workbench/Csvpreview.h"
#include "workbench/Openfile.h"
#include "workbench/Sittingfolder.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QProcess>
#include <QProgressDialog>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

class HostileFiles : public HostileWindow
{
protected:
    /// Drops a file that cannot be opened: what is told of it, and nothing has changed.
    QString refusal(const QString &file)
    {
        const nuvo::ModelState before = sitting().State();
        drop(file);
        EXPECT_EQ(sitting().State(), before) << file.toStdString();
        EXPECT_TRUE(isAlive());
        EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
        return message();
    }
    /// What the preview says of a file that it has no records of.
    QString previewOf(const QString &file)
    {
        QString said;
        answer = [&said](QDialog &dialog) {
            said = dialog.findChild<QLabel *>(u("PreviewError"))->text();
            return int(QDialog::Rejected);
        };
        drop(file);
        answer = {};
        EXPECT_FALSE(sitting().State().hasData());
        EXPECT_TRUE(isAlive());
        return said;
    }
    QByteArray rows(int count) const
    {
        QByteArray text = "y,x\n";
        for (int i = 0; i < count; ++i)
            text += QByteArray::number(3 + 2 * i + i % 3) + ',' + QByteArray::number(i) + '\n';
        return text;
    }
    bool contains(const QString &text, const char *part)
    {
        EXPECT_TRUE(text.contains(u(part))) << text.toStdString();
        return true;
    }
};

TEST_F(HostileFiles, AreToldWhenTheyAreNoTables)
{
    drop(write("good.csv", rows(20)));
    ASSERT_EQ(sitting().State().table, u("good")) << message().toStdString();
    contains(refusal(write("twice.csv", "a,b,A\n1,2,3\n")), "twice");
    contains(refusal(write("unnamed.csv", "a,,c\n1,2,3\n")), "Column 2");
    contains(refusal(write("ragged.csv", "a,b\n1,2\n3\n4,5\n")), "line 3");
    contains(refusal(write("binary.csv", QByteArray("\x7f\x45\x4c\x46\x00\x01\x02\n\x00\x03,\x00\n", 12))),
             "zero byte");
    contains(refusal(write("nul.csv", QByteArray("a,b\n1,2\n3,\0\n", 12))), "zero byte");
    contains(refusal(write("quote.csv", "a,b\n1,\"2\n3,4\n")), "quote");
    contains(refusal(folder.filePath(u("gone.csv"))), "gone.csv");
    contains(refusal(folder.path()), "is a folder");
    contains(refusal(u("/dev/zero")), "device or a pipe");
    const QString pipe = folder.filePath(u("pipe.csv"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    contains(refusal(pipe), "device or a pipe");
    const QString loop = folder.filePath(u("loop.csv"));
    ASSERT_TRUE(QFile::link(loop, loop));
    contains(refusal(loop), "loop.csv");
    EXPECT_EQ(cell(0, 0), u("3")) << "and what was there is still there";
}

TEST_F(HostileFiles, WithoutRecordsAreShownAndNotRead)
{
    contains(previewOf(write("empty.csv", "")), "no records");
    contains(previewOf(write("header.csv", "a,b,c\n")), "no records");
    contains(previewOf(write("blanks.csv", "\n\n\n")), "no records");
}

TEST_F(HostileFiles, HaveNoMoreColumnsThanADatabaseTakes)
{
    QByteArray names;
    QByteArray values;
    for (int i = 0; i < 3000; ++i) {
        names += 'c' + QByteArray::number(i) + ',';
        values += QByteArray::number(i) + ',';
    }
    const QString file = write("wide.csv", names + "z\n" + values + "1\n" + values + "2\n");
    contains(refusal(file), "too many columns");
    drop(write("good.csv", rows(20)));
    EXPECT_EQ(sitting().State().table, u("good")) << "the database of the sitting is as it was";
}

TEST_F(HostileFiles, VanishBetweenPreviewAndReading)
{
    const QString file = write("data.csv", rows(20));
    answer = [&](QDialog &) {
        EXPECT_TRUE(QFile::remove(file));
        return int(QDialog::Accepted);
    };
    drop(file);
    contains(message(), "data.csv");
    EXPECT_FALSE(sitting().State().hasData());
    EXPECT_FALSE(QFile::exists(folder.filePath(u("data.db"))));
}

TEST_F(HostileFiles, GrowOrShrinkWhileTheyAreRead)
{
    // What is read twice may be another file the second time: whole and as it was at some time, or not at all.
    for (const bool grows : {true, false}) {
        const QString name = write("log.csv", rows(400000));
        std::atomic<bool> ended{false};
        std::thread other([&] {
            QFile file(name);
            if (!file.open(QIODevice::ReadWrite))
                return;
            for (int i = 0; i < 400 && !ended; ++i) {
                if (grows) {
                    file.seek(file.size());
                    file.write("1,2\n1,");
                    file.flush();
                    file.write("2\n");
                    file.flush();
                } else {
                    file.resize(file.size() - 4001);
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        });
        drop(name);
        ended = true;
        other.join();
        if (sitting().State().hasData()) {
            TTable table;
            table.SetDatabaseName(sitting().State().database);
            table.SetTableName(sitting().State().table);
            table.Open();
            EXPECT_GT(table.RecordCount(), grows ? 399999 : 1);
        } else {
            EXPECT_TRUE(message().contains(u("log.csv"))) << message().toStdString();
        }
        EXPECT_TRUE(isAlive());
        sitting().Change({}, u("close"));
    }
}

TEST_F(HostileFiles, AreGivenUpByEscape)
{
    const QString file = write("large.csv", rows(1500000));
    QTimer::singleShot(700, window.get(), [this] {
        auto *const progress = window->findChild<QProgressDialog *>();
        ASSERT_NE(progress, nullptr);
        QTest::keyClick(progress, Qt::Key_Escape);
    });
    drop(file);
    EXPECT_FALSE(sitting().State().hasData()) << message().toStdString();
    EXPECT_TRUE(isAlive());
    EXPECT_EQ(errorOf([&] { nuvo::newTableFor(file, folder.filePath(u("data.db"))); }), QString());
    TTable table;
    table.SetDatabaseName(folder.filePath(u("data.db")));
    if (QFile::exists(folder.filePath(u("data.db")))) {
        EXPECT_EQ(table.TableNames(), QStringList());
    }
}

TEST_F(HostileFiles, LeaveEverythingAsItWasWhereTheDiskIsFull)
{
    drop(write("good.csv", rows(20)));
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit());
    const nuvo::ModelState before = sitting().State();
    const QString big = write("big.csv", rows(100000));
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlim_t was = limit.rlim_cur;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    limit.rlim_cur = 16384;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    drop(big);
    const QString said = message();
    // And the sitting itself no longer fits.
    for (int i = 0; i < 60; ++i) {
        nuvo::ModelState state = before;
        state.filter = u("x > %1 AND 'a long comment that takes room on the disk' <> ''").arg(i % 10 - 10 * i);
        sitting().Change(state, u("filter"));
    }
    const QString saved = message();
    limit.rlim_cur = was;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_TRUE(said.startsWith(u("Error: "))) << said.toStdString();
    EXPECT_TRUE(said.contains(u("full")) || said.contains(u("I/O"))) << said.toStdString();
    EXPECT_TRUE(saved.contains(u("sitting.json"))) << saved.toStdString();
    {
        nuvo::Sitting last;
        EXPECT_EQ(errorOf([&] { last.Load(folder.filePath(u("sitting.json"))); }), QString()) << "the last good one";
        EXPECT_EQ(last.State().table, before.table);
    }
    // The disk has room again, and the next thing that is told comes before it is saved.
    nuvo::ModelState without = before;
    without.model = {};
    sitting().Change(without, u("no model"));
    EXPECT_TRUE(message().startsWith(u("Drag a field"))) << message().toStdString();
    EXPECT_FALSE(message().contains(u("not saved"))) << message().toStdString();
    sitting().Change(before, u("back"));
    nuvo::Sitting last;
    last.Load(folder.filePath(u("sitting.json")));
    EXPECT_EQ(last.State(), before);
    EXPECT_FALSE(message().contains(u("not saved"))) << message().toStdString();
}

TEST_F(HostileFiles, OfAnotherKindOpenAsWhatTheyAre)
{
    const QString file = database("no-ending", {u("CREATE TABLE t (y, x)"), u("INSERT INTO t VALUES (1, 2)")});
    drop(file);
    EXPECT_EQ(sitting().State().database, file) << message().toStdString();
    EXPECT_EQ(sitting().State().table, u("t"));
}

TEST(SittingPlaces, AreElsewhereWhereTheHomeCannotBeWritten)
{
    const nuvo::SittingFolder sitting(u("/proc/none"));
    EXPECT_TRUE(QFileInfo(sitting.path()).isWritable());
    EXPECT_TRUE(sitting.warning().contains(u("/proc/none"))) << sitting.warning().toStdString();
    QTemporaryDir good;
    EXPECT_EQ(nuvo::SittingFolder(good.path()).warning(), QString());
}

TEST_F(HostileFiles, InFoldersThatNobodyMayWriteToAreReadAndNothingIsLost)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "the superuser may write everywhere";
    ASSERT_TRUE(QDir(folder.path()).mkdir(u("sealed")));
    const QString file =
        database("sealed/own.db", {u("CREATE TABLE t (x REAL, y REAL)"),
                                   u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
                                     "WHERE i < 50) INSERT INTO t SELECT i, 2 * i + i % 5 FROM n")});
    const QString csv = write("log.csv", "y,x\n1,2\n3,5\n");
    const QString hidden = write("hidden.csv", "y,x\n1,2\n3,5\n");
    const auto seal = [](const QString &path, bool sealed) {
        const QFile::Permissions reading = QFile::ReadOwner | QFile::ExeOwner;
        return QFile::setPermissions(path, sealed ? reading : reading | QFile::WriteOwner);
    };
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner) && QFile::setPermissions(hidden, {}));
    ASSERT_TRUE(seal(folder.filePath(u("sealed")), true));
    drop(file);
    defineModel("y", "x");
    EXPECT_TRUE(fit().HasFit()) << message().toStdString();
    const nuvo::ModelState state = sitting().State();
    drop(hidden);
    EXPECT_TRUE(message().startsWith(u("Error: ")) && message().contains(u("hidden.csv"))) << message().toStdString();
    answer = [this](QDialog &dialog) {
        if (auto *const save = qobject_cast<QFileDialog *>(&dialog)) {
            save->setDirectory(folder.filePath(u("sealed")));
            save->selectFile(folder.filePath(u("sealed/model.ui")));
        }
        return int(QDialog::Accepted);
    };
    action("Save as Form").trigger();
    EXPECT_TRUE(message().startsWith(u("Error: Cannot write "))) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    // The sitting's own folder, on a disk that is mounted anew for reading alone.
    ASSERT_TRUE(seal(folder.path(), true));
    drop(csv);
    EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    nuvo::ModelState other = state;
    other.model = {};
    sitting().Change(other, u("another model"));
    EXPECT_TRUE(message().contains(u("not saved")) || message().contains(u("Cannot write")))
        << message().toStdString();
    EXPECT_TRUE(isAlive());
    ASSERT_TRUE(seal(folder.path(), false));
    action("Undo").trigger();
    EXPECT_EQ(sitting().State(), state);
    EXPECT_TRUE(fit().HasFit()) << message().toStdString();
    window.reset();
    begin();
    EXPECT_EQ(sitting().State(), state) << "saved again";
    ASSERT_TRUE(seal(folder.filePath(u("sealed")), false));
}

TEST_F(HostileFiles, ThatAreSmallAndNoLongerFitKeepWhatWasThere)
{
    drop(write("log.csv", "y,x\n1,2\n3,5\n4,7\n6,8\n9,1\n"));
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit()) << message().toStdString();
    const nuvo::ModelState before = sitting().State();
    const QString form = write("model.ui", "what was there");
    answer = [&](QDialog &dialog) {
        if (auto *const save = qobject_cast<QFileDialog *>(&dialog))
            save->selectFile(form);
        return int(QDialog::Accepted);
    };
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlim_t was = limit.rlim_cur;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    limit.rlim_cur = 100;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    action("Save as Form").trigger();
    const QString said = message();
    nuvo::ModelState other = before;
    other.records = nuvo::RecordUse::All;
    sitting().Change(other, u("every record"));
    limit.rlim_cur = was;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_TRUE(said.startsWith(u("Error: Cannot write "))) << said.toStdString();
    QFile there(form);
    ASSERT_TRUE(there.open(QIODevice::ReadOnly));
    EXPECT_EQ(there.readAll(), "what was there");
    nuvo::Sitting last;
    EXPECT_EQ(errorOf([&] { last.Load(folder.filePath(u("sitting.json"))); }), QString());
    EXPECT_EQ(last.State(), before);
}
