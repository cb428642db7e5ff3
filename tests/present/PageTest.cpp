// SPDX-License-Identifier: MIT
#include "present/Page.h"

#include "platform/Errors.h"
#include "present/Longleyfigures.h"
#include "present/Pagewarnings.h"
#include "present/Significant.h"
#include "present/Textreport.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QTextTable>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using nuvo::Figures;

QString longleyText(int columns = 132, const nuvo::PageStyle &style = {})
{
    return nuvo::pageText(nuvo::statisticsPage(longleyFigures(), style), columns);
}

/// The warnings that the figures give.
QString warnings(const Figures &figures)
{
    return nuvo::pageWarnings(figures).join(u'\n');
}

/// Longley's figures without anything to warn of.
Figures harmless()
{
    Figures figures = longleyFigures();
    std::fill(figures.inference->vif.begin(), figures.inference->vif.end(), 10);
    figures.influence.reset();
    return figures;
}

} // namespace

TEST(Page, WithoutInferenceThereAreNoColumnsForIt)
{
    Figures figures = longleyFigures();
    figures.inference.reset();
    figures.diagnostics.reset();
    figures.influence.reset();
    const QString text = nuvo::pageText(nuvo::statisticsPage(figures), 132);
    EXPECT_TRUE(text.contains(u("Estimate"))) << text.toStdString();
    for (const char *absent : {"VIF", " p ", "Low", "AIC", "adjusted", "Durbin", "warning"})
        EXPECT_FALSE(text.contains(u(absent))) << absent << '\n' << text.toStdString();
}

TEST(Page, NoLineIsWiderThanTheTerminalAndEveryGroupOfColumnsHasTheNames)
{
    for (int columns = 60; columns <= 140; ++columns) {
        const QString text = longleyText(columns, {.digits = 7, .influence = true, .matrices = true, .point = u'.'});
        for (const QString &line : text.split(u'\n'))
            EXPECT_LE(nuvo::displayWidth(line), columns) << line.toStdString();
    }
    const QString narrow = longleyText(80);
    EXPECT_GT(narrow.count(u("\nGNPDEFL ")), longleyText(132).count(u("\nGNPDEFL ")));
    for (const char *figure : {"-3482259", "0.03349101", "1788.513", "207.1528", "4.984031e-10"})
        EXPECT_TRUE(narrow.contains(u(figure))) << figure << '\n' << narrow.toStdString();
}

TEST(Page, FiguresOfAColumnStandWithTheirPointsBelowEachOther)
{
    const QStringList lines = longleyText().split(u'\n');
    qsizetype head = 0;
    while (head < lines.size() && !lines[head].startsWith(u("Term ")))
        ++head;
    ASSERT_LT(head + 7, lines.size());
    const qsizetype point = lines[head + 2].indexOf(u("15.06187")) + 2;
    for (const auto &[row, figure, before] : {std::tuple(1, "-3482259", 8), std::tuple(3, "-0.03581918", 2),
                                              std::tuple(6, "-0.05110411", 2), std::tuple(7, "1829.151", 4)})
        EXPECT_EQ(lines[head + row].indexOf(u(figure)), point - before) << lines[head + row].toStdString();
}

TEST(Page, AskedDigitsAreShown)
{
    const QString text = longleyText(200, {.digits = 12, .influence = false, .matrices = false, .point = u'.'});
    for (const char *figure :
         {"15.0618722714", "184172401.944", "-3482258.63460", "4.98403052872e-10", "330.285339235"})
        EXPECT_TRUE(text.contains(u(figure))) << figure << '\n' << text.toStdString();
}

TEST(Page, TheDecimalSignIsTheStyles)
{
    const QString text = longleyText(132, {.digits = 7, .influence = true, .matrices = false, .point = u','});
    EXPECT_TRUE(text.contains(u("15,06187")));
    EXPECT_TRUE(text.contains(u("4,984031e-10")));
    EXPECT_FALSE(text.contains(u("15.06187")));
}

TEST(Page, SaysHowManyRecordsWereUsedAndWhatTheOthersLack)
{
    Figures figures = longleyFigures();
    const auto text = [&figures] { return nuvo::pageText(nuvo::statisticsPage(figures)).replace(u'\n', u' '); };
    EXPECT_TRUE(text().contains(u("Table Longley, 2000-01-01 00:00:00. 16 of 16 records were used. ")))
        << text().toStdString();
    figures.records = {153, 153, 111, 42};
    EXPECT_TRUE(text().contains(u("111 of 153 records were used, 42 could not be. "))) << text().toStdString();
    figures.leftOut = {{u("Ozone"), 37, 0}, {u("Ln(Wind)"), 2, 3}, {u("Temp"), 0, 0}};
    EXPECT_TRUE(
        text().contains(u("42 could not be: Ozone is null in 37; Ln(Wind) is null in 2 and impossible in 3. ")))
        << text().toStdString();
    figures.records = {9000, 2600, 2500, 100};
    EXPECT_TRUE(text().contains(u(" The dataset has 9000 records. "))) << text().toStdString();
}

