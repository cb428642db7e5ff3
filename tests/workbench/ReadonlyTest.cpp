// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "design/model/Modeleditor.h"
#include "engine/Regression.h"
#include "workbench/Pages.h"
#include "workbench/Recordsmodel.h"
#include "workbench/Recordspage.h"
#include "workbench/Sittingfolder.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QPushButton>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableView>

#include <sched.h>
#include <sys/mount.h>

/// A disk that can be mounted anew for reading alone, which the superuser cannot write to either.
class ReadonlyDisk : public HostileWindow
{
protected:
    QString disk;
    QByteArray place;

    void SetUp() override
    {
        HostileWindow::SetUp();
        disk = folder.filePath(u("disk"));
        place = QFile::encodeName(disk);
        ASSERT_TRUE(QDir().mkdir(disk));
        // Seen by this process alone, and by threads that begin from now on.
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", place.constData(), "tmpfs", 0, "size=30m") != 0) {
            place.clear();
            GTEST_SKIP() << "only the superuser mounts disks";
        }
    }
    void TearDown() override
    {
        window.reset();
        if (!place.isEmpty())
            ::umount2(place.constData(), MNT_DETACH);
        HostileWindow::TearDown();
    }
    void seal(bool sealed) const
    {
        ASSERT_EQ(::mount("tmpfs", place.constData(), "tmpfs",
                          sealed ? static_cast<unsigned long>(MS_REMOUNT | MS_RDONLY)
                                 : static_cast<unsigned long>(MS_REMOUNT),
                          nullptr),
                  0);
    }
    static QStringList someRecords()
    {
        return {u("CREATE TABLE t (x REAL, y REAL)"),
                u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 50) INSERT INTO t SELECT "
                  "i, 2 * i + i % 5 FROM n")};
    }
    /// Answers for a dialog that asks for a file's name.
    void saveAs(const QString &file)
    {
        answer = [file](QDialog &dialog) {
            if (auto *const save = qobject_cast<QFileDialog *>(&dialog)) {
                save->setDirectory(QFileInfo(file).path());
                save->selectFile(file);
            }
            return int(QDialog::Accepted);
        };
    }
    void fitted(qint64 records)
    {
        ASSERT_TRUE(wait([this] { return !window->Near().IsFetching() && !fit().IsReading(); }));
        ASSERT_TRUE(fit().HasFit()) << message().toStdString();
        EXPECT_EQ(fit().Regression()->RecordsUsed(), records);
    }
};

TEST_F(ReadonlyDisk, IsReadFrom)
{
    const QString csv = write("disk/data.csv", "y,x\n1,2\n3,5\n4,7\n6,8\n9,1\n");
    const QString plain = database("disk/plain.db", someRecords());
    const QString wal = database("disk/wal.db", QStringList{u("PRAGMA journal_mode = WAL")} + someRecords());
    const QString form = folder.filePath(u("disk/model.ui"));
    // Of one that a program has not closed the last changes stand beside it.
    const QString unfinished = folder.filePath(u("disk/unfinished.db"));
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase(u("QSQLITE"), u("unfinished"));
        writer.setDatabaseName(folder.filePath(u("open.db")));
        ASSERT_TRUE(writer.open());
        for (const QString &statement : QStringList{u("PRAGMA journal_mode = WAL")} + someRecords())
            QSqlQuery(writer).exec(statement);
        ASSERT_TRUE(QFile::copy(folder.filePath(u("open.db")), unfinished));
        ASSERT_TRUE(QFile::copy(folder.filePath(u("open.db-wal")), unfinished + u("-wal")));
    }
    QSqlDatabase::removeDatabase(u("unfinished"));
    drop(plain);
    defineModel("y", "x");
    fitted(50);
    saveAs(form);
    action("Save as Form").trigger();
    ASSERT_TRUE(QFile::exists(form)) << message().toStdString();
    seal(true);
    for (const QString &file : {plain, wal}) {
        drop(file);
        ASSERT_EQ(sitting().State().database, file);
        defineModel("y", "x");
        fitted(50);
        window->ShownPages().Records().SetSelected({3, 7});
        action("Leave Selected").trigger();
        fitted(48);
        action("Undo").trigger();
        fitted(50);
        action("Every Record").trigger();
        fitted(50);
        EXPECT_EQ(cell(49, 0).toDouble(), 50);
        window->ShownPages().Records().Model().SortBy(1, Qt::DescendingOrder);
        EXPECT_EQ(cell(0, 0).toDouble(), 49);
    }
    const nuvo::ModelState before = sitting().State();
    drop(unfinished);
    EXPECT_TRUE(message().contains(u("unfinished.db-wal"))) << message().toStdString();
    EXPECT_EQ(sitting().State(), before);
    action("Save as Form").trigger();
    EXPECT_TRUE(message().startsWith(u("Error: Cannot write "))) << message().toStdString();
    EXPECT_EQ(sitting().State(), before);
    window->OpenFile(form);
    fitted(50);
    saveAs(folder.filePath(u("elsewhere.ui")));
    action("Save as Form").trigger();
    EXPECT_TRUE(QFile::exists(folder.filePath(u("elsewhere.ui")))) << message().toStdString();
    saveAs(folder.filePath(u("disk/predictions.csv")));
    window->findChild<QPushButton *>(u("PredictTable"))->click();
    EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
    answer = {};
    drop(csv);
    EXPECT_EQ(sitting().State().table, u("data")) << message().toStdString();
    EXPECT_TRUE(isAlive());
}

