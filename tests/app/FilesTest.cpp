// SPDX-License-Identifier: MIT
#include "app/Fit.h"
#include "app/Program.h"
#include "platform/Messages.h"
#include "platform/Modal.h"
#include "present/Mlroutpt.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QScopeGuard>
#include <QTemporaryDir>

namespace {

QStringList airquality(const QStringList &more)
{
    return QStringList{u("fit"),        u("--database"),    u(SAMPLES_DB),  u("--table"), u("Airquality"),
                       u("--response"), u("Ln(Ozone)"),     u("--control"), u("Temp"),    u("--control"),
                       u("1/Wind"),     u("--description"), u("On Ozone")} +
           more;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

TEST(FitFiles, TheReportIsWrittenAsTheEndingSaysAndPrintedAsEver)
{
    const QTemporaryDir directory;
    const QString printed = withoutTimes(runProgram(airquality({})).out);
    for (const char *name : {"r.pdf", "r.html", "r.HTM", "r.md", "r.txt", "r.png"}) {
        const Outcome run = runProgram(airquality({u("--save-report"), u(name)}), directory.path());
        EXPECT_EQ(run.status, 0) << name;
        EXPECT_EQ(run.err, QString()) << name;
        EXPECT_EQ(withoutTimes(run.out), printed) << name;
    }
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name).join(u' '),
              u("r.HTM r.html r.md r.pdf r.png r.txt"));
    EXPECT_TRUE(contentOf(directory.filePath(u("r.pdf"))).startsWith("%PDF-"));
    EXPECT_TRUE(
        contentOf(directory.filePath(u("r.html"))).contains("Linear regression of Ln(Ozone) on Temp, 1/Wind"));
    EXPECT_GE(QImage(directory.filePath(u("r.png"))).width(), 486);
    EXPECT_TRUE(contentOf(directory.filePath(u("r.md"))).contains("| Temp"));
    EXPECT_TRUE(contentOf(directory.filePath(u("r.txt"))).contains("F(2, 113) = 81.46270, p = 1.242232e-22"));
}

TEST(FitFiles, EveryPlotIsWrittenIntoADirectoryThatIsMade)
{
    const QTemporaryDir directory;
    const Outcome run =
        runProgram(airquality({u("--save-canvases"), u("a/b"), u("--format"), u("json")}), directory.path());
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_TRUE(nlohmann::json::accept(run.out.toStdString()));
    const QDir plots(directory.filePath(u("a/b")));
    const QStringList names = plots.entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(names.join(u' '), u("ecdf.png residual-fitted.png residual-order.png residual-response.png "
                                  "residual-x1.png residual-x2.png scatter-x1.png scatter-x2.png"));
    for (const QString &name : names) {
        const QImage plot(plots.filePath(name));
        EXPECT_EQ(plot.size(), QSize(327, 185)) << name.toStdString();
        EXPECT_EQ(plot.pixelColor(0, 0), QColor(Qt::white)) << name.toStdString();
    }
    // Into a directory that is there, over the files of before.
    EXPECT_EQ(runProgram(airquality({u("--save-canvases"), u("a/b")}), directory.path()).status, 0);
    EXPECT_EQ(plots.entryList(QDir::Files, QDir::Name), names);
}

TEST(FitFiles, AQueryHasThemToo)
{
    const QTemporaryDir directory;
    const Outcome run =
        runProgram({u("fit"), u("--database"), u(SAMPLES_DB), u("--sql"), u("SELECT * FROM Longley"), u("--response"),
                    u("TOTEMP"), u("--save-report"), u("r.txt"), u("--save-canvases"), u("p")},
                   directory.path());
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(contentOf(directory.filePath(u("r.txt"))).contains("Query SELECT * FROM Longley, "));
    EXPECT_TRUE(QFile::exists(directory.filePath(u("p/ecdf.png"))));
    EXPECT_FALSE(QFile::exists(directory.filePath(u("p/scatter-x1.png")))) << "there is no control variable";
}

TEST(FitFiles, WhatCannotBeWrittenIsStatus3AndNothingIsLeftNorPrinted)
{
    const QTemporaryDir directory;
    const QString file = directory.filePath(u("file"));
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    const auto fails = [&](const QStringList &more, const QString &reason) {
        const Outcome run = runProgram(airquality(more), directory.path());
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.out, QString());
        EXPECT_EQ(run.err, u("nuvostat: ") + reason + u'\n');
    };
    fails({u("--save-report"), u("no/r.pdf")}, u("Cannot write \"no/r.pdf\": No such file or directory."));
    fails({u("--save-canvases"), u("file/p")}, u("Cannot make the directory \"file/p\"."));
    fails({u("--save-canvases"), u("file")}, u("Cannot make the directory \"file\"."));
    ASSERT_TRUE(QDir(directory.path()).mkdir(u("d.txt")));
    fails({u("--save-report"), u("d.txt")}, u("Cannot write \"d.txt\": Filename refers to a directory."));
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name).join(u' '),
              u("d.txt file"));

    const Outcome json =
        runProgram(airquality({u("--save-report"), u("no/r.pdf"), u("--format"), u("json")}), directory.path());
    EXPECT_EQ(json.status, 3);
    EXPECT_EQ(nlohmann::json::parse(json.out.toStdString()).at("error"),
              "Cannot write \"no/r.pdf\": No such file or directory.");
}