TEST(Page, WithoutAFitItSaysSo)
{
    Figures figures;
    figures.response.term = u("y");
    figures.source = u("t");
    figures.coefficients.resize(1);
    EXPECT_TRUE(nuvo::pageText(nuvo::statisticsPage(figures)).endsWith(u("\nNo result.\n")));
}

TEST(Page, OfAConstantAloneHasNoTermsAndNoF)
{
    Figures figures = longleyFigures();
    figures.controls = 0;
    figures.columns.clear();
    figures.coefficients.resize(1);
    figures.influence.reset();
    figures.inference = nuvo::Inference();
    figures.inference->pValues = {0};
    figures.inference->f = figures.inference->fPValue = Figures::None;
    figures.inference->adjustedRSquared = 0;
    const QString text = nuvo::pageText(nuvo::statisticsPage(figures), 120);
    EXPECT_TRUE(text.startsWith(u("Linear regression of TOTEMP on a constant alone\n"))) << text.toStdString();
    EXPECT_TRUE(text.contains(u("<1e-300"))) << text.toStdString();
    EXPECT_FALSE(text.contains(u("F(")));
    EXPECT_TRUE(text.contains(u("adjusted R² = 0")));
}

TEST(Page, WhatDoesNotExistIsADash)
{
    Figures figures = longleyFigures();
    figures.inference->vif[1] = figures.inference->tValues[2] = figures.inference->pValues[2] = Figures::None;
    figures.inference->confidence[2] = {Figures::None, Figures::None};
    const QString text = nuvo::pageText(nuvo::statisticsPage(figures), 132);
    const qsizetype at = text.indexOf(u("\nGNP "));
    EXPECT_EQ(text.mid(at + 1, text.indexOf(u'\n', at + 1) - at).split(u' ', Qt::SkipEmptyParts),
              (QStringList{u("GNP"), u("-0.03581918"), u("0.03349101"), u("-"), u("-"), u("-"), u("-"), u("-\n")}))
        << text.toStdString();
}

TEST(Page, NamesOfAnyKindLeaveTheFiguresInTheirRows)
{
    Figures figures = longleyFigures();
    figures.columns[0].term = u("a\n\rb\033[2J");
    figures.columns[1].term = QString(70, u'n');
    figures.columns[2].term = u("日本|*x*");
    figures.response.term = u("y & <z>");
    figures.description = u("first\n\rsecond");
    const nuvo::Page page = nuvo::statisticsPage(figures);
    const QString text = nuvo::pageText(page, 100);
    EXPECT_FALSE(text.contains(u'\r'));
    EXPECT_FALSE(text.contains(u'\033'));
    EXPECT_TRUE(text.contains(u("\nfirst\n\nsecond\n"))) << text.toStdString();
    const auto rowOf = [&text](const QString &name) {
        const qsizetype at = text.indexOf(u'\n' + name);
        return at < 0 ? QString() : text.mid(at + 1, text.indexOf(u'\n', at + 1) - at - 1);
    };
    EXPECT_TRUE(rowOf(u("a  b [2J")).contains(u("15.06187"))) << text.toStdString();
    EXPECT_TRUE(rowOf(u("日本|*x*")).contains(u("-2.020230"))) << text.toStdString();
    EXPECT_TRUE(text.contains(u'\n' + QString(70, u'n') + u'\n')) << "a line of its own";
    const QString markdown = nuvo::pageMarkdown(page);
    EXPECT_TRUE(markdown.contains(u("| 日本\\|\\*x\\* "))) << markdown.toStdString();
    EXPECT_TRUE(markdown.startsWith(u("# Linear regression of y & \\<z\\> on ")));
    EXPECT_TRUE(nuvo::pageHtml(page).contains(u("y &amp; &lt;z&gt;")));
}

