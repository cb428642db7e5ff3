// SPDX-License-Identifier: MIT
#include "select/choice/Stepspage.h"

#include "select/choice/Chosen.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

namespace {

QString title(const TStepsPage &page)
{
    return part<QLabel>(page, "StepTitle")->text();
}

/// Stepwise on the cement data with 4 for entry and removal: d, a and b come, d goes.
Chosen<TStepWiseMLR> stepwise()
{
    return Chosen<TStepWiseMLR>(13, {u("a"), u("b"), u("c"), u("d")}, cementValue, [](TStepWiseMLR &method) {
        method.SetFInDefault(4);
        method.SetFOutDefault(4);
    });
}

} // namespace

TEST(StepsPage, HasARowForEachStepAndTheEnd)
{
    const Chosen<TStepWiseMLR> chosen = stepwise();
    TStepsPage page;
    page.SetChoice(chosen.choice());
    EXPECT_EQ(column(page.Steps(), "What").join(u'|'), u("add d|add a|add b|remove d|End"));
    EXPECT_EQ(column(page.Steps(), "Model").join(u'|'), u("d|a, d|a, b, d|a, b|a, b"));
    EXPECT_EQ(column(page.Steps(), "Note").join(u'|'), u("||||in use"));
    // Draper and Smith, Applied Regression Analysis: 22.80, 108.22, 5.03 and 1.86.
    EXPECT_NEAR(cell(page.Steps(), 0, "F").toDouble(), 22.80, 0.005);
    EXPECT_NEAR(cell(page.Steps(), 1, "F").toDouble(), 108.22, 0.005);
    EXPECT_NEAR(cell(page.Steps(), 2, "F").toDouble(), 5.03, 0.005);
    EXPECT_NEAR(cell(page.Steps(), 3, "F").toDouble(), 1.86, 0.005);
    EXPECT_EQ(cell(page.Steps(), 4, "F"), u("-"));
}

TEST(StepsPage, ShowsEveryCandidateOfTheSelectedStep)
{
    const Chosen<TStepWiseMLR> chosen = stepwise();
    TStepsPage page;
    page.SetChoice(chosen.choice());
    showOn(page, page.Steps());
    EXPECT_EQ(page.Selected(), 1);
    EXPECT_EQ(column(page.Candidates(), "Variable").join(u' '), u("a b c d"));
    EXPECT_EQ(column(page.Candidates(), "What").join(u'|'), u("stays out|stays out|stays out|enters"));
    EXPECT_TRUE(title(page).startsWith(u("Adding d: F = 22.7985"))) << title(page).toStdString();
    const QSignalSpy selected(&page, &TStepsPage::SelectionChanged);
    QTest::mouseClick(page.Steps().viewport(), Qt::LeftButton, {}, middleOf(page.Steps(), 3, "What"));
    EXPECT_EQ(selected.count(), 1);
    EXPECT_EQ(column(page.Candidates(), "Variable").join(u' '), u("a b d"));
    EXPECT_EQ(column(page.Candidates(), "What").join(u'|'), u("stays in|stays in|leaves"));
    clickHeading(page.Candidates(), "F");
    const QStringList sorted = column(page.Candidates(), "F");
    EXPECT_NE(sorted.first().toDouble() < 4, sorted.last().toDouble() < 4);
    QTest::keyClick(&page.Steps(), Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(page.Selected(), 5);
    EXPECT_EQ(column(page.Candidates(), "What").join(u'|'), u("could leave|could leave|could enter|could enter"))
        << "in the order of their numbers";
    EXPECT_TRUE(title(page).contains(u("No variable above the threshold"))) << title(page).toStdString();
}

TEST(StepsPage, AsksToUseTheModelAfterAStep)
{
    const Chosen<TStepWiseMLR> chosen = stepwise();
    TStepsPage page;
    page.SetChoice(chosen.choice());
    showOn(page, page.Steps());
    QSignalSpy asked(&page, &TStepsPage::UseModel);
    auto *use = part<QPushButton>(page, "UseStep");
    page.SetSelected(2);
    EXPECT_TRUE(use->isEnabled());
    QTest::mouseClick(use, Qt::LeftButton);
    ASSERT_EQ(asked.count(), 1);
    EXPECT_EQ(asked[0][0].toInt(), 2);
    page.SetSelected(4);
    EXPECT_FALSE(use->isEnabled()) << "that model is in use";
    QTest::mouseDClick(page.Steps().viewport(), Qt::LeftButton, {}, middleOf(page.Steps(), 2, "What"));
    EXPECT_GE(asked.count(), 1);
}

TEST(StepsPage, CopiesWhatHasTheFocusAndSavesEveryCandidateOfEveryStep)
{
    const Chosen<TStepWiseMLR> chosen = stepwise();
    TStepsPage page;
    page.SetChoice(chosen.choice());
    showOn(page, page.Steps());
    QTest::keyClick(&page.Steps(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(lines(QGuiApplication::clipboard()->text()).size(), 2);
    page.Candidates().setFocus();
    QTest::keyClick(&page.Candidates(), Qt::Key_C, Qt::ControlModifier);
    const QStringList copied = lines(QGuiApplication::clipboard()->text());
    ASSERT_EQ(copied.size(), 5);
    EXPECT_EQ(copied[4].section(u'\t', 2, 2).toDouble(), chosen.choice().search.path[0].f);

    const QTemporaryDir directory;
    page.SaveCsv(directory.filePath(u("steps.csv")));
    const QStringList rows = linesOf(directory.filePath(u("steps.csv")));
    ASSERT_EQ(rows.size(), 1 + 4 + 3 + 2 + 3 + 4);
    EXPECT_TRUE(rows[4].startsWith(u("1,add,d,"))) << rows[4].toStdString();
    EXPECT_TRUE(rows.last().startsWith(u("5,end,"))) << rows.last().toStdString();
    EXPECT_TRUE(rows.last().endsWith(u("\"a, b\""))) << rows.last().toStdString();
}

TEST(StepsPage, OfBackwardEliminationBeginsWithAllVariables)
{
    const Chosen<TBackElimMLR> chosen(13, {u("a"), u("b"), u("c"), u("d")}, cementValue,
                                      [](TBackElimMLR &method) { method.SetFDefault(4); });
    TStepsPage page;
    page.SetChoice(chosen.choice());
    EXPECT_EQ(column(page.Steps(), "What").join(u'|'), u("remove c|remove d|End"));
    EXPECT_EQ(page.Candidates().model()->rowCount(), 4);
}

TEST(StepsPage, SaysWhatAModelOfNoVariableIs)
{
    const Chosen<TFwdSelectMLR> chosen(13, {u("a"), u("b"), u("c"), u("d")}, cementValue,
                                       [](TFwdSelectMLR &method) { method.SetFDefault(1000); });
    TStepsPage page;
    page.SetChoice(chosen.choice());
    EXPECT_EQ(column(page.Steps(), "What").join(u'|'), u("End"));
    EXPECT_EQ(column(page.Steps(), "Model").join(u'|'), u("the constant alone"));
    EXPECT_EQ(column(page.Candidates(), "What").join(u'|'), u("could enter|could enter|could enter|could enter"));
}