TEST(FitFiles, WhatWasWrittenBeforeAFailureIsTold)
{
    const QTemporaryDir directory;
    ASSERT_TRUE(QDir(directory.path()).mkpath(u("p/scatter-x2.png")));
    const QString refused = u("nuvostat: Cannot write \"p/scatter-x2.png\": Filename refers to a directory.");
    const QStringList plots = airquality({u("--save-canvases"), u("p")});
    const Outcome alone = runProgram(plots, directory.path());
    EXPECT_EQ(alone.status, 3);
    EXPECT_EQ(alone.out, QString());
    EXPECT_EQ(alone.err, refused + u(" Written before it: scatter-x1.png.\n"));
    EXPECT_EQ(runProgram(plots + QStringList{u("--save-report"), u("r.txt")}, directory.path()).err,
              refused + u(" Written before it: scatter-x1.png. Written: the report \"r.txt\".\n"));

    QStringList quoted;
    for (const QString &argument : airquality({u("--save-report"), u("r.html"), u("--save-canvases"), u("q")}))
        quoted.append(u'\'' + argument + u'\'');
    EXPECT_EQ(
        runShell(u("\"$nuvostat\" ") + quoted.join(u' ') + u(" >/dev/full"), directory.path()).err,
        u("nuvostat: Standard output cannot be written: No space left on device. Written: the report \"r.html\" "
          "and the canvases in \"q\".\n"));
}

TEST(FitFiles, ADeviceIsNotReplaced)
{
    const QTemporaryDir directory;
    ASSERT_TRUE(QFile::link(u("/dev/full"), directory.filePath(u("full.txt"))));
    const Outcome run = runProgram(airquality({u("--save-report"), u("full.txt")}), directory.path());
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err, u("nuvostat: Cannot write \"full.txt\": it is a device or a pipe.\n"));
    EXPECT_FALSE(QFileInfo(u("/dev/full")).isFile());
}

TEST(FitFiles, AFullDiskLeavesWhatWasThere)
{
    const QTemporaryDir directory;
    QStringList quoted;
    for (const QString &argument : airquality({}))
        quoted.append(u'\'' + argument + u'\'');
    const QString limited = u("ulimit -f 1; \"$nuvostat\" ") + quoted.join(u' ');
    for (const char *name : {"r.pdf", "r.html", "r.txt", "r.png"}) {
        QFile before(directory.filePath(u(name)));
        ASSERT_TRUE(before.open(QIODevice::WriteOnly));
        before.write("what was there");
        before.close();
        const Outcome run = runShell(limited + u(" --save-report ") + u(name), directory.path());
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.out, QString());
        EXPECT_EQ(run.err, u("nuvostat: Cannot write \"%1\": File too large.\n").arg(u(name)));
        EXPECT_EQ(contentOf(before.fileName()), "what was there");
    }
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files).size(), 4) << "no partial file";

    const Outcome plots =
        runShell(u("ulimit -f 0; \"$nuvostat\" %1 --save-canvases p").arg(quoted.join(u' ')), directory.path());
    EXPECT_EQ(plots.status, 3);
    EXPECT_EQ(plots.err, u("nuvostat: Cannot write \"p/scatter-x1.png\": File too large.\n"));
    EXPECT_TRUE(QDir(directory.filePath(u("p"))).isEmpty());
}

TEST(FitFiles, WithoutAResultNoneIsWritten)
{
    const auto database = TestDatabase::make(TestDatabase::Sqlite);
    database->exec(u("CREATE TABLE t (y INTEGER, x INTEGER)"));
    database->exec(u("INSERT INTO t VALUES (1, 4), (1, 5), (1, 7)"));
    const QTemporaryDir directory;
    const Outcome run =
        runProgram({u("fit"), u("--database"), database->name(), u("--table"), u("t"), u("--response"), u("y"),
                    u("--control"), u("x"), u("--save-report"), u("r.pdf"), u("--save-canvases"), u("p")},
                   directory.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.out.contains(u("No result.")));
    EXPECT_TRUE(QDir(directory.path()).isEmpty());
}

/// Fits y on x over these records and writes everything there is.
Outcome filesOf(const QString &records, const QTemporaryDir &directory)
{
    const auto database = TestDatabase::make(TestDatabase::Sqlite);
    database->exec(u("CREATE TABLE t (y REAL, x REAL)"));
    database->exec(u("INSERT INTO t VALUES ") + records);
    const QStringList fit{u("fit"), u("--database"), database->name(), u("--table"),         u("t"), u("--response"),
                          u("y"),   u("--control"),  u("x"),           u("--save-canvases"), u("p")};
    Outcome last;
    for (const char *name : {"r.pdf", "r.html", "r.txt", "r.png"}) {
        last = runProgram(fit + QStringList{u("--save-report"), u(name)}, directory.path());
        EXPECT_EQ(last.status, 0) << last.err.toStdString();
        EXPECT_GT(contentOf(directory.filePath(u(name))).size(), 500) << name;
    }
    EXPECT_EQ(QDir(directory.filePath(u("p"))).entryList(QDir::Files).size(), 6);
    return last;
}