TEST(Page, ObservationsWorthLookingAtAreShownWhenAsked)
{
    EXPECT_FALSE(longleyText().contains(u("Observations worth looking at")));
    const nuvo::PageStyle style{.digits = 7, .influence = true, .matrices = false, .point = u'.'};
    Figures figures = longleyFigures();
    figures.record.resize(16);
    for (std::size_t i = 0; i < 16; ++i)
        figures.record[i] = (long long)(i) + 101;
    const QString text = nuvo::pageText(nuvo::statisticsPage(figures, style), 132);
    const QStringList rows =
        text.mid(text.indexOf(u("Observations worth looking at"))).split(u'\n', Qt::SkipEmptyParts).mid(3);
    ASSERT_EQ(rows.size(), 4) << text.toStdString(); // by Cook's distance
    EXPECT_TRUE(rows[0].startsWith(u("105 ")));
    EXPECT_TRUE(rows[0].contains(u("0.6139168")) && rows[0].contains(u("2.333153")));
    EXPECT_TRUE(rows[0].endsWith(u("Cook, DFFITS")));
    EXPECT_TRUE(rows[1].startsWith(u("116 ")) && rows[1].endsWith(u("Cook, DFFITS")));
    EXPECT_TRUE(rows[2].startsWith(u("104 ")) && rows[2].endsWith(u("  DFFITS")));
    EXPECT_TRUE(rows[3].startsWith(u("110 ")) && rows[3].endsWith(u("residual, DFFITS")));
}

TEST(Page, TwentyObservationsAreShownAtMost)
{
    Figures figures = longleyFigures();
    figures.observations = 300;
    nuvo::Influence &influence = *figures.influence;
    for (Figures::Numbers *numbers : {&influence.leverage, &influence.cook, &influence.dffits, &figures.observed,
                                      &figures.fitted, &figures.residuals})
        numbers->assign(300, 0);
    influence.studentizedResiduals.assign(300, -2.5);
    const nuvo::PageStyle style{.digits = 7, .influence = true, .matrices = false, .point = u'.'};
    const QString text = nuvo::pageText(nuvo::statisticsPage(figures, style), 132);
    EXPECT_EQ(text.count(u("  residual\n")), 20);
    EXPECT_TRUE(text.contains(u("The 20 with the largest Cook's distances of 300 that stand out.\n")));
}

TEST(Page, AllItsFormsHaveTheSameFigures)
{
    const nuvo::PageStyle style{.digits = 7, .influence = true, .matrices = false, .point = u'.'};
    const nuvo::Page page = nuvo::statisticsPage(longleyFigures(), style);
    const QString forms[] = {nuvo::pageText(page, 132), nuvo::pageMarkdown(page),
                             nuvo::pageHtml(page).replace(u("&nbsp;"), u(" ")),
                             nuvo::pageDocument(page)->toPlainText()};
    int figures = 0;
    for (const nuvo::Page::Part &part : page.parts) {
        for (const QStringList &row : part.table.rows) {
            for (const QString &cell : row) {
                ++figures;
                for (const QString &form : forms)
                    EXPECT_TRUE(form.contains(cell)) << cell.toStdString() << " in\n" << form.toStdString();
            }
        }
    }
    EXPECT_GT(figures, 150);
}

TEST(Page, TheDocumentHasTables)
{
    const std::unique_ptr<QTextDocument> document = nuvo::pageDocument(nuvo::statisticsPage(longleyFigures()));
    int tables = 0;
    for (const QTextFrame *frame : document->rootFrame()->childFrames()) {
        if (const auto *table = qobject_cast<const QTextTable *>(frame)) {
            ++tables;
            EXPECT_GT(table->columns(), 4);
        }
    }
    EXPECT_EQ(tables, 4) << "coefficients, variance, tests, terms";
}

