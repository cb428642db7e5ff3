// SPDX-License-Identifier: MIT
#include "select/choice/Modelspage.h"

#include "select/choice/Chosen.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalSpy>

TEST(ModelsPage, HasARowForEachListedModelWithAllFigures)
{
    const Chosen<TOptimizeMLR> chosen;
    TModelsPage page;
    page.SetChoice(chosen.choice());
    QTableView &view = page.View();
    QStringList titles;
    for (int column = 0; column < view.model()->columnCount(); ++column)
        titles += view.model()->headerData(column, Qt::Horizontal).toString();
    EXPECT_EQ(titles.join(u'|'), u("No.|Size|Terms|Note|Cp|SSE|R²|Adjusted R²|s²|F|AIC|BIC|PRESS"));
    ASSERT_EQ(view.model()->rowCount(), 10); // 3 + 3 + 3 + 1
    EXPECT_EQ(column(view, "Terms").first(4), (QStringList{u("d"), u("b"), u("a"), u("a, b")}));
    EXPECT_EQ(column(view, "Size").join(u' '), u("1 1 1 2 2 2 3 3 3 4"));
    // Draper and Smith, Applied Regression Analysis: Cp of (a, b) is 2.68, its residual sum of squares 57.9.
    EXPECT_NEAR(cell(view, 3, "Cp").toDouble(), 2.678, 0.001);
    EXPECT_NEAR(cell(view, 3, "SSE").toDouble(), 57.904, 0.001);
    EXPECT_EQ(cell(view, 3, "Note"), u("best by Cp, in use"));
    EXPECT_EQ(cell(view, 0, "Note"), QString());
    EXPECT_EQ(page.Selected(), 4);
}

TEST(ModelsPage, SortsByNumberNotByText)
{
    const Chosen<TOptimizeMLR> chosen;
    TModelsPage page;
    page.SetChoice(chosen.choice());
    showOn(page, page.View());
    clickHeading(page.View(), "Cp");
    const bool rising = page.View().horizontalHeader()->sortIndicatorOrder() == Qt::AscendingOrder;
    QStringList sorted = column(page.View(), "Cp");
    if (!rising)
        std::reverse(sorted.begin(), sorted.end());
    for (int row = 1; row < sorted.size(); ++row)
        EXPECT_LE(sorted[row - 1].toDouble(), sorted[row].toDouble());
    EXPECT_GT(sorted.last().toDouble(), 100); // as text it would not be the last
}

TEST(ModelsPage, AsksToUseTheSelectedModel)
{
    const Chosen<TOptimizeMLR> chosen;
    TModelsPage page;
    page.SetChoice(chosen.choice());
    showOn(page, page.View());
    QSignalSpy asked(&page, &TModelsPage::UseModel);
    QSignalSpy selected(&page, &TModelsPage::SelectionChanged);
    auto *use = part<QPushButton>(page, "UseModel");
    EXPECT_FALSE(use->isEnabled()) << "it is in use already";
    QTest::mouseClick(page.View().viewport(), Qt::LeftButton, {}, middleOf(page.View(), 6, "Terms"));
    EXPECT_EQ(page.Selected(), 7);
    EXPECT_EQ(selected.count(), 1);
    QTest::mouseClick(use, Qt::LeftButton);
    QTest::keyClick(&page.View(), Qt::Key_Return);
    ASSERT_EQ(asked.count(), 2);
    EXPECT_EQ(asked[0][0].toInt(), 7);
    EXPECT_EQ(asked[1][0].toInt(), 7);
    page.SetSelected(4);
    QTest::keyClick(&page.View(), Qt::Key_Return);
    EXPECT_EQ(asked.count(), 2);
    page.SetSelected(0);
    EXPECT_EQ(page.Selected(), 0);
    EXPECT_FALSE(use->isEnabled());
    EXPECT_EQ(selected.count(), 1) << "only the person's selections are told";
}

