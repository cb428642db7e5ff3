// SPDX-License-Identifier: MIT
#include "platform/Savefile.h"

#include "platform/Errors.h"
#include "support/Print.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

using nuvo::saveFile;

bool writeHello(QIODevice &device)
{
    return device.write("hello") == 5;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

QString errorOf(const QString &path, const std::function<bool(QIODevice &)> &write = writeHello)
{
    try {
        saveFile(path, write);
    } catch (const EPlatformError &error) {
        return error.Message();
    }
    return {};
}

class SaveFile : public testing::Test
{
protected:
    QString file(const char *name) const { return directory_.filePath(QLatin1String(name)); }
    QStringList files() const
    {
        return QDir(directory_.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private:
    QTemporaryDir directory_;
};

TEST_F(SaveFile, WritesANewFileAndReplacesAnOldOne)
{
    saveFile(file("a"), writeHello);
    EXPECT_EQ(contentOf(file("a")), "hello");
    saveFile(file("a"), [](QIODevice &device) { return device.write("x") == 1; });
    EXPECT_EQ(contentOf(file("a")), "x");
    saveFile(file("a"), [](QIODevice &) { return true; });
    EXPECT_EQ(contentOf(file("a")), "");
    EXPECT_EQ(files(), QStringList{QStringLiteral("a")});
}

TEST_F(SaveFile, ContentThatCannotBeMadeLeavesTheOldFile)
{
    saveFile(file("a"), writeHello);
    EXPECT_EQ(errorOf(file("a"),
                      [](QIODevice &device) {
                          device.write("half of it");
                          return false;
                      }),
              QStringLiteral("Cannot write \"%1\": its content could not be made.").arg(file("a")));
    EXPECT_EQ(contentOf(file("a")), "hello");
    EXPECT_EQ(files(), QStringList{QStringLiteral("a")});
    EXPECT_THROW(saveFile(file("a"), [](QIODevice &) -> bool { throw EPlatformError(QString()); }), EPlatformError);
    EXPECT_EQ(contentOf(file("a")), "hello");
}

TEST_F(SaveFile, AFullDiskLeavesTheOldFileHoweverLittleIsMissing)
{
    saveFile(file("a"), writeHello);
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const auto restore = qScopeGuard([&] {
        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    });
    for (const int size : {1001, 100000, 3000000}) {
        rlimit small = before;
        small.rlim_cur = 1000;
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
        const QString error = errorOf(file("a"), [size](QIODevice &device) {
            device.write(QByteArray(size, 'x'));
            return true;
        });
        ::setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(error, QStringLiteral("Cannot write \"%1\": File too large.").arg(file("a"))) << size;
        EXPECT_EQ(contentOf(file("a")), "hello") << size;
        EXPECT_EQ(files(), QStringList{QStringLiteral("a")}) << size;
    }
}

TEST_F(SaveFile, ADirectoryThatIsNotThereAndOneInTheWayAreNamed)
{
    EXPECT_EQ(errorOf(file("no/a")),
              QStringLiteral("Cannot write \"%1\": No such file or directory.").arg(file("no/a")));
    ASSERT_TRUE(QDir().mkdir(file("d")));
    EXPECT_EQ(errorOf(file("d")),
              QStringLiteral("Cannot write \"%1\": Filename refers to a directory.").arg(file("d")));
    EXPECT_EQ(files(), QStringList{QStringLiteral("d")});
}

TEST_F(SaveFile, DevicesAndPipesAreNotReplaced)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(file("pipe")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/null"), file("device")));
    for (const char *name : {"pipe", "device"})
        EXPECT_EQ(errorOf(file(name)),
                  QStringLiteral("Cannot write \"%1\": it is a device or a pipe.").arg(file(name)));
    struct stat status = {};
    ASSERT_EQ(::stat("/dev/null", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
    EXPECT_EQ(files().size(), 2);
}

TEST_F(SaveFile, ALinkStaysALink)
{
    saveFile(file("a"), writeHello);
    ASSERT_TRUE(QFile::link(file("a"), file("link")));
    saveFile(file("link"), [](QIODevice &device) { return device.write("new") == 3; });
    EXPECT_TRUE(QFileInfo(file("link")).isSymLink());
    EXPECT_EQ(contentOf(file("a")), "new");
}

} // namespace
