// SPDX-License-Identifier: MIT
#include "present/Matrxdlg.h"

#include "present/Windowtest.h"
#include "present/controls/Headerbar.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>

namespace {

/// As many lines as asked for, "Covariance Matrix:", " " and rows of `cells` cells.
QStringList lines(int count, int cells = 3)
{
    QStringList list{QStringLiteral("Covariance Matrix:"), QStringLiteral(" ")};
    while (list.size() < count)
        list += QStringLiteral("-1.23E-2   ").repeated(cells);
    return list;
}

void open(const QStringList &list, const QString &message, const std::function<void(QDialog &)> &act,
          const QString &description = QStringLiteral("A problem"))
{
    const Person person([&](QDialog &dialog) {
        act(dialog);
        dialog.close();
    });
    TAnalysisMatrix().Open(list, QStringLiteral("Covariance Matrix"), description, message);
}

} // namespace

TEST(MatrixDialog, HasItsControlsInTheirPlaces)
{
    open(lines(5), QStringLiteral("m"), [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Multivariate Regression Output Matrix"));
        EXPECT_EQ(dialog.size(), QSize(435, 315));
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        EXPECT_EQ(part(dialog, "Header1")->geometry(), QRect(0, 0, 435, 26));
        EXPECT_EQ(part(dialog, "Memo1")->geometry(), QRect(4, 30, 427, 231));
        EXPECT_EQ(part(dialog, "BitBtn1")->geometry(), QRect(179, 265, 77, 27));
        EXPECT_EQ(part(dialog, "Panel2")->geometry(), QRect(0, 298, 435, 17));
        EXPECT_TRUE(part<QPushButton>(dialog, "BitBtn1")->isDefault());
        EXPECT_EQ(part(dialog, "Memo1")->accessibleName(), QStringLiteral("Covariance Matrix"));
    });
}

TEST(MatrixDialog, TitleAndDescriptionAreInTheHeaderAndNoLongerInTheLines)
{
    open(lines(5), QStringLiteral("m"), [](QDialog &dialog) {
        EXPECT_EQ(part<THeader>(dialog, "Header1")->Sections(),
                  (QStringList{QStringLiteral("Covariance Matrix"), QStringLiteral("A problem")}));
        const QString shown = part<QPlainTextEdit>(dialog, "Memo1")->toPlainText();
        EXPECT_EQ(shown, QStringLiteral(" \n") + lines(5).mid(1).join(u'\n'));
    });
}

TEST(MatrixDialog, LettersAre8PointsThen7From7LinesAnd6From9)
{
    const std::pair<int, int> sizes[] = {{3, 11}, {6, 11}, {7, 9}, {8, 9}, {9, 8}, {13, 8}};
    for (const auto &[count, pixels] : sizes)
        open(lines(count), QStringLiteral("m"), [count = count, pixels = pixels](QDialog &dialog) {
            EXPECT_EQ(part(dialog, "Memo1")->font().pixelSize(), pixels) << count;
        });
}

TEST(MatrixDialog, TheFooterIsCutAfter78CharactersAndAlwaysGoesOn)
{
    const auto footer = [](const QString &message, const QString &shown) {
        open(lines(5), message, [&](QDialog &dialog) { EXPECT_EQ(part<QLabel>(dialog, "Panel2")->text(), shown); });
    };
    footer(QString(), QStringLiteral("..."));
    footer(QStringLiteral("short"), QStringLiteral("short..."));
    footer(QString(78, u'a'), QString(78, u'a') + QLatin1String("..."));
    footer(QString(79, u'a'), QString(78, u'a') + QLatin1String("..."));
}

TEST(MatrixDialog, AWideMatrixMakesItWider)
{
    open(lines(13, 11), QStringLiteral("word ").repeated(20), [](QDialog &dialog) {
        EXPECT_GT(dialog.width(), 435);
        const auto *memo = part<QPlainTextEdit>(dialog, "Memo1");
        EXPECT_EQ(memo->horizontalScrollBar()->maximum(), 0);
        EXPECT_EQ(memo->verticalScrollBar()->maximum(), 0);
        const auto *footer = part<QLabel>(dialog, "Panel2");
        EXPECT_GE(footer->height(), footer->heightForWidth(footer->width()));
        EXPECT_EQ(footer->geometry().bottom(), dialog.height() - 1);
    });
}

TEST(MatrixDialog, ALongDescriptionBreaksIntoLines)
{
    open(
        lines(5), QStringLiteral("m"),
        [](QDialog &dialog) {
            const auto *header = part<THeader>(dialog, "Header1");
            EXPECT_GT(header->height(), 26);
            EXPECT_GE(header->height(), header->NeededHeight(header->width()));
            EXPECT_GT(part(dialog, "Memo1")->y(), header->geometry().bottom());
        },
        QStringLiteral("A description of many words ").repeated(12));
}

TEST(MatrixDialog, TabGoesBetweenTheLinesAndTheButton)
{
    open(lines(5), QStringLiteral("m"), [](QDialog &dialog) {
        dialog.activateWindow();
        part(dialog, "Memo1")->setFocus();
        for (const char *next : {"BitBtn1", "Memo1"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            ASSERT_NE(QApplication::focusWidget(), nullptr);
            EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(next));
        }
    });
}

TEST(MatrixDialog, ReturnEscapeAndOkCloseIt)
{
    const Person person([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Return); },
                        [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                        [](QDialog &dialog) { click(dialog, "BitBtn1"); });
    for (int i = 0; i < 3; ++i)
        TAnalysisMatrix().Open(lines(4), QString(), QString(), QString());
}
