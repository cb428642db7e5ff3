// SPDX-License-Identifier: MIT
#include "present/Figures.h"

#include "engine/kernel/Nist.h"
#include "present/Longleyfigures.h"
#include "present/Page.h"
#include "support/Regressions.h"

#include <cmath>

namespace {

using nuvo::Figures;

/// What R prints agrees with this to more digits than a page shows.
constexpr double Agreement = 1e-9;

void expectNear(const char *what, double got, double expected)
{
    if (std::isnan(expected))
        EXPECT_TRUE(std::isnan(got)) << what << ": " << got;
    else
        EXPECT_NEAR(got, expected, Agreement * std::fabs(expected)) << what;
}

void expectNear(const char *what, const Figures::Numbers &got, const Figures::Numbers &expected)
{
    ASSERT_EQ(got.size(), expected.size()) << what;
    for (std::size_t i = 0; i < got.size(); ++i)
        expectNear(what, got[i], expected[i]);
}

/// A regression on a table of its own.
class FiguresOf : public testing::Test
{
protected:
    TMLRTable &fit(const char *columns, const std::vector<Row> &rows, const char *controls, const char *responseName)
    {
        makeTable(*db, "data", columns, rows);
        bind(table, *db, "data");
        define(table, controls, responseName);
        EXPECT_TRUE(table.ReLoad());
        table.Execute();
        return table;
    }
    TMLRTable &fitLongley()
    {
        const NistSet set = readNist("Longley");
        std::vector<Row> rows;
        for (int i = 0; i < set.observations(); ++i) {
            Row row;
            for (const std::vector<double> &column : set.columns)
                row.push_back(column[i]);
            rows.push_back(row);
        }
        return fit("GNPDEFL GNP UNEMP ARMED POP YEAR TOTEMP", rows, "GNPDEFL GNP UNEMP ARMED POP YEAR", "TOTEMP");
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    TMLRTable table;
};

} // namespace

TEST_F(FiguresOf, LongleyAreThoseCertifiedAndThoseOfR)
{
    const Figures got =
        nuvo::figures(fitLongley(), {.level = 0.95, .influence = true, .robust = nuvo::RobustKind::Hc3});
    const Figures expected = longleyFigures();
    ASSERT_EQ(got.coefficients.size(), 7U);
    for (std::size_t i = 0; i < 7; ++i) {
        expectNear("b", got.coefficients[i].estimate, expected.coefficients[i].estimate);
        expectNear("standard error", got.coefficients[i].standardError, expected.coefficients[i].standardError);
        expectNear("t", got.coefficients[i].t, expected.coefficients[i].t);
    }
    ASSERT_TRUE(got.inference && got.diagnostics && got.influence && got.robust);
    const nuvo::Inference &inference = *got.inference;
    const nuvo::Inference &wanted = *expected.inference;
    expectNear("b", inference.coefficients, wanted.coefficients);
    expectNear("standard errors", inference.standardErrors, wanted.standardErrors);
    expectNear("p", inference.pValues, wanted.pValues);
    for (std::size_t i = 0; i < 7; ++i) {
        expectNear("low", inference.confidence[i][0], wanted.confidence[i][0]);
        expectNear("high", inference.confidence[i][1], wanted.confidence[i][1]);
    }
    expectNear("F", inference.f, wanted.f);
    expectNear("p of F", inference.fPValue, wanted.fPValue);
    expectNear("adjusted R2", inference.adjustedRSquared, wanted.adjustedRSquared);
    expectNear("AIC", inference.aic, wanted.aic);
    expectNear("AICc", inference.aicc, wanted.aicc);
    expectNear("BIC", inference.bic, wanted.bic);
    expectNear("HQC", inference.hqc, wanted.hqc);
    expectNear("VIF", inference.vif, wanted.vif);
    expectNear("standardized", inference.standardized, wanted.standardized);
    expectNear("partial", inference.partialCorrelations, wanted.partialCorrelations);
    expectNear("in order", inference.sequentialSumsOfSquares, wanted.sequentialSumsOfSquares);
    expectNear("last", inference.partialSumsOfSquares, wanted.partialSumsOfSquares);
    const nuvo::Diagnostics &tests = *got.diagnostics;
    expectNear("Durbin-Watson", tests.durbinWatson, expected.diagnostics->durbinWatson);
    expectNear("PRESS", tests.press, expected.diagnostics->press);
    expectNear("Breusch-Pagan", tests.breuschPagan.pValue, expected.diagnostics->breuschPagan.pValue);
    expectNear("White", tests.white.pValue, expected.diagnostics->white.pValue);
    expectNear("Jarque-Bera", tests.jarqueBera.pValue, expected.diagnostics->jarqueBera.pValue);
    expectNear("RESET", tests.reset.pValue, expected.diagnostics->reset.pValue);
    expectNear("leverage", got.influence->leverage, expected.influence->leverage);
    expectNear("Cook", got.influence->cook, expected.influence->cook);
    EXPECT_EQ(got.robust->kind, text("hc3"));
    EXPECT_EQ(got.robust->errors.standardErrors.size(), 7U);
}

TEST_F(FiguresOf, LongleyMakeTheSamePageAsThoseOfR)
{
    Figures figures = nuvo::figures(fitLongley(), {.level = 0.95, .influence = true, .robust = {}});
    Figures expected = longleyFigures();
    figures.source = expected.source;
    figures.time = expected.time;
    const nuvo::PageStyle style{.digits = 7, .influence = true, .matrices = false, .point = u'.'};
    EXPECT_EQ(nuvo::pageText(nuvo::statisticsPage(figures, style), 132),
              nuvo::pageText(nuvo::statisticsPage(expected, style), 132));
}

TEST_F(FiguresOf, ObservationsKnowTheirRecords)
{
    const Figures figures =
        nuvo::figures(fit("y a", {{3, 1}, {7, null}, {8, 5}, {null, 7}, {13, 8}, {9, 2}}, "a", "y"), {});
    EXPECT_EQ(figures.record, (std::vector<long long>{1, 3, 5, 6}));
    EXPECT_EQ(figures.records.skipped, 2);
}

TEST_F(FiguresOf, ARegressionThatWasNotFittedHaveNoInference)
{
    const Figures figures = nuvo::figures(table, {.level = 0.95, .influence = true, .robust = {}});
    EXPECT_FALSE(figures.current);
    EXPECT_FALSE(figures.inference || figures.diagnostics || figures.influence);
    EXPECT_TRUE(figures.record.empty());
}

TEST_F(FiguresOf, DependentTermsLeaveTheOthersTheirFigures)
{
    const std::vector<Row> rows{{3, 1, 2, 2},   {7, 4, 8, 1},   {8, 5, 10, 3},
                                {12, 7, 14, 4}, {13, 8, 16, 2}, {9, 2, 4, 7}};
    const Figures figures = nuvo::figures(fit("y a b c", rows, "a b c", "y"), {});
    EXPECT_EQ(figures.dependentTerms, QStringList{text("b")});
    const QString page = nuvo::pageText(nuvo::statisticsPage(figures), 132);
    EXPECT_TRUE(page.contains(text("Linear combinations of the terms before them: b. They add nothing;")))
        << page.toStdString();
    EXPECT_FALSE(std::isnan(figures.inference->pValues[1]));
    EXPECT_TRUE(std::isnan(figures.inference->pValues[2]));
    EXPECT_FALSE(std::isnan(figures.inference->pValues[3]));
}

TEST_F(FiguresOf, DataThatLeaveFewDigitsAreToldOf)
{
    std::vector<Row> rows;
    for (int i = 0; i < 40; ++i)
        rows.push_back({double(i * i % 17), 1e12 + 10 * std::sin(i)});
    const Figures figures = nuvo::figures(fit("y a", rows, "a", "y"));
    EXPECT_LT(figures.digits, 6);
    EXPECT_TRUE(nuvo::leftOut(figures).contains(text(" digits of the coefficients"))) << figures.digits;
}

TEST_F(FiguresOf, TellWhatEachTermCouldNotUse)
{
    fit("y a", {{3, 1}, {7, null}, {8, 5}, {null, 7}, {13, 8}, {9, 2}, {5, -1}, {6, 3}}, "a", "y");
    table.SetControl(1, control("Log", "a"));
    ASSERT_TRUE(table.ReLoad());
    table.Execute();
    const Figures figures = nuvo::figures(table, {});
    ASSERT_EQ(figures.leftOut.size(), 2U);
    EXPECT_EQ(figures.leftOut[0].term, text("y"));
    EXPECT_EQ(figures.leftOut[0].null, 1);
    EXPECT_EQ(figures.leftOut[1].term, text("Ln(a)"));
    EXPECT_EQ(figures.leftOut[1].null, 1);
    EXPECT_EQ(figures.leftOut[1].invalid, 1);
    const QString page = nuvo::pageText(nuvo::statisticsPage(figures), 132).simplified();
    EXPECT_TRUE(page.contains(text("3 could not be: y is null in 1; Ln(a) is null in 1 and impossible in 1.")))
        << page.toStdString();
}