TEST(ModelsPage, CopiesTheSelectedRowOrAllAsTheyAreSorted)
{
    const Chosen<TOptimizeMLR> chosen;
    TModelsPage page;
    page.SetChoice(chosen.choice());
    showOn(page, page.View());
    QTest::keyClick(&page.View(), Qt::Key_C, Qt::ControlModifier);
    QStringList copied = lines(QGuiApplication::clipboard()->text());
    ASSERT_EQ(copied.size(), 2);
    EXPECT_EQ(copied[1].section(u'\t', 5, 5).toDouble(), chosen.choice().subsets.bySize[3].sse); // all digits
    page.SetSelected(0);
    page.View().sortByColumn(0, Qt::DescendingOrder);
    QTest::keyClick(&page.View(), Qt::Key_C, Qt::ControlModifier);
    copied = lines(QGuiApplication::clipboard()->text());
    ASSERT_EQ(copied.size(), 11);
    EXPECT_EQ(copied[1].section(u'\t', 0, 0), u("10"));
}

TEST(ModelsPage, SavesCsvWithAllDigits)
{
    const Chosen<TOptimizeMLR> chosen;
    TModelsPage page;
    page.SetChoice(chosen.choice());
    const QTemporaryDir directory;
    page.SaveCsv(directory.filePath(u("models.csv")));
    const QStringList rows = linesOf(directory.filePath(u("models.csv")));
    ASSERT_EQ(rows.size(), 11);
    EXPECT_TRUE(rows[4].startsWith(u("4,2,\"a, b\",\"best by Cp, in use\","))) << rows[4].toStdString();
    EXPECT_EQ(rows[4].section(u',', -1).toDouble(), chosen.choice().subsets.bySize[3].press);
    const QString error = errorOf([&] { page.SaveCsv(u("/nowhere/models.csv")); });
    EXPECT_TRUE(error.contains(u("/nowhere/models.csv"))) << error.toStdString();
}

TEST(ModelsPage, TellsDependentModelsAndWhatDoesNotExist)
{
    // c is the sum of a and b: of the sets with all three no figure beyond R2 exists.
    const Chosen<TOptimizeMLR> chosen(12, {u("a"), u("b"), u("c")}, [](int i, int j) {
        return j == 3 ? scattered(i, 1) + scattered(i, 2) : scattered(i, j);
    });
    TModelsPage page;
    page.SetChoice(chosen.choice());
    QTableView &view = page.View();
    const int last = view.model()->rowCount() - 1;
    EXPECT_EQ(cell(view, last, "Terms"), u("a, b, c"));
    EXPECT_EQ(cell(view, last, "Note"), u("dependent"));
    EXPECT_EQ(cell(view, last, "PRESS"), u("-"));
    EXPECT_TRUE(cell(view, last, "PRESS", Qt::AccessibleTextRole).contains(u("does not exist")));
    EXPECT_TRUE(view.model()->index(last, 2).data(Qt::FontRole).value<QFont>().italic());
    for (int times = 0; times < 2; ++times) {
        page.View().sortByColumn(columnOf(view, "PRESS"), times == 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
        EXPECT_EQ(cell(view, last, "Note"), u("dependent")) << "what does not exist stays at the end";
    }
}

TEST(ModelsPage, PutsTheCriterionThatWasAskedForInFront)
{
    const Chosen<TOptimizeMLR> chosen(13, {u("a"), u("b"), u("c"), u("d")}, cementValue,
                                      [](TOptimizeMLR &method) { method.SetOptCriteria(TOptimizeMLR::PRESS); });
    TModelsPage page;
    page.SetChoice(chosen.choice());
    EXPECT_EQ(columnOf(page.View(), "PRESS"), 4) << "it stands in front";
    EXPECT_TRUE(cell(page.View(), page.Selected() - 1, "Note").startsWith(u("best by PRESS")));
}
