// SPDX-License-Identifier: MIT
#include "platform/Formfolder.h"

#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Scan.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

namespace {

/// A form's folder and a working folder, each with blanks and letters beyond ASCII in its name.
class FormFolders : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir(root_.path()).mkpath(u("forms für mich/data")));
        ASSERT_TRUE(QDir(root_.path()).mkpath(u("working place")));
        db_->exec(u("CREATE TABLE t (a INTEGER)"));
        db_->exec(u("INSERT INTO t VALUES (1)"));
        QDir::setCurrent(working());
        nuvo::setFormFolder(form_, forms());
    }
    void TearDown() override { QDir::setCurrent(before_); }

    QString forms() const { return QFileInfo(root_.path()).canonicalFilePath() + u("/forms für mich"); }
    QString working() const { return QFileInfo(root_.path()).canonicalFilePath() + u("/working place"); }

    /// A database with so many records in it.
    void make(const QString &path, int records)
    {
        db_->exec(u("DELETE FROM t"));
        for (int i = 0; i < records; ++i)
            db_->exec(u("INSERT INTO t VALUES (1)"));
        QFile::remove(path);
        ASSERT_TRUE(QFile::copy(db_->name(), path));
    }
    /// Records of the database that a component on the form opens by that name; -1 after an error.
    qint64 opened(const QString &name)
    {
        TTable table(&form_);
        table.SetDatabaseName(name);
        table.SetTableName(u("t"));
        error_ = errorOf<EDatabaseError>([&] { table.Open(); });
        if (!error_.isEmpty())
            return -1;
        EXPECT_EQ(nuvo::databasePlace(name, nuvo::formFolder(form_)), table.Source().databaseName);
        return table.RecordCount();
    }

    const QString before_ = QDir::currentPath();
    QTemporaryDir root_;
    std::unique_ptr<TestDatabase> db_ = TestDatabase::make(TestDatabase::Sqlite);
    QWidget form_;
    QString error_;
};

} // namespace

TEST_F(FormFolders, ARelativeNameIsLookedForBesideTheFormAndThenInTheWorkingFolder)
{
    make(working() + u("/both.db"), 2);
    make(forms() + u("/both.db"), 3);
    make(working() + u("/here.db"), 4);
    make(forms() + u("/data/below.db"), 5);
    EXPECT_EQ(opened(u("both.db")), 3);
    EXPECT_EQ(opened(u("here.db")), 4);
    EXPECT_EQ(opened(u("data/below.db")), 5);
    EXPECT_EQ(opened(u("../working place/both.db")), 2);
    EXPECT_EQ(opened(working() + u("/both.db")), 2);
}

TEST_F(FormFolders, WithoutAFormTheWorkingFolderAloneCounts)
{
    make(working() + u("/both.db"), 2);
    make(forms() + u("/both.db"), 3);
    make(forms() + u("/beside.db"), 1);
    nuvo::setFormFolder(form_, QString());
    EXPECT_EQ(opened(u("both.db")), 2);
    EXPECT_EQ(opened(u("beside.db")), -1);
    EXPECT_EQ(error_, u("Cannot open the database \"beside.db\": there is no such file in \"%1\" and no registered "
                        "connection of that name.")
                          .arg(working()));
}

TEST_F(FormFolders, AnErrorSaysWhichFoldersWereMeant)
{
    EXPECT_EQ(opened(u("none.db")), -1);
    EXPECT_EQ(error_,
              u("Cannot open the database \"none.db\": there is no such file beside the form, in \"%1\", or in "
                "the working folder \"%2\", and no registered connection of that name.")
                  .arg(forms(), working()));
    QFile bad(forms() + u("/bad.db"));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("this is no database, however long one looks at it");
    bad.close();
    EXPECT_EQ(opened(u("bad.db")), -1);
    EXPECT_EQ(error_, u("Cannot open the database \"%1/bad.db\": the file is no SQLite database.").arg(forms()));
}

TEST_F(FormFolders, ARegisteredConnectionIsNoFile)
{
    make(forms() + u("/registered.db"), 7);
    make(working() + u("/other.db"), 2);
    {
        QSqlDatabase connection = QSqlDatabase::addDatabase(u("QSQLITE"), u("registered.db"));
        connection.setDatabaseName(working() + u("/other.db"));
        ASSERT_TRUE(connection.open());
        EXPECT_EQ(opened(u("registered.db")), 2);
    }
    QSqlDatabase::removeDatabase(u("registered.db"));
}

TEST_F(FormFolders, ComponentsWithinContainersHaveTheFolderOfTheirForm)
{
    make(forms() + u("/deep.db"), 6);
    QWidget outer(&form_);
    QWidget inner(&outer);
    TQuery query(&inner);
    query.SetDatabaseName(u("deep.db"));
    query.SetSQL(u("SELECT * FROM t"));
    query.Open();
    EXPECT_EQ(query.RecordCount(), 6);
    EXPECT_EQ(nuvo::formFolder(query), forms());
    EXPECT_EQ(query.Source().databaseName, forms() + u("/deep.db"));
}

TEST_F(FormFolders, APathIsStoredRelativeWhereTheFileIsBesideTheFormOrBelowIt)
{
    EXPECT_EQ(nuvo::pathFromForm(forms() + u("/a.db"), forms()), u("a.db"));
    EXPECT_EQ(nuvo::pathFromForm(forms() + u("/data/a.db"), forms()), u("data/a.db"));
    EXPECT_EQ(nuvo::pathFromForm(forms() + u("/..a.db"), forms()), u("..a.db"));
    EXPECT_EQ(nuvo::pathFromForm(working() + u("/a.db"), forms()), working() + u("/a.db"));
    EXPECT_EQ(nuvo::pathFromForm(forms() + u("2/a.db"), forms()), forms() + u("2/a.db"));
    EXPECT_EQ(nuvo::pathFromForm(forms() + u("/a.db"), QString()), forms() + u("/a.db")) << "not saved yet";
    EXPECT_EQ(nuvo::pathFromForm(u("a.db"), forms()), u("a.db"));
    EXPECT_EQ(nuvo::pathFromForm(u("postgresql://host/db"), forms()), u("postgresql://host/db"));
}

TEST_F(FormFolders, LinksToAFolderOrAFileLeadBesideTheForm)
{
    make(forms() + u("/a.db"), 1);
    make(working() + u("/far.db"), 2);
    const QString link = working() + u("/link to forms");
    ASSERT_TRUE(QFile::link(forms(), link));
    // The form was opened by one way, the file chosen by the other.
    EXPECT_EQ(nuvo::pathFromForm(forms() + u("/a.db"), link), u("a.db"));
    EXPECT_EQ(nuvo::pathFromForm(link + u("/a.db"), forms()), u("a.db"));
    // What is linked into the folder is in it.
    ASSERT_TRUE(QFile::link(working() + u("/far.db"), forms() + u("/near.db")));
    ASSERT_TRUE(QFile::link(working(), forms() + u("/place")));
    EXPECT_EQ(nuvo::pathFromForm(forms() + u("/near.db"), forms()), u("near.db"));
    EXPECT_EQ(nuvo::pathFromForm(forms() + u("/place/far.db"), forms()), u("place/far.db"));
    EXPECT_EQ(opened(u("near.db")), 2);
    EXPECT_EQ(opened(u("place/far.db")), 2);
}
