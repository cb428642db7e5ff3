// SPDX-License-Identifier: MIT
#include "workbench/Guidepages.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace nuvo {

namespace {

const QString firstName = QStringLiteral("README.md");

/// What is read of a heading: no marks of code, no links.
QString plain(QString heading)
{
    static const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\([^)]*\\)"));
    return heading.replace(link, QStringLiteral("\\1")).remove(u'`').trimmed();
}

std::vector<GuideHeading> headingsOf(const QString &markdown)
{
    std::vector<GuideHeading> headings;
    bool inCode = false;
    for (const QString &line : markdown.split(u'\n')) {
        if (line.startsWith(u"```"))
            inCode = !inCode;
        const auto level = std::find_if(line.begin(), line.end(), [](QChar c) { return c != u'#'; }) - line.begin();
        if (inCode || level == 0 || level > 3 || line.size() <= level || line[level] != u' ')
            continue;
        const QString text = plain(line.mid(level + 1));
        headings.push_back({text, guideAnchor(text), int(level)});
    }
    return headings;
}

std::vector<GuidePage> readPages()
{
    const QDir folder(guideFolder());
    std::vector<GuidePage> pages;
    for (const QString &name : folder.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        GuidePage page{name, QString::fromUtf8(file.readAll()), {}};
        page.headings = headingsOf(page.text);
        pages.push_back(std::move(page));
    }
    const auto first =
        std::find_if(pages.begin(), pages.end(), [](const GuidePage &page) { return page.name == firstName; });
    if (first == pages.end())
        return pages;
    QStringList order = guideLinks(first->text);
    order.prepend(firstName);
    const auto place = [&order](const GuidePage &page) {
        const qsizetype at = order.indexOf(page.name);
        return at < 0 ? order.size() : at;
    };
    std::stable_sort(pages.begin(), pages.end(),
                     [&](const GuidePage &a, const GuidePage &b) { return place(a) < place(b); });
    return pages;
}

} // namespace

QString guideFolder()
{
    return QStringLiteral(":/docs/guide");
}

const std::vector<GuidePage> &guidePages()
{
    static const std::vector<GuidePage> pages = readPages();
    return pages;
}

QString guideAnchor(const QString &heading)
{
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber() || c == u'-' || c == u'_')
            anchor += c;
        else if (c == u' ')
            anchor += u'-';
    }
    return anchor;
}

QStringList guideLinks(const QString &markdown)
{
    static const QRegularExpression link(QStringLiteral("\\]\\(([^)\\s]+)\\)"));
    QStringList links;
    for (auto match = link.globalMatch(markdown); match.hasNext();)
        links.append(match.next().captured(1));
    return links;
}

int guidePosition(const QTextDocument &document, const QString &anchor)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0 && guideAnchor(block.text()) == anchor)
            return block.position();
    }
    return -1;
}

} // namespace nuvo
