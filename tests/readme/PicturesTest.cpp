// SPDX-License-Identifier: MIT
#include "readme/Documents.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// The share of pixels that differ by more than smoothing does; 1 for pictures of different sizes.
double difference(const QImage &one, const QImage &other)
{
    if (one.isNull() || one.size() != other.size())
        return 1;
    qint64 different = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y);
            const QColor b = other.pixelColor(x, y);
            const int most = std::max(
                {std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
            different += most > 64 ? 1 : 0;
        }
    }
    return double(different) / (double(one.width()) * one.height());
}

} // namespace

TEST(Pictures, ThoseOfTheGuideAreWhatItsProgramPaintsToday)
{
    const QTemporaryDir folder;
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(GUIDEPICTURES), {QStringLiteral(BUILD_ROOT "/samples.db"), folder.path()});
    ASSERT_TRUE(program.waitForFinished(60000));
    ASSERT_EQ(program.exitCode(), 0) << program.readAll().constData();
    int pictures = 0;
    for (const QString &name : QDir(folder.path()).entryList({QStringLiteral("*.png")}, QDir::Files)) {
        const QImage painted(folder.filePath(name));
        const QImage shown(documents::root() + QStringLiteral("/docs/images/") + name);
        EXPECT_LT(difference(painted, shown), 0.005) << qPrintable(name) << ": the target `pictures` makes it anew";
        ++pictures;
    }
    EXPECT_EQ(pictures, 4);
}

#ifdef QUICKPICTURE
TEST(Pictures, ThePageOfQtQuickIsWhatIsShown)
{
    const QTemporaryDir folder;
    QProcess program;
    program.setWorkingDirectory(QStringLiteral(BUILD_ROOT)); // where samples.db is
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(QUICKPICTURE), {folder.filePath(QStringLiteral("quick.png"))});
    ASSERT_TRUE(program.waitForFinished(60000));
    ASSERT_EQ(program.exitCode(), 0) << program.readAll().constData();
    EXPECT_LT(difference(QImage(folder.filePath(QStringLiteral("quick.png"))),
                         QImage(documents::root() + QStringLiteral("/docs/images/example-quick.png"))),
              0.005);
}
#endif

TEST(Pictures, OneThatShowsSomethingElseIsNoticed)
{
    QImage white(20, 20, QImage::Format_RGB32);
    white.fill(Qt::white);
    QImage marked = white;
    for (int x = 0; x < 20; ++x)
        marked.setPixelColor(x, 10, Qt::black);
    EXPECT_EQ(difference(white, white), 0);
    EXPECT_GT(difference(white, marked), 0.005);
    EXPECT_EQ(difference(white, QImage()), 1);
}