TEST_F(ReadonlyDisk, CanHaveTheSittingOnIt)
{
    const QString home = folder.filePath(u("disk/sitting"));
    ASSERT_TRUE(QDir().mkdir(home));
    const QString csv = write("data.csv", "y,x\n1,2\n3,5\n4,7\n6,8\n9,1\n");
    const QString plain = database("plain.db", someRecords() << u("CREATE VIEW v AS SELECT x, y FROM t"));
    window = std::make_unique<nuvo::MainWindow>(home);
    window->show();
    drop(csv);
    defineModel("y", "x");
    fitted(5);
    const nuvo::ModelState before = sitting().State();
    seal(true);
    action("Every Record").trigger();
    fitted(5);
    EXPECT_TRUE(message().contains(u("not saved"))) << message().toStdString();
    action("Undo").trigger();
    EXPECT_EQ(sitting().State(), before);
    fitted(5);
    drop(csv);
    EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
    EXPECT_EQ(sitting().State(), before);
    // A view is copied to be read, to somewhere else now.
    drop(plain);
    window->OpenTable(u("v"));
    EXPECT_TRUE(wait([this] { return sitting().State().table == u("v"); })) << message().toStdString();
    defineModel("y", "x");
    fitted(50);
    EXPECT_TRUE(isAlive());
    // Begun anew on it.
    window.reset();
    window = std::make_unique<nuvo::MainWindow>(home);
    window->show();
    EXPECT_EQ(sitting().State(), before);
    fitted(5);
    window->OpenFile(plain);
    window->OpenTable(u("v"));
    EXPECT_TRUE(wait([this] { return sitting().State().table == u("v"); })) << message().toStdString();
    // Mounted for writing again, it is saved with the next change.
    seal(false);
    sitting().Change(before, u("back"));
    EXPECT_FALSE(message().contains(u("not saved"))) << message().toStdString();
    nuvo::Sitting saved;
    saved.Load(home + u("/sitting.json"));
    EXPECT_EQ(saved.State(), before);
}

TEST_F(ReadonlyDisk, CanHaveTheHomeOnIt)
{
    const QString home = folder.filePath(u("disk/home"));
    const QString csv = write("data.csv", "y,x\n1,2\n3,5\n4,7\n6,8\n9,1\n");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.filePath(u("disk")));
    nuvo::ModelState before;
    window.reset();
    {
        const nuvo::SittingFolder kept(home);
        nuvo::MainWindow first(kept.path());
        window.reset(&first);
        first.show();
        drop(csv);
        defineModel("y", "x");
        fitted(5);
        before = sitting().State();
        first.close();
        window.release();
    }
    seal(true);
    {
        const nuvo::SittingFolder kept(home);
        EXPECT_FALSE(kept.warning().isEmpty());
        window = std::make_unique<nuvo::MainWindow>(kept.path());
        window->show();
        window->Warn(kept.warning());
        EXPECT_EQ(sitting().State(), before);
        fitted(5);
        drop(csv); // into a database beside it
        EXPECT_NE(sitting().State(), before);
        defineModel("y", "x");
        fitted(5);
        window->close();
        window.reset();
    }
    seal(false);
    const nuvo::SittingFolder kept(home);
    EXPECT_EQ(kept.warning(), QString());
    window = std::make_unique<nuvo::MainWindow>(kept.path());
    EXPECT_EQ(sitting().State(), before);
}
