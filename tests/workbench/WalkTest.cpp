// SPDX-License-Identifier: MIT
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <set>

namespace {

QString textOf(const QString &name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

} // namespace

// From a file that R has written to paper, with another program's mouse and keyboard.
TEST(Walk, FromACsvFileToAPrintedReportTakesEightActionsAtMost)
{
    for (const char *program : {"Xvfb", "xdotool", "import", "pdftotext"}) {
        if (QStandardPaths::findExecutable(u(program)).isEmpty())
            GTEST_SKIP() << program << " is not installed";
    }
    const QString folder = QStringLiteral(WALK_FOLDER);
    QProcess walk;
    walk.setProcessChannelMode(QProcess::MergedChannels);
    walk.start(QStringLiteral(WALK_SCRIPT), {QStringLiteral(BUILD_FOLDER), QStringLiteral(LONGLEY_CSV), folder});
    ASSERT_TRUE(walk.waitForFinished(240000));
    ASSERT_EQ(walk.exitCode(), 0) << walk.readAll().constData();

    const QStringList actions = textOf(folder + u("/actions")).split(u'\n', Qt::SkipEmptyParts);
    EXPECT_LE(actions.size(), 8) << actions.join(u'\n').toStdString();

    // The figures that NIST certifies for these data, in the units of the file.
    QProcess words;
    words.start(u("pdftotext"), {folder + u("/report.pdf"), u("-")});
    ASSERT_TRUE(words.waitForFinished(30000));
    const QString report = QString::fromUtf8(words.readAllStandardOutput()).simplified();
    for (const char *figure :
         {"Linear regression of Employed on GNP.deflator, GNP, Unemployed, Armed.Forces",
          "16 of 16 records were used", "-3482.259", "0.3048541", "0.9954790", "330.2853", "Residuals"})
        EXPECT_TRUE(report.contains(u(figure))) << figure << '\n' << report.toStdString();

    // Pictures of a window that shows something else each time.
    std::set<QByteArray> seen;
    const QStringList pictures = QDir(folder).entryList({u("*.png")});
    EXPECT_GE(pictures.size(), 8);
    for (const QString &picture : pictures) {
        const QImage image(folder + u'/' + picture);
        EXPECT_GT(image.width(), 300) << picture.toStdString();
        seen.insert(QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes()));
    }
    EXPECT_EQ(qsizetype(seen.size()), pictures.size());
}
