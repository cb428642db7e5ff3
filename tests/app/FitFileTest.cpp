// SPDX-License-Identifier: MIT
#include "app/Program.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>

// fit, select and import of a CSV file without a database of one's own.

namespace {

class FitFile : public testing::Test
{
protected:
    void SetUp() override
    {
        QDir(directory_.path()).mkdir(u("tmp"));
        QFile::copy(u(SOURCE_ROOT "/samples/Cement.csv"), directory_.filePath(u("Cement.csv")));
    }
    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(directory_.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    /// With a folder of its own for temporary files.
    Outcome run(const QString &arguments)
    {
        return runShell(u("TMPDIR=\"$PWD/tmp\" \"$nuvostat\" ") + arguments, directory_.path());
    }
    QStringList leftBehind() const
    {
        return QDir(directory_.filePath(u("tmp"))).entryList({u("nuvostat-*")}, QDir::AllEntries | QDir::Hidden);
    }

    QTemporaryDir directory_;
};

} // namespace

TEST_F(FitFile, GivesWhatItsTableGives)
{
    const QString variables = u(" --response Heat --control Aluminate --control Silicate --format json");
    const Json file = parsed(run(u("fit Cement.csv") + variables));
    EXPECT_EQ(run(u("import Cement.csv --database own.db --table Cement.csv")).status, 0);
    const Json table = parsed(run(u("fit --database own.db --table Cement.csv") + variables));
    EXPECT_EQ(file, table);
    EXPECT_EQ(file["dataset"], "Cement.csv");
    EXPECT_EQ(file["observations"], 13);
    EXPECT_EQ(leftBehind(), QStringList());
    const Json chosen = parsed(run(u("select forward Cement.csv --rule textbook --control Belite") + variables));
    EXPECT_EQ(chosen["selected"]["dataset"], "Cement.csv");
    EXPECT_EQ(leftBehind(), QStringList());
}

TEST_F(FitFile, IsReadAsItIsWritten)
{
    write(u("werte.csv"), "Größe;Preis;Tag\r\n1,5;2,25;31.12.2024\r\n2,5;3;1.1.2025\r\n4;5,5;2.1.2025\r\n");
    const Json german = parsed(run(u("fit werte.csv --response Preis --control Größe --format json")));
    EXPECT_EQ(german["yMax"], 5.5);
    EXPECT_EQ(german["xMin"][0], 1.5);
    write(u("pipe.csv"), "a|b\n1|2\n2|3\n4|4\n");
    EXPECT_EQ(parsed(run(u("fit pipe.csv --separator '|' --response b --control a --format json")))["observations"],
              3);
    const Json filtered =
        parsed(run(u("fit pipe.csv --separator '|' --response b --control a --filter 'a > 1' --order a --records all "
                     "--format json")));
    EXPECT_EQ(filtered["observations"], 2);
}

TEST_F(FitFile, ACellThatIsNoNumberIsNamedWithItsLineAndColumn)
{
    write(u("data.csv"), "y,\"a b\"\n1,2\n\n\"x\ny\",3\n2,\"1,234.5\"\n3,4\n");
    const Outcome run = this->run(u("fit data.csv --response '\"a b\"'"));
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(
        run.err,
        u("nuvostat: \"1,234.5\" has thousands separators, so it is not read as a number (field \"a b\" of table "
          "\"data.csv\", record 3). In \"data.csv\" the first such cell is in line 6, column \"a b\": "
          "\"1,234.5\". Write the numbers without them.\n"));
    EXPECT_EQ(leftBehind(), QStringList());
    write(u("days.csv"), "y;day\n1;2024-01-31\n2;2024-02-01\n");
    EXPECT_TRUE(this->run(u("fit days.csv --response y --control day"))
                    .err.contains(u("\"2024-01-31\" is a date, so it is not read as a number")));
    write(u("gaps.csv"), "y,x\n1,2\n2,.\n3,4\n4,1\n");
    EXPECT_TRUE(this->run(u("fit gaps.csv --response y --control x"))
                    .err.endsWith(u("Correct it, or, where it stands for a missing value, --null \".\".\n")));
    write(u("kinds.csv"), "y,kind\n1,it's\n2,b\n");
    EXPECT_TRUE(this->run(u("fit kinds.csv --response y --control kind"))
                    .err.endsWith(u("of which --sql makes a column such as \"kind\" = 'it''s' AS indicator.\n")));
}

TEST_F(FitFile, WhatStandsForAMissingValueCanBeTold)
{
    write(u("gaps.csv"), "y,x\n1,2\n2,.\n3,4\n-999,7\n4,1\n");
    const Json fit = parsed(run(u("fit gaps.csv --null . --null -999 --response y --control x --format json")));
    EXPECT_EQ(fit["observations"], 3);
    EXPECT_EQ(fit["leftOut"][0]["null"], 1);
    EXPECT_EQ(fit["leftOut"][1]["null"], 1);
    EXPECT_EQ(run(u("import gaps.csv --null . --database gaps.db --table gaps")).out,
              u("Imported 5 rows into table \"gaps\": y INTEGER, x INTEGER.\n"));
}

TEST_F(FitFile, OfWhatStatisticsProgramsAndSpreadsheetsWriteIsFitted)
{
    const QString model = u(" --response y --control x --format json");
    write(u("blanks.txt"), "\"x\" \"y\"\n\"1\" 5 1.5\n\"2\" 6 NA\n\"3\" 7 2\n\"4\" 9 4\n");
    EXPECT_EQ(parsed(run(u("fit blanks.txt") + model))["observations"], 3);
    write(u("sheet.csv"), "sep=;\r\n;x;;y;\r\n;5;;1,5;\r\n;6;;2;\r\n;9;;4,25;\r\n");
    const Json sheet = parsed(run(u("fit sheet.csv") + model));
    EXPECT_EQ(sheet["observations"], 3);
    EXPECT_EQ(sheet["yMax"], 4.25);
    const QString head = run(u("fit sheet.csv --head 1")).out;
    EXPECT_TRUE(head.startsWith(u("sheet.csv: 3 records of 2 columns; 3 others have neither names nor values.\n")))
        << head.toStdString();
    EXPECT_TRUE(head.endsWith(u("\nx    y\n5  1,5\n"))) << head.toStdString();
}

TEST_F(FitFile, TermsOfOtherProgramsAreToldAsTheyAreWrittenHere)
{
    const auto advice = [this](const QString &term) {
        const Outcome run = this->run(u("fit Cement.csv --response Heat --control '%1'").arg(term));
        EXPECT_EQ(run.status, 3) << term.toStdString();
        return run.err.section(u(". "), -1).trimmed();
    };
    EXPECT_EQ(advice(u("log(Ferrite)")), u("A natural logarithm is written Ln(F)."));
    EXPECT_EQ(advice(u("ln (Ferrite)")), u("A natural logarithm is written Ln(F)."));
    EXPECT_EQ(advice(u("sqrt(Ferrite)")), u("A square root is written F^1/2."));
    EXPECT_EQ(advice(u("Ferrite:Belite")), u("A product is written F*G."));
    EXPECT_EQ(advice(u("Ferrite, Belite")), u("--control is given once for each control variable."));
    EXPECT_EQ(advice(u("Ferrite + Belite")), u("--control is given once for each control variable."));
    EXPECT_TRUE(advice(u("Iron")).startsWith(u("nuvostat: No field \"Iron\"")));
    EXPECT_TRUE(run(u("fit Cement.csv --response 'log(Heat)' --control Ferrite")).err.endsWith(u("Ln(F).\n")));
}

TEST_F(FitFile, ThePageTellsThatAnOddPowerHasAMinusSign)
{
    write(u("x.csv"), "x,x^3,y\n1,1,2\n2,8,9\n3,27,26\n4,64,66\n5,125,120\n");
    const QString warning = u("An odd power is that of the absolute value with a minus sign: x^3.");
    EXPECT_TRUE(run(u("fit x.csv --response y --control x^3")).out.contains(warning));
    EXPECT_FALSE(run(u("fit x.csv --response y --control '\"x^3\"'")).out.contains(warning));
    EXPECT_FALSE(run(u("fit x.csv --response y --control x^2")).out.contains(warning));
}

TEST_F(FitFile, HeadTellsThatNamesAreNumbers)
{
    write(u("bare.csv"), "1,2.5\n2,3\n");
    EXPECT_TRUE(
        run(u("fit bare.csv --head 1")).out.contains(u("Header row    numbers: perhaps the names are missing\n")));
    EXPECT_FALSE(run(u("fit Cement.csv --head 1")).out.contains(u("Header row")));
}

TEST_F(FitFile, HeadShowsWhatIsUnderstoodAndMakesNothing)
{
    write(u("data.csv"), "id;Preis;Tag;Name\n1;1,5;2024-01-31;\"a\nb\"\n2;12,25;;c\n3;7;x;\n");
    const QString shown = u("data.csv: 3 records of 4 columns.\n"
                            "\n"
                            "Encoding      UTF-8: every byte is part of a character\n"
                            "Separator     semicolon: the header row has 3 semicolons and no comma\n"
                            "Decimal sign  comma: line 2 has \"1,5\"\n"
                            "\n"
                            "Column  Kind\n"
                            "id      whole numbers\n"
                            "Preis   floating-point numbers\n"
                            "Tag     texts (line 2: \"2024-01-31\" is a date)\n"
                            "Name    texts\n"
                            "\n"
                            "id  Preis  Tag         Name\n"
                            " 1    1,5  2024-01-31  a b\n"
                            " 2  12,25              c\n");
    for (const char *command : {"fit", "import", "select optimal"}) {
        const Outcome head = run(u(command) + u(" data.csv --head 2"));
        EXPECT_EQ(head.out, shown) << command;
        EXPECT_EQ(head.err, QString());
        EXPECT_EQ(head.status, 0);
    }
    EXPECT_FALSE(run(u("fit data.csv --head 0")).out.contains(u("12,25")));
    EXPECT_TRUE(run(u("fit data.csv --head 1 --separator ';'")).out.contains(u("semicolon: as told")));
    EXPECT_EQ(QDir(directory_.path()).entryList(QDir::Files), (QStringList{u("Cement.csv"), u("data.csv")}));
}

TEST_F(FitFile, ExcludesWhatBelongsToADatabase)
{
    for (const char *wrong :
         {"fit Cement.csv --database a.db --response Heat", "fit Cement.csv --sql 'SELECT 1' --response Heat",
          "fit Cement.csv --table t --response Heat", "fit --head 3 --database a.db --table t --response y",
          "fit --decimal , --database a.db --table t --response y", "fit Cement.csv --separator ab --response Heat",
          "fit Cement.csv --separator 5 --response Heat", "fit Cement.csv --encoding ebcdic --response Heat",
          "fit Cement.csv --decimal ';' --response Heat", "fit Cement.csv --head -1", "fit Cement.csv",
          "fit Cement.csv --head 3 --format json", "import Cement.csv --table t",
          "select stepwise Cement.csv --response Heat --f-table F"}) {
        const Outcome run = this->run(u(wrong));
        EXPECT_EQ(run.status, 2) << wrong << '\n' << run.out.toStdString() << run.err.toStdString();
        EXPECT_EQ(run.err.count(u'\n'), 1) << run.err.toStdString();
    }
    EXPECT_EQ(leftBehind(), QStringList());
}

TEST_F(FitFile, WhatCannotBeReadLeavesNothing)
{
    write(u("bad.csv"), "a,b\n1\n");
    EXPECT_EQ(run(u("fit bad.csv --response a")).err,
              u("nuvostat: \"bad.csv\", line 2: 1 cell where the header row has 2.\n"));
    EXPECT_EQ(run(u("fit none.csv --response a")).status, 3);
    EXPECT_EQ(run(u("fit Cement.csv --response None")).status, 3);
    EXPECT_EQ(leftBehind(), QStringList());
    const Outcome nowhere =
        runShell(u("TMPDIR=/no/such \"$nuvostat\" fit Cement.csv --response Heat"), directory_.path());
    EXPECT_EQ(nowhere.status, 3);
    EXPECT_TRUE(nowhere.err.contains(u("TMPDIR"))) << nowhere.err.toStdString();
}

TEST_F(FitFile, ASignalRemovesTheTemporaryDatabase)
{
    QByteArray bytes = "y;a;b\n";
    for (int i = 0; i < 400000; ++i)
        bytes +=
            QByteArray::number(i % 1009) + ",5;" + QByteArray::number(i % 97) + ';' + QByteArray::number(i) + '\n';
    write(u("long.csv"), bytes);
    for (const int signal : {SIGINT, SIGTERM}) {
        for (const int delay : {30, 200, 600, 1200}) {
            // The shell becomes the program.
            QProcess process;
            process.setWorkingDirectory(directory_.path());
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u("TMPDIR"), directory_.filePath(u("tmp")));
            process.setProcessEnvironment(environment);
            process.start(u(NUVOSTAT_PROGRAM), {u("select"), u("optimal"), u("long.csv"), u("--response"), u("y"),
                                                u("--control"), u("a"), u("--control"), u("b"), u("--records=all")});
            ASSERT_TRUE(process.waitForStarted());
            waitForSignalHandler(process);
            QThread::msleep(ulong(delay));
            ::kill(pid_t(process.processId()), signal);
            ASSERT_TRUE(process.waitForFinished());
            EXPECT_TRUE(process.exitCode() == 128 + signal || process.exitCode() == 0);
            EXPECT_EQ(leftBehind(), QStringList()) << delay;
        }
    }
}

