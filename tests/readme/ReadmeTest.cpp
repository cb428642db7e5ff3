// SPDX-License-Identifier: MIT
#include "readme/Documents.h"

#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace documents;

namespace {

/// A folder as a reader of the documents has it, who is in the clone and has nuvostat on the path; what the commands
/// make is made there. Or as one has it who has installed the program, in an empty folder.
class Reader
{
public:
    explicit Reader(bool bare)
    {
        if (!bare)
            layOutClone();
        environment_.insert(QStringLiteral("PATH"), QStringLiteral(BUILD_ROOT "/bin:" BUILD_ROOT "/examples:") +
                                                        qEnvironmentVariable("PATH"));
        environment_.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path()); // Qt complains where there is none
        environment_.insert(QStringLiteral("NUVO_BUILD_DIR"), QStringLiteral(BUILD_ROOT));
    }

    void run(Command command)
    {
        SCOPED_TRACE(qPrintable(command.text));
        // This program is run by scripts/test.
        if (command.text == QLatin1String("scripts/test")) {
            command.text += QStringLiteral(" --help");
            command.output = {QStringLiteral("scripts/test...")};
        }
        // nuvostat needs no display; for an example the reader has one.
        if (command.text.startsWith(QLatin1String("example_")))
            environment_.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        else
            environment_.remove(QStringLiteral("QT_QPA_PLATFORM"));
        QProcess shell;
        shell.setProcessEnvironment(environment_);
        shell.setWorkingDirectory(folder_.path());
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.start(QStringLiteral("bash"), {QStringLiteral("-c"), command.text});
        ASSERT_TRUE(shell.waitForFinished(60000));
        QString printed = QString::fromUtf8(shell.readAll());
        static const QRegularExpression offscreen(QStringLiteral("This plugin does not support \\w+\\(\\)\n"));
        printed.remove(offscreen); // what Qt says of a window that nobody sees
        EXPECT_TRUE(matches(command.output, printed)) << "shown:\n"
                                                      << qPrintable(command.output.join(u'\n')) << "\nprinted:\n"
                                                      << qPrintable(printed);
    }

private:
    void layOutClone()
    {
        for (const char *name : {"samples", "scripts"}) {
            const QString entry = QString::fromLatin1(name);
            EXPECT_TRUE(QFile::link(root() + u'/' + entry, folder_.filePath(entry)));
        }
        EXPECT_TRUE(
            QFile::copy(QStringLiteral(BUILD_ROOT "/samples.db"), folder_.filePath(QStringLiteral("samples.db"))));
    }

    QTemporaryDir folder_;
    QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
};

class Shown : public testing::TestWithParam<Tour>
{
};

INSTANTIATE_TEST_SUITE_P(In, Shown, testing::ValuesIn(tours()), [](const auto &tour) { return tour.param.name; });

} // namespace

TEST_P(Shown, EveryCommandPrintsWhatIsShown)
{
    Reader reader(GetParam().bare);
    int commands = 0;
    for (const QString &page : GetParam().pages) {
        SCOPED_TRACE(qPrintable(page));
        for (const Block &block : blocksOf(linesOf(root() + u'/' + page))) {
            if (block.language != QLatin1String("console"))
                continue;
            for (const Command &command : commandsOf(block)) {
                reader.run(command);
                ++commands;
            }
        }
    }
    EXPECT_GT(commands, GetParam().name == "Documents" ? -1 : 0);
}

TEST_P(Shown, EveryProgramIsOneThatIsCompiled)
{
    for (const QString &page : GetParam().pages) {
        for (const Block &block : blocksOf(linesOf(root() + u'/' + page))) {
            if (block.language != QLatin1String("cpp"))
                continue;
            static const QRegularExpression link(
                QStringLiteral("\\((?:\\.\\./)*((?:examples|tests/reference)/\\w+\\.cpp)\\)"));
            const QString path = link.match(block.heading).captured(1);
            ASSERT_FALSE(path.isEmpty())
                << qPrintable(page) << ": the line before a program names its file: " << qPrintable(block.heading);
            EXPECT_TRUE(isPartOf(block.lines, linesOf(root() + u'/' + path)))
                << qPrintable(page) << " shows what is not in " << qPrintable(path) << ":\n"
                << qPrintable(block.lines.join(u'\n'));
        }
    }
}

TEST(Documents, EveryLinkLeadsSomewhere)
{
    static const QRegularExpression link(QStringLiteral("(?:\\]\\(|src=\")([^)#\" ]*)(?:#([^)\"]*))?[)\"]"));
    int links = 0;
    for (const QString &page : allPages()) {
        const QStringList text = linesOf(page);
        auto found = link.globalMatch(text.join(u'\n'));
        while (found.hasNext()) {
            const QRegularExpressionMatch match = found.next();
            const QString target = match.captured(1);
            if (target.startsWith(QLatin1String("https://")))
                continue;
            const QString path = target.isEmpty() ? page : QFileInfo(page).dir().filePath(target);
            ASSERT_TRUE(QFile::exists(path)) << qPrintable(page) << " links to " << qPrintable(target);
            if (!match.captured(2).isEmpty()) {
                EXPECT_TRUE(anchorsOf(linesOf(path)).contains(match.captured(2)))
                    << qPrintable(page) << " links to a heading that is not there: " << qPrintable(match.captured(0));
            }
            ++links;
        }
    }
    EXPECT_GT(links, 50);
}

