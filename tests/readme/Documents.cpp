// SPDX-License-Identifier: MIT
#include "readme/Documents.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

namespace documents {

QString root()
{
    return QStringLiteral(SOURCE_ROOT);
}

QStringList linesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "cannot read " << qPrintable(path);
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(u'\n');
}

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

bool matches(const QStringList &shown, const QString &printed)
{
    QStringList parts;
    for (const QString &part : shown.join(u'\n').trimmed().split(QStringLiteral("...")))
        parts.append(QRegularExpression::escape(part));
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(parts.join(QStringLiteral(".*"))),
                                     QRegularExpression::DotMatchesEverythingOption);
    return pattern.match(printed.trimmed()).hasMatch();
}

bool isPartOf(const QStringList &shown, const QStringList &program)
{
    const auto indented = [&](qsizetype first, qsizetype depth) {
        for (qsizetype i = 0; i < shown.size(); ++i) {
            const QString &line = shown[i];
            if (program[first + i] != (line.isEmpty() ? line : QString(depth, u' ') + line))
                return false;
        }
        return true;
    };
    for (qsizetype first = 0; !shown.isEmpty() && first + shown.size() <= program.size(); ++first) {
        const qsizetype depth = program[first].size() - shown[0].size();
        if (depth >= 0 && indented(first, depth))
            return true;
    }
    return false;
}

std::vector<Tour> tours()
{
    QStringList guide = {QStringLiteral("docs/guide/README.md")};
    static const QRegularExpression page(QStringLiteral("^\\| \\[[^]]+\\]\\(([a-z-]+\\.md)\\)"));
    for (const QString &line : linesOf(root() + u'/' + guide[0])) {
        if (const QRegularExpressionMatch match = page.match(line); match.hasMatch())
            guide.append(QStringLiteral("docs/guide/") + match.captured(1));
    }
    return {{"Readme", {QStringLiteral("README.md")}},
            {"Designer", {QStringLiteral("docs/designer.md")}},
            {"Examples", {QStringLiteral("examples/README.md")}},
            {"Guide", guide, true},
            {"Documents", {QStringLiteral("docs/statistics.md"), QStringLiteral("docs/selection.md")}}};
}

void PrintTo(const Tour &tour, std::ostream *stream)
{
    *stream << tour.name;
}

QStringList allPages()
{
    QStringList pages;
    for (const QString &name : QDir(root()).entryList({QStringLiteral("*.md")}, QDir::Files))
        pages.append(root() + u'/' + name);
    for (const char *folder : {"docs", "examples", "bench", "tests", "samples"}) {
        QDirIterator files(root() + u'/' + QString::fromLatin1(folder), {QStringLiteral("*.md")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            pages.append(files.next());
    }
    std::sort(pages.begin(), pages.end());
    return pages;
}

QStringList anchorsOf(const QStringList &text)
{
    QStringList anchors;
    bool inside = false;
    for (const QString &line : text) {
        if (line.startsWith(QLatin1String("```")))
            inside = !inside;
        if (inside || !line.startsWith(u'#'))
            continue;
        static const QRegularExpression marks(QStringLiteral("^#+ |[^\\w\\- ]"),
                                              QRegularExpression::UseUnicodePropertiesOption);
        anchors.append(QString(line).remove(marks).toLower().replace(u' ', u'-'));
    }
    return anchors;
}

} // namespace documents
