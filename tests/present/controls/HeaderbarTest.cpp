// SPDX-License-Identifier: MIT
#include "present/controls/Headerbar.h"

#include "support/Print.h"

#include <gtest/gtest.h>

#include <QAbstractItemModel>
#include <QTest>

namespace {

const QStringList captions{QStringLiteral("Dataset Name"), QStringLiteral("Problem Description"),
                           QStringLiteral("Date and Time")};

TEST(HeaderBar, HasItsSectionsSideBySideAndTheLastTakesTheRest)
{
    THeader header;
    header.resize(486, 25);
    header.SetSections(captions, {89, 122, 89});
    header.show();
    EXPECT_EQ(header.Sections(), captions);
    EXPECT_EQ(header.count(), 3);
    EXPECT_GE(header.sectionSize(0), 89);
    EXPECT_GE(header.sectionSize(1), 122);
    EXPECT_EQ(header.sectionPosition(1), header.sectionSize(0));
    EXPECT_EQ(header.sectionPosition(2) + header.sectionSize(2), 486);
    header.resize(600, 25);
    EXPECT_EQ(header.sectionPosition(2) + header.sectionSize(2), 600);
}

TEST(HeaderBar, NewSectionsReplaceTheOldOnes)
{
    THeader header;
    header.SetSections(captions, {89, 122, 89});
    header.SetSections({QStringLiteral("Covariance Matrix"), QString()});
    EXPECT_EQ(header.Sections(), QStringList({QStringLiteral("Covariance Matrix"), QString()}));
    header.SetSections({});
    EXPECT_EQ(header.count(), 0);
    EXPECT_EQ(header.NeededWidth(), 0);
    EXPECT_EQ(header.NeededHeight(100), 0);
}

TEST(HeaderBar, ACaptionIsGivenTheRoomThatItNeeds)
{
    THeader header;
    const QString text(40, u'W');
    header.SetSections({QStringLiteral("short"), text, QStringLiteral("end")}, {50, 50, 50});
    header.resize(header.NeededWidth(), 25);
    EXPECT_GE(header.sectionSize(1), header.fontMetrics().horizontalAdvance(text));
}

TEST(HeaderBar, WithoutRoomTheLongestCaptionBreaksIntoLinesAndTheOthersStayWhole)
{
    THeader header;
    const QString text = QStringLiteral("many words that go on ").repeated(10);
    header.SetSections({QStringLiteral("Data: Longley"), text, QStringLiteral("1 May 2026")});
    header.resize(400, 25);
    EXPECT_GE(header.sectionSize(0), header.fontMetrics().horizontalAdvance(QStringLiteral("Data: Longley")));
    EXPECT_GE(header.sectionSize(2), header.fontMetrics().horizontalAdvance(QStringLiteral("1 May 2026")));
    EXPECT_GT(header.NeededHeight(400), 3 * header.fontMetrics().height());
    EXPECT_GT(header.NeededHeight(400), header.NeededHeight(header.NeededWidth()));
    // One word without blanks breaks as well.
    header.SetSections({QStringLiteral("Data"), QString(300, u'm'), QStringLiteral("end")});
    EXPECT_GT(header.NeededHeight(400), 3 * header.fontMetrics().height());
}

TEST(HeaderBar, SaysItsCaptionsToScreenReadersAndInTooltips)
{
    THeader header;
    header.SetSections(captions);
    EXPECT_EQ(header.accessibleName(), QStringLiteral("Dataset Name; Problem Description; Date and Time"));
    EXPECT_EQ(header.model()->headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString(), captions[1]);
    EXPECT_EQ(header.focusPolicy(), Qt::NoFocus);
}

} // namespace
