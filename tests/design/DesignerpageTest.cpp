// SPDX-License-Identifier: MIT
// Whether docs/designer.md can be followed by the letter: session/Pagewalk.cpp does what its numbered steps say.

#include "design/Sessionseen.h"

#include <QRegularExpression>

namespace {

/// The numbered steps of the page's section.
QString steps()
{
    QFile file(QStringLiteral(SOURCE_ROOT "/docs/designer.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    const QString section =
        page.section(QStringLiteral("## From an empty form to figures\n"), 1).section(QStringLiteral("\n## "), 0, 0);
    return section.mid(section.indexOf(QStringLiteral("\n1. ")));
}

} // namespace

TEST_F(Designer, ComesFromAnEmptyFormToFiguresAsThePageTells)
{
    EXPECT_EQ(text("pageModelRow"), u("TOTEMP on Ln(GNP), UNEMP, YEAR"));
    EXPECT_FALSE(list("pageFigures").isEmpty()) << "the fitted value of the first year, in the window";
    ASSERT_EQ(list("pageChoice").size(), 1);
    EXPECT_TRUE(text("pageContents").contains(u("<string notr=\"true\">samples.db</string>")));
    EXPECT_LE(list("pageActions").size(), 16) << qPrintable(list("pageActions").join(u("; ")));
}

TEST_F(Designer, HasEveryEntryRowAndNameThatThePageTellsOf)
{
    static const QRegularExpression code(u("`([^`]+)`"));
    static const QRegularExpression entry(u("(?<![*\\w])\\*([^*]+)\\*(?!\\*)"));
    const QString told = steps();
    int found = 0;
    for (const QRegularExpression &pattern : {code, entry}) {
        for (auto match = pattern.globalMatch(told); match.hasNext(); ++found) {
            const QString word = match.next().captured(1);
            // Of Qt Designer itself, and the reader's own.
            if (word != u("Widget") && word != u("Designed.ui")) {
                EXPECT_TRUE(list("pageWords").contains(word)) << qPrintable(word);
            }
        }
    }
    EXPECT_GT(found, 10);
}
