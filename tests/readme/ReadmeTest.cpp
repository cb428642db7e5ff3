#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

namespace {

const QString root = QStringLiteral(SOURCE_ROOT);

QStringList linesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "cannot read " << qPrintable(path);
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(u'\n');
}

/// A fenced block of a Markdown file.
struct Block
{
    QString language;
    /// The line in front of the fence.
    QString heading;
    QStringList lines;
};

std::vector<Block> blocksOf(const QStringList &text)
{
    std::vector<Block> blocks;
    bool inside = false;
    QString before;
    for (const QString &line : text) {
        if (line.startsWith(QLatin1String("```"))) {
            inside = !inside;
            if (inside)
                blocks.push_back({line.mid(3), before, {}});
        } else if (inside) {
            blocks.back().lines.append(line);
        } else if (!line.isEmpty()) {
            before = line;
        }
    }
    return blocks;
}

/// Of the documents whose commands and programs are held to what they show.
std::vector<Block> blocksThatRun()
{
    std::vector<Block> blocks;
    for (const char *document : {"/README.md", "/docs/designer.md"}) {
        const std::vector<Block> more = blocksOf(linesOf(root + QString::fromLatin1(document)));
        blocks.insert(blocks.end(), more.begin(), more.end());
    }
    return blocks;
}

/// What a console block shows: a command after "$ " and the lines that it prints.
struct Command
{
    QString text;
    QStringList output;
};

std::vector<Command> commandsOf(const Block &block)
{
    std::vector<Command> commands;
    bool continued = false;
    for (const QString &line : block.lines) {
        if (continued)
            commands.back().text += u'\n' + line;
        else if (line.startsWith(QLatin1String("$ ")))
            commands.push_back({line.mid(2), {}});
        else if (!commands.empty())
            commands.back().output.append(line);
        else
            ADD_FAILURE() << "output without a command: " << qPrintable(line);
        continued = !commands.empty() && commands.back().output.isEmpty() && line.endsWith(u'\\');
    }
    return commands;
}

/// A shown line "..." stands for any lines, "..." within a line for any text.
bool matches(const QStringList &shown, const QString &printed)
{
    QStringList parts;
    for (const QString &part : shown.join(u'\n').trimmed().split(QStringLiteral("...")))
        parts.append(QRegularExpression::escape(part));
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(parts.join(QStringLiteral(".*"))),
                                     QRegularExpression::DotMatchesEverythingOption);
    return pattern.match(printed.trimmed()).hasMatch();
}

QStringList documents()
{
    QStringList paths;
    for (const char *folder : {"", "docs"}) {
        const QDir dir(root + u'/' + QString::fromLatin1(folder));
        for (const QString &name : dir.entryList({QStringLiteral("*.md")}, QDir::Files))
            paths.append(dir.filePath(name));
    }
    return paths;
}

} // namespace

TEST(Readme, EveryCommandPrintsWhatIsShown)
{
    // A reader is in the clone and has nuvostat on the path; what the commands make is made elsewhere.
    const QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    for (const char *name : {"samples", "scripts"})
        ASSERT_TRUE(QFile::link(root + u'/' + QString::fromLatin1(name), folder.filePath(QString::fromLatin1(name))));
    ASSERT_TRUE(QFile::copy(QStringLiteral(BUILD_ROOT "/samples.db"), folder.filePath(QStringLiteral("samples.db"))));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"),
                       QStringLiteral(BUILD_ROOT "/bin:" BUILD_ROOT "/examples:") + qEnvironmentVariable("PATH"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.path()); // Qt complains where there is none
    environment.insert(QStringLiteral("NUVO_BUILD_DIR"), QStringLiteral(BUILD_ROOT));

    int commands = 0;
    for (const Block &block : blocksThatRun()) {
        if (block.language != QLatin1String("console"))
            continue;
        for (Command command : commandsOf(block)) {
            SCOPED_TRACE(qPrintable(command.text));
            // This program is run by scripts/test.
            if (command.text == QLatin1String("scripts/test")) {
                command.text += QStringLiteral(" --help");
                command.output = {QStringLiteral("scripts/test...")};
            }
            // nuvostat needs no display; for an example the reader has one.
            if (command.text.startsWith(QLatin1String("example_")))
                environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
            else
                environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
            QProcess shell;
            shell.setProcessEnvironment(environment);
            shell.setWorkingDirectory(folder.path());
            shell.setProcessChannelMode(QProcess::MergedChannels);
            shell.start(QStringLiteral("bash"), {QStringLiteral("-c"), command.text});
            ASSERT_TRUE(shell.waitForFinished(60000));
            const QString printed = QString::fromUtf8(shell.readAll());
            EXPECT_TRUE(matches(command.output, printed)) << "shown:\n"
                                                          << qPrintable(command.output.join(u'\n')) << "\nprinted:\n"
                                                          << qPrintable(printed);
            ++commands;
        }
    }
    EXPECT_GT(commands, 0);
}

TEST(Readme, EveryProgramShownIsTheFileThatIsCompiled)
{
    int programs = 0;
    for (const Block &block : blocksThatRun()) {
        if (block.language != QLatin1String("cpp"))
            continue;
        static const QRegularExpression link(QStringLiteral("\\((?:\\.\\./)?(examples/\\w+\\.cpp)\\)"));
        const QString path = link.match(block.heading).captured(1);
        ASSERT_FALSE(path.isEmpty()) << "the line before a program names its file: " << qPrintable(block.heading);
        EXPECT_EQ(block.lines.join(u'\n'), linesOf(root + u'/' + path).join(u'\n').trimmed()) << qPrintable(path);
        ++programs;
    }
    EXPECT_GT(programs, 0);
}

TEST(Documents, EveryLinkLeadsSomewhere)
{
    static const QRegularExpression link(QStringLiteral("\\]\\(([^)#]+)(#[^)]*)?\\)"));
    for (const QString &path : documents()) {
        auto links = link.globalMatch(linesOf(path).join(u'\n'));
        while (links.hasNext()) {
            const QString target = links.next().captured(1);
            if (!target.startsWith(QLatin1String("https://"))) {
                EXPECT_TRUE(QFile::exists(QFileInfo(path).dir().filePath(target)))
                    << qPrintable(path) << " links to " << qPrintable(target);
            }
        }
    }
}

TEST(Documents, DependenciesNameEveryPackageOfTheScripts)
{
    const QString told = linesOf(root + QStringLiteral("/docs/dependencies.md")).join(u'\n');
    static const QRegularExpression package(QStringLiteral("^(build|test|lint|measure) +(\\S+)"));
    int packages = 0;
    for (const QString &line : linesOf(root + QStringLiteral("/scripts/packages"))) {
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