TEST(Documents, EveryPageOfTheGuideIsInItsIndex)
{
    QStringList indexed;
    for (const Tour &tour : tours()) {
        if (tour.name == "Guide")
            indexed = tour.pages;
    }
    int pages = 0;
    for (const QString &page : allPages()) {
        if (!page.contains(QLatin1String("/docs/guide/")))
            continue;
        EXPECT_TRUE(indexed.contains(page.mid(root().size() + 1))) << qPrintable(page);
        ++pages;
    }
    EXPECT_GT(pages, 5);
}

TEST(Documents, TheGuideIsReadInHalfAnHour)
{
    // 200 words a minute; what commands print is looked at, not read.
    qsizetype words = 0;
    for (const Tour &tour : tours()) {
        if (tour.name != "Guide")
            continue;
        for (const QString &page : tour.pages) {
            bool inside = false;
            for (const QString &line : linesOf(root() + u'/' + page)) {
                if (line.startsWith(QLatin1String("```")))
                    inside = !inside;
                else if (!inside)
                    words += line.split(u' ', Qt::SkipEmptyParts).size();
            }
        }
    }
    EXPECT_GT(words, 1000);
    EXPECT_LE(words, 30 * 200);
}

TEST(Documents, FormulasNameSourcesAndTestsThatExist)
{
    QString tests;
    QDirIterator sources(root() + QStringLiteral("/tests"), {QStringLiteral("*.cpp")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (sources.hasNext())
        tests += linesOf(sources.next()).join(u'\n');
    const auto isTest = [&](const QString &name) {
        const QString suite = name.section(u'/', -1);
        return QRegularExpression(QStringLiteral("TEST(_F|_P)?\\(") + suite + u',').match(tests).hasMatch();
    };
    const auto isSource = [](const QString &name) {
        for (const char *folder : {"/", "/engine/", "/engine/kernel/"}) {
            if (QFile::exists(root() + QLatin1String(folder) + name + QStringLiteral(".h")))
                return true;
        }
        return false;
    };
    int named = 0;
    QStringList headings;
    for (const QString &line : linesOf(root() + QStringLiteral("/docs/formulas.md"))) {
        QString cut = line;
        const QStringList cells = cut.replace(QStringLiteral("\\|"), QStringLiteral(" ")).split(u'|');
        if (cells.size() < 3)
            headings.clear();
        else if (headings.isEmpty())
            headings = cells;
        static const QRegularExpression name(QStringLiteral("`([A-Z]\\w+|\\w+/[\\w/]+)`"));
        for (qsizetype i = 0; i < cells.size() && i < headings.size(); ++i) {
            auto names = name.globalMatch(cells[i]);
            while (names.hasNext()) {
                const QString one = names.next().captured(1);
                if (headings[i].trimmed() == QLatin1String("where"))
                    EXPECT_TRUE(isSource(one)) << qPrintable(line);
                else if (headings[i].trimmed() == QLatin1String("held by"))
                    EXPECT_TRUE(isTest(one)) << qPrintable(line);
                else
                    continue;
                ++named;
            }
        }
    }
    EXPECT_GT(named, 40);
}

TEST(Documents, DependenciesNameEveryPackageOfTheScripts)
{
    const QString told = linesOf(root() + QStringLiteral("/docs/dependencies.md")).join(u'\n');
    static const QRegularExpression package(QStringLiteral("^([a-z]+) +(\\S+)"));
    int packages = 0;
    for (const QString &line : linesOf(root() + QStringLiteral("/scripts/packages"))) {
        const QRegularExpressionMatch match = package.match(line);
        if (!match.hasMatch())
            continue;
        EXPECT_TRUE(told.contains(u'`' + match.captured(2) + u'`')) << qPrintable(match.captured(2));
        ++packages;
    }
    EXPECT_GT(packages, 10);
}

TEST(ReadmeCheck, NoticesOutputThatDiffers)
{
    EXPECT_TRUE(
        matches({QStringLiteral("a"), QStringLiteral("..."), QStringLiteral("z")}, QStringLiteral("a\nb\nc\nz\n")));
    EXPECT_TRUE(matches({QStringLiteral("{\"a\": 1, ... }")}, QStringLiteral("{\"a\": 1, \"b\": 2 }")));
    EXPECT_FALSE(matches({QStringLiteral("a")}, QStringLiteral("b")));
    EXPECT_FALSE(matches({QStringLiteral("a")}, QStringLiteral("a\nb")));
    EXPECT_FALSE(matches({}, QStringLiteral("error: something")));
}

TEST(ReadmeCheck, NoticesAPieceOfAProgramThatIsNotInIt)
{
    const QStringList program = {QStringLiteral("int main()"), QStringLiteral("{"),
                                 QStringLiteral("    one();"), QString(),
                                 QStringLiteral("    two();"), QStringLiteral("}")};
    EXPECT_TRUE(isPartOf({QStringLiteral("one();"), QString(), QStringLiteral("two();")}, program));
    EXPECT_TRUE(isPartOf({QStringLiteral("int main()"), QStringLiteral("{")}, program));
    EXPECT_FALSE(isPartOf({QStringLiteral("one();"), QStringLiteral("two();")}, program));
    EXPECT_FALSE(isPartOf({QStringLiteral("one();"), QString(), QStringLiteral("    two();")}, program));
    EXPECT_FALSE(isPartOf({QStringLiteral("three();")}, program));
    EXPECT_FALSE(isPartOf({}, program));
}

TEST(ReadmeCheck, KnowsTheAnchorsOfHeadings)
{
    EXPECT_EQ(anchorsOf({QStringLiteral("# A prediction"), QStringLiteral("```"), QStringLiteral("# no"),
                         QStringLiteral("```"), QStringLiteral("## Errors, and what to do: R²")}),
              (QStringList{QStringLiteral("a-prediction"), QStringLiteral("errors-and-what-to-do-r²")}));
}