/// Whether a plot shows a dot.
bool hasDots(const QTemporaryDir &directory, const char *name)
{
    QImage plot = QImage(directory.filePath(u("p/") + u(name))).convertToFormat(QImage::Format_RGB32);
    QImage empty(plot.size(), plot.format());
    empty.fill(Qt::white);
    return plot != empty;
}

TEST(FitFiles, NoDegreesOfFreedomAreWrittenAsTheyArePrinted)
{
    const QTemporaryDir directory;
    const Outcome run = filesOf(u("(1, 2), (3, 5)"), directory); // n = m + 1
    EXPECT_TRUE(run.out.contains(u("\nResidual     0               0            -\n"))) << run.out.toStdString();
    EXPECT_TRUE(
        contentOf(directory.filePath(u("r.txt"))).contains("\nResidual     0               0            -\n"));
    EXPECT_TRUE(hasDots(directory, "scatter-x1.png"));
    EXPECT_FALSE(hasDots(directory, "ecdf.png"));
}

TEST(FitFiles, AnExactFitIsWrittenAsItIsPrinted)
{
    const QTemporaryDir directory;
    const Outcome run = filesOf(u("(2, 1), (4, 2), (6, 3), (8, 4)"), directory);
    EXPECT_TRUE(run.out.contains(u("\ns = 0   R² = 1   adjusted R² = 1\n"))) << run.out.toStdString();
    EXPECT_TRUE(contentOf(directory.filePath(u("r.txt"))).contains("\ns = 0   R² = 1   adjusted R² = 1\n"));
    EXPECT_TRUE(hasDots(directory, "scatter-x1.png"));
    EXPECT_FALSE(hasDots(directory, "residual-x1.png"));
}

TEST(FitFiles, OneObservationHasNoResultAndNoFiles)
{
    const auto database = TestDatabase::make(TestDatabase::Sqlite);
    database->exec(u("CREATE TABLE t (y REAL, x REAL)"));
    database->exec(u("INSERT INTO t VALUES (1, 2)"));
    const QTemporaryDir directory;
    const Outcome run = runProgram({u("fit"), u("--database"), database->name(), u("--table"), u("t"),
                                    u("--response"), u("y"), u("--control"), u("x"), u("--save-report"), u("r.txt")},
                                   directory.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(QDir(directory.path()).isEmpty());
}

TEST(FitShow, WithoutADisplayIsStatus3)
{
    const QString sentence = u("--show needs a display, and none can be reached.");
    const Outcome run = runProgram(airquality({u("--show")})); // DISPLAY is not set there
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.out, QString());
    EXPECT_EQ(run.err, u("nuvostat: ") + sentence + u'\n');
    const Outcome json = runProgram(airquality({u("--show"), u("--format"), u("json")}));
    EXPECT_EQ(json.status, 3);
    EXPECT_EQ(nlohmann::json::parse(json.out.toStdString()).at("error"), sentence.toStdString());

    QStringList quoted;
    for (const QString &argument : airquality({u("--show")}))
        quoted.append(u'\'' + argument + u'\'');
    const Outcome offscreen = runShell(u("QT_QPA_PLATFORM=offscreen \"$nuvostat\" ") + quoted.join(u' '));
    EXPECT_EQ(offscreen.status, 3);
    EXPECT_EQ(offscreen.err, u("nuvostat: --show needs a display, but Qt's platform is \"offscreen\".\n"));
}

TEST(FitShow, TheWindowOpensOnceTheFitIsThereAndHasItsOwnMessages)
{
    nuvo::FitOptions options;
    options.database = u(SAMPLES_DB);
    options.table = u("Longley");
    options.response = nuvo::parseResponse(u("TOTEMP"));
    options.controls = {nuvo::parseControl(u("GNP"))};
    options.show = true;
    int shown = 0;
    QStringList messages;
    SetMessageHandler([&](const QString &text, TMsgDlgType, unsigned, int) {
        messages += text;
        return int(mrOk);
    });
    SetModalRunner([&](QDialog &dialog) {
        EXPECT_NE(qobject_cast<TRegressionOutputForm *>(&dialog), nullptr);
        ++shown;
        MessageDlg(u("a box of the window's"), TMsgDlgType::mtError);
        return 0;
    });
    const auto usual = qScopeGuard([] {
        SetModalRunner({});
        SetMessageHandler({});
    });
    EXPECT_TRUE(nuvo::fit(options));
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(messages, QStringList{u("a box of the window's")});

    options.filter = u("GNP < 0"); // no record
    EXPECT_FALSE(nuvo::fit(options));
    EXPECT_EQ(shown, 1) << "there is nothing to show";
}

} // namespace