TEST(Samples, AreWrittenIntoAFolder)
{
    const QTemporaryDir directory;
    const Outcome run = runProgram({u("samples"), u("a b/demo")}, directory.path());
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, u("Wrote a b/demo/samples.db, a b/demo/Cement.csv and a b/demo/Longley.ui. Try: nuvostat fit "
                         "\"a b/demo/Cement.csv\" --response Heat --control Aluminate --control Silicate\n"));
    const QDir demo(directory.filePath(u("a b/demo")));
    EXPECT_EQ(demo.entryList(QDir::Files), (QStringList{u("Cement.csv"), u("Longley.ui"), u("samples.db")}));
    const QString fit = u("fit --database samples.db --table Longley --response TOTEMP --control GNP --format json");
    const Json own = parsed(runProgram(fit.split(u' '), demo.path()));
    EXPECT_EQ(own["observations"], 16);
    EXPECT_EQ(runProgram({u("run"), u("Longley.ui")}, demo.path()).status, 0);
    // Again: nothing is replaced.
    const Outcome again = runProgram({u("samples"), u("a b/demo")}, directory.path());
    EXPECT_EQ(again.status, 3);
    EXPECT_TRUE(again.err.contains(u("is there already; remove it or name another folder.")))
        << again.err.toStdString();
    QFile::remove(demo.filePath(u("samples.db")));
    EXPECT_EQ(runProgram({u("samples"), u("a b/demo")}, directory.path()).status, 3);
    EXPECT_EQ(demo.entryList(QDir::Files), (QStringList{u("Cement.csv"), u("Longley.ui")}));
    EXPECT_EQ(runProgram({u("samples"), u("Cement.csv/x")}, demo.path()).status, 3);
}

TEST(Program, WithoutACommandItSaysHowToBegin)
{
    const Outcome run = runProgram({});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, QString());
    EXPECT_TRUE(
        run.err.startsWith(u("nuvostat: A command is missing: fit, select, run, import, ftable or samples.\n\n"
                             "To begin:\n  nuvostat samples demo\n")))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(u("nuvostat --help")));
    for (const QString &line : run.err.split(u'\n'))
        EXPECT_LE(line.size(), 80);
    // What it says works.
    const QTemporaryDir directory;
    EXPECT_EQ(runProgram({u("samples"), u("demo")}, directory.path()).status, 0);
    EXPECT_EQ(
        runShell(u("\"$nuvostat\" fit demo/Cement.csv --response Heat --control Aluminate &&"
                   "\"$nuvostat\" fit --database demo/samples.db --table Longley --response TOTEMP --control GNP"
                   " --control UNEMP"),
                 directory.path())
            .status,
        0);
}