TEST(PageFiles, AreWrittenByTheirEnding)
{
    const QTemporaryDir directory;
    const nuvo::Page page = nuvo::statisticsPage(longleyFigures());
    const auto contentOf = [&](const char *name) {
        QFile file(directory.filePath(u(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return file.readAll();
    };
    for (const char *name : {"p.pdf", "p.HTML", "p.htm", "p.txt", "p.Md"}) {
        EXPECT_TRUE(nuvo::isPageFile(u(name)));
        nuvo::savePage(page, directory.filePath(u(name)));
    }
    EXPECT_EQ(contentOf("p.txt"), nuvo::pageText(page, 132).toUtf8());
    EXPECT_EQ(contentOf("p.Md"), nuvo::pageMarkdown(page).toUtf8());
    EXPECT_EQ(contentOf("p.HTML"), nuvo::pageHtml(page).toUtf8());
    EXPECT_EQ(contentOf("p.htm"), nuvo::pageHtml(page).toUtf8());
    const QByteArray pdf = contentOf("p.pdf");
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_TRUE(pdf.contains("/ToUnicode")) << "text, not a picture of it";
    EXPECT_FALSE(nuvo::isPageFile(u("p.png")));
    EXPECT_EQ(errorOf([&] { nuvo::savePage(page, u("p.doc")); }),
              u("Cannot save the page as \"p.doc\": the name ends in none of .pdf, .html, .txt, .md."));
}

TEST(PageWarnings, AreSilentWhereNothingIsWrong)
{
    EXPECT_EQ(warnings(harmless()), QString());
    EXPECT_FALSE(nuvo::pageText(nuvo::statisticsPage(harmless())).contains(u("warning")));
}

TEST(PageWarnings, NameTermsWithAVarianceInflationAboveTen)
{
    Figures figures = harmless();
    figures.inference->vif[1] = 10.5;
    EXPECT_TRUE(warnings(figures).startsWith(u("Variance inflation above 10: GNP (10.5). ")))
        << warnings(figures).toStdString();
    EXPECT_TRUE(longleyText().contains(u("GNPDEFL (135.5324), GNP (1788.513), UNEMP (33.61889), POP")))
        << longleyText().toStdString();
}

TEST(PageWarnings, TellThatAnOddPowerHasAMinusSign)
{
    Figures figures = harmless();
    figures.columns[1].term = u("GNP^3");
    figures.columns[1].least = 1;
    figures.columns[1].greatest = 27;
    EXPECT_EQ(warnings(figures), QString()) << "a field of that name";
    figures.columns[1].least = -27;
    figures.columns[1].greatest = -1;
    EXPECT_EQ(warnings(figures), u("An odd power is that of the absolute value with a minus sign: GNP^3. Of values "
                                   "above 0 its coefficient has the opposite sign of what it would have otherwise."));
    for (const char *other : {"GNP^2", "GNP^1/2", "GNP^3/5", "GNP"}) {
        figures.columns[1].term = u(other);
        EXPECT_EQ(warnings(figures), QString()) << other;
    }
}

TEST(PageWarnings, NameRecordsFarOutThatAreBadlyFitted)
{
    Figures figures = harmless();
    figures.influence = longleyFigures().influence;
    EXPECT_EQ(warnings(figures), QString()) << "none is both";
    figures.influence->leverage[9] = 0.88; // 2 p / n is 0.875
    EXPECT_EQ(warnings(figures), u("Far from the others in the terms and badly fitted: record 10 (leverage 0.88, "
                                   "studentized residual 2.169448). The coefficients depend on it."));
    figures.influence->leverage[9] = 0.87;
    EXPECT_EQ(warnings(figures), QString());
}

TEST(PageWarnings, NameEachTestThatFailsAtFivePercent)
{
    const std::pair<nuvo::TestResult nuvo::Diagnostics::*, const char *> tests[] = {
        {&nuvo::Diagnostics::breuschPagan, "Breusch-Pagan"},
        {&nuvo::Diagnostics::white, "White"},
        {&nuvo::Diagnostics::jarqueBera, "Jarque-Bera"},
        {&nuvo::Diagnostics::shapiroWilk, "Shapiro-Wilk"},
        {&nuvo::Diagnostics::reset, "RESET"}};
    for (const auto &[test, name] : tests) {
        Figures figures = harmless();
        ((*figures.diagnostics).*test).pValue = 0.0499;
        EXPECT_TRUE(warnings(figures).startsWith(u(name) + u(" fails at 5 % (p = 0.0499): "))) << name;
        ((*figures.diagnostics).*test).pValue = 0.05;
        EXPECT_EQ(warnings(figures), QString()) << name;
    }
}

TEST(PageWarnings, NameTermsThatSayNothingAndFitsWithoutDegreesOfFreedom)
{
    Figures figures = harmless();
    figures.dependentTerms = {u("GNP"), u("POP")};
    EXPECT_TRUE(warnings(figures).startsWith(u("Linear combinations of the terms before them: GNP and POP. ")));
    figures = harmless();
    figures.infiniteTerms = {u("1/ARMED")};
    EXPECT_TRUE(warnings(figures).contains(u("no figure can be had: 1/ARMED.")));
    figures = harmless();
    figures.observations = 7;
    EXPECT_TRUE(warnings(figures).startsWith(u("7 observations for 7 coefficients leave no degrees of freedom")));
    figures = harmless();
    figures.inference->fPValue = 0.06;
    EXPECT_TRUE(warnings(figures).contains(u("(F test, p = 0.06)")));
}
