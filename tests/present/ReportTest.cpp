// SPDX-License-Identifier: MIT
#include "present/Report.h"

#include "engine/kernel/Nist.h"
#include "support/Regressions.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>

namespace {

using nuvo::ReportBlocks;
using nuvo::reportBlocks;
using nuvo::WindowTexts;
using nuvo::windowTexts;

void expectBlocks(const ReportBlocks &blocks, const WindowTexts &window, const nlohmann::json &expected)
{
    const auto expectBlock = [&expected](const char *name, const QString &got) {
        EXPECT_EQ(got, QString::fromStdString(expected.at(name).get<std::string>())) << name;
    };
    const auto expectLines = [&expected](const char *name, const QStringList &got) {
        QStringList lines;
        for (const nlohmann::json &line : expected.at(name))
            lines.append(QString::fromStdString(line.get<std::string>()));
        EXPECT_EQ(got, lines) << name;
    };
    expectBlock("DepVar", blocks.DepVar);
    expectBlock("IndepVars", blocks.IndepVars);
    expectBlock("DataCount", blocks.DataCount);
    expectBlock("DOF", blocks.DOF);
    expectBlock("Coeffs", blocks.Coeffs);
    expectBlock("SSquared", blocks.SSquared);
    expectBlock("SSE", blocks.SSE);
    expectBlock("SSR", blocks.SSR);
    expectBlock("Means", blocks.Means);
    expectBlock("StdDevs", blocks.StdDevs);
    expectBlock("StdErrs", blocks.StdErrs);
    expectBlock("TValues", blocks.TValues);
    expectBlock("FStat", blocks.FStat);
    expectLines("CovarianceLines", blocks.CovarianceLines);
    expectLines("CorrelationLines", blocks.CorrelationLines);
    expectBlock("SST", window.SST);
    expectBlock("RSquared", window.RSquared);
}

/// Compares the report with a stored one.
void expectReport(TRegression &regression, const char *file, QChar point = u'.')
{
    SCOPED_TRACE(file);
    std::ifstream stream(std::string(NUVO_TEST_DATA "/report/") + file + ".json");
    ASSERT_TRUE(stream.is_open());
    const ReportBlocks blocks = reportBlocks(regression, point);
    expectBlocks(blocks, windowTexts(blocks, point), nlohmann::json::parse(stream));
}

/// The same data and definitions under both forms of the component.
class Report : public testing::Test
{
protected:
    void fill(const char *columns, const std::vector<Row> &rows) { makeTable(*db, "data", columns, rows); }
    void fillSmall() { fill("y a b", {{3, 1, 2}, {7, 4, 1}, {8, 5, 3}, {12, 7, 4}, {13, 8, 2}, {9, 2, 7}}); }
    void fillLongley()
    {
        const NistSet set = readNist("Longley");
        std::vector<Row> rows;
        for (int i = 0; i < set.observations(); ++i) {
            Row row;
            for (const std::vector<double> &column : set.columns)
                row.push_back(column[i]);
            rows.push_back(row);
        }
        fill("GNPDEFL GNP UNEMP ARMED POP YEAR TOTEMP", rows);
    }
    TMLRTable &fitTable(const std::function<void(TRegression &)> &definitions)
    {
        run(table, definitions);
        return table;
    }
    TMLRQuery &fitQuery(const std::function<void(TRegression &)> &definitions)
    {
        run(query, definitions);
        return query;
    }
    void expectReports(const std::string &name, const std::function<void(TRegression &)> &definitions)
    {
        expectReport(fitTable(definitions), (name + "_table").c_str());
        expectReport(fitQuery(definitions), (name + "_query").c_str());
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    TMLRTable table;
    TMLRQuery query;

private:
    template <class Component>
    void run(Component &component, const std::function<void(TRegression &)> &definitions)
    {
        bind(component, *db, "data");
        definitions(component);
        ASSERT_TRUE(component.ReLoad());
        component.Execute();
    }
};

void defineLongley(TRegression &regression)
{
    define(regression, "GNPDEFL GNP UNEMP ARMED POP YEAR", "TOTEMP");
}

} // namespace

// Whole reports, byte for byte.

TEST_F(Report, LongleyByteForByte)
{
    fillLongley();
    expectReports("longley", defineLongley);
}

TEST_F(Report, LongleyWithADecimalComma)
{
    fillLongley();
    expectReport(fitTable(defineLongley), "longley_comma", u',');
    expectReport(fitQuery(defineLongley), "longley_query_comma", u',');
}

TEST_F(Report, WithoutControlsEachMatrixIsOneCell)
{
    fill("y", {{3}, {7}, {8}, {12}});
    expectReports("none", [](TRegression &regression) { define(regression, ""); });
    const ReportBlocks blocks = reportBlocks(table);
    EXPECT_EQ(blocks.CovarianceLines.size(), 3);
    EXPECT_EQ(blocks.CorrelationLines.size(), 3);
}

TEST_F(Report, OneControl)
{
    fillSmall();
    expectReports("one", [](TRegression &regression) {
        regression.SetResponse(response("Scale", "y", "4"));
        regression.SetControl(7, power("a", "2"));
    });
    const ReportBlocks blocks = reportBlocks(query);
    EXPECT_EQ(blocks.CovarianceLines.size(), 4);
    EXPECT_EQ(blocks.CorrelationLines.size(), 4);
}

TEST_F(Report, TwoControls)
{
    fillSmall();
    expectReports("two", [](TRegression &regression) {
        regression.SetResponse(response("None", "y"));
        regression.SetControl(2, control("Product", "a", "b"));
        regression.SetControl(5, control("Quotient", "a", "b"));
    });
}

TEST_F(Report, AnInactiveVariableIsCountedAndNotListed)
{
    fillSmall();
    expectReports("inactive", [](TRegression &regression) {
        regression.SetResponse(response("None", "y"));
        regression.SetControl(1, control("None", "a"));
        regression.SetControl(2, control("Inactive", "b"));
        regression.SetControl(3, power("b", "2"));
    });
}

TEST_F(Report, ZeroCovariancesAndCorrelationsHaveNoBlankButInTheTablesCovariances)
{
    fill("y a b", {{3, -1, -1}, {5, -1, 1}, {8, 1, -1}, {1, 1, 1}, {2, 0, 0}});
    expectReports("zero", [](TRegression &regression) { define(regression, "a b"); });
}

TEST_F(Report, CorrelationsBelowTheToleranceHaveNoBlankEither)
{
    fill("y a b", {{3, 1, 1}, {5, -1, 1}, {8, 1, -1}, {1, -1, -1}, {2, 1, -5e-22}, {9, -1, 5e-22}});
    expectReports("tiny", [](TRegression &regression) { define(regression, "a b"); });
}

TEST_F(Report, ValuesFromAHundredMillionOnAreInScientificNotation)
{
    fill("y a", {{3 * 123456789.0, 1 * 98765432100.0},
                 {7 * 123456789.0, 4 * 98765432100.0},
                 {8 * 123456789.0, 5 * 98765432100.0},
                 {12 * 123456789.0, 7 * 98765432100.0},
                 {13 * 123456789.0, 8 * 98765432100.0},
                 {9 * 123456789.0, 2 * 98765432100.0}});
    expectReports("large", [](TRegression &regression) { define(regression, "a"); });
}

TEST_F(Report, NoDegreesOfFreedomGiveTheTextsOfNaN)
{
    fill("y a", {{3, 0}, {5, 1}});
    expectReports("saturated", [](TRegression &regression) { define(regression, "a"); });
}

TEST_F(Report, AnExactFitGivesTheTextsOfTheInfinities)
{
    fill("y a b", {{6, -1, -1}, {0, -1, 1}, {10, 1, -1}, {4, 1, 1}});
    expectReports("exact", [](TRegression &regression) { define(regression, "a b"); });
}

TEST_F(Report, AComponentThatNeverRanShowsZeros)
{
    const nlohmann::json expected = {{"DepVar", "\n\r    Y = Datafield"},
                                     {"IndepVars", "\n\r"},
                                     {"DataCount", "0"},
                                     {"DOF", "\n\r     Regression 0\n\r     Residual -1\n\r     Total -1"},
                                     {"Coeffs", "\n\r     B0: 0.0000\n\r"},
                                     {"SSquared", "0.000"},
                                     {"SSE", "0.000"},
                                     {"SSR", "0.000"},
                                     {"Means", "\n\r     Y: 0.0000\n\r"},
                                     {"StdDevs", "\n\r     0.0000\n\r"},
                                     {"StdErrs", "\n\r   0.0000\n\r"},
                                     {"TValues", "\n\r  NAN\n\r"},
                                     {"FStat", "(0,-1): NAN"},
                                     {"CovarianceLines", {"Covariance Matrix:", " ", " 0.00E+0   "}},
                                     {"CorrelationLines", {"Correlation Matrix:", " ", "0.00E+0    "}},
                                     {"SST", "0.000"},
                                     {"RSquared", "NAN"}};
    const ReportBlocks blocks = reportBlocks(table);
    expectBlocks(blocks, windowTexts(blocks), expected);
}

// What single lines say.

TEST_F(Report, CovariancesOf123TenThousandthsHaveABlankOrAMinus)
{
    // With x = 0, 2, 0, 2 and residuals of r, MSE is 2 r^2: the slope's variance is 0.0123, its covariance -0.0123.
    const double r = std::sqrt(0.0246);
    fill("y a", {{1 + r, 0}, {3 + r, 2}, {1 - r, 0}, {3 - r, 2}});
    const auto definitions = [](TRegression &regression) { define(regression, "a"); };
    EXPECT_EQ(reportBlocks(fitTable(definitions)).CovarianceLines,
              (QStringList{text("Covariance Matrix:"), text(" "), text(" 2.46E-2   -1.23E-2   "),
                           text("-1.23E-2    1.23E-2   ")}));
    EXPECT_EQ(reportBlocks(fitQuery(definitions)).CovarianceLines,
              (QStringList{text("Covariance Matrix:"), text(" "), text(" 2.46E-2    -1.23E-2    "),
                           text("-1.23E-2     1.23E-2    ")}));
}

TEST_F(Report, TermsOfEveryTransformationAreWritten)
{
    fill("y a b", {{3, 1, 2},
                   {7, 4, 1},
                   {8, 5, 3},
                   {12, 7, 4},
                   {13, 8, 2},
                   {9, 2, 7},
                   {4, 3, 9},
                   {5, 9, 5},
                   {6, 6, 8},
                   {2, 10, 6}});
    TMLRTable &fitted = fitTable([](TRegression &regression) {
        regression.SetResponse(response("Inverse", "y"));
        regression.SetControl(1, control("None", "a"));
        regression.SetControl(2, control("Log", "a"));
        regression.SetControl(3, control("Inverse", "a"));
        regression.SetControl(4, control("Sqrt", "b"));
        regression.SetControl(5, power("a", " 2 "));
        regression.SetControl(6, scaled("Scale", "b", "1e2"));
        regression.SetControl(7, control("Unheard", "b"));
    });
    const ReportBlocks blocks = reportBlocks(fitted);
    EXPECT_EQ(blocks.DepVar, text("\n\r    Y = 1/(y)"));
    EXPECT_EQ(
        blocks.IndepVars,
        text("\n\r     X1 = a\n\r     X2 = Ln(a)\n\r     X3 = 1/a\n\r     X4 = b^1/2\n\r     X5 = a^ 2 \n\r     X6 = "
             "b/1e2\n\r     X7 = \n\r"));
}

TEST_F(Report, AllVariablesInactiveLeaveTheListsWithTheConstant)
{
    fillSmall();
    TMLRTable &fitted = fitTable([](TRegression &regression) {
        regression.SetResponse(response("None", "y"));
        regression.SetControl(1, control("Inactive", "a"));
        regression.SetControl(2, control("Inactive", "b"));
    });
    const ReportBlocks blocks = reportBlocks(fitted);
    EXPECT_EQ(blocks.IndepVars, text("\n\r"));
    EXPECT_EQ(blocks.Coeffs.count(text("\n\r")), 2);
    EXPECT_EQ(blocks.TValues.count(text("\n\r")), 2);
    EXPECT_EQ(blocks.StdErrs.count(text("\n\r")), 4);
    EXPECT_TRUE(blocks.FStat.startsWith(text("(2,3): ")));
    EXPECT_EQ(blocks.CovarianceLines.size(), 5);
}

TEST_F(Report, TheVariablesAreThoseOfTheLoad)
{
    fillSmall();
    TMLRTable &fitted = fitTable([](TRegression &regression) { define(regression, "a b"); });
    const ReportBlocks before = reportBlocks(fitted);
    fitted.ControlVar(1).SetTransformation(text("Inactive"));
    fitted.ControlVar(2).SetField1(text("a"));
    EXPECT_EQ(reportBlocks(fitted).IndepVars, before.IndepVars);
    EXPECT_EQ(reportBlocks(fitted).Coeffs, before.Coeffs);
}

TEST_F(Report, WritingItDownChangesNothing)
{
    fillSmall();
    TMLRTable &fitted = fitTable([](TRegression &regression) { define(regression, "a b"); });
    const ReportBlocks first = reportBlocks(fitted);
    const ReportBlocks second = reportBlocks(fitted);
    EXPECT_EQ(first.FStat, second.FStat);
    EXPECT_EQ(first.CovarianceLines, second.CovarianceLines);
    EXPECT_TRUE(fitted.Computed());
    EXPECT_EQ(messages.shown, std::vector<Message>());
}

TEST_F(Report, ALoadAfterTheFitDoesNoHarm)
{
    fillSmall();
    TMLRTable &fitted = fitTable([](TRegression &regression) { define(regression, "a"); });
    define(fitted, "a b");
    ASSERT_TRUE(fitted.ReLoad());
    EXPECT_NO_THROW(reportBlocks(fitted)) << "stale figures";
}

TEST(ReportLineEnd, IsLineFeedThenCarriageReturn)
{
    EXPECT_EQ(nuvo::kLineEnd.toString(), text("\n\r"));
}

// The window's two texts.

namespace {

WindowTexts fromTexts(const char *sse, const char *ssr, QChar point = u'.')
{
    ReportBlocks blocks;
    blocks.SSE = text(sse);
    blocks.SSR = text(ssr);
    return windowTexts(blocks, point);
}

} // namespace

TEST(ReportWindowTexts, ComeFromTheRoundedTexts)
{
    // 0.0004 and 0.0014 as printed: of the exact values R2 would be 0.778.
    const WindowTexts texts = fromTexts("0.000", "0.001");
    EXPECT_EQ(texts.SST, text("0.001"));
    EXPECT_EQ(texts.RSquared, text("1.000"));
    EXPECT_EQ(fromTexts("0.004", "0.003").SST, text("0.007"));
    EXPECT_EQ(fromTexts("0.004", "0.003").RSquared, text("0.429"));
}

TEST(ReportWindowTexts, ReadAndWriteScientificNotation)
{
    const WindowTexts texts = fromTexts("836424.060", "1.841724E8");
    EXPECT_EQ(texts.SST, text("1.8500882E8"));
    EXPECT_EQ(texts.RSquared, text("0.995"));
    EXPECT_EQ(fromTexts("99999999.000", "1.000").SST, text("1E8"));
}

TEST(ReportWindowTexts, ReadAndWriteTheDecimalSign)
{
    const WindowTexts texts = fromTexts("836424,060", "1,841724E8", u',');
    EXPECT_EQ(texts.SST, text("1,8500882E8"));
    EXPECT_EQ(texts.RSquared, text("0,995"));
}

TEST(ReportWindowTexts, OfNothingAreNoNumbers)
{
    EXPECT_EQ(fromTexts("0.000", "0.000").SST, text("0.000"));
    EXPECT_EQ(fromTexts("0.000", "0.000").RSquared, text("NAN"));
    EXPECT_EQ(fromTexts("NAN", "2.000").SST, text("NAN"));
    EXPECT_EQ(fromTexts("NAN", "2.000").RSquared, text("NAN"));
    EXPECT_EQ(fromTexts("INF", "2.000").SST, text("INF"));
    EXPECT_EQ(fromTexts("INF", "2.000").RSquared, text("0.000"));
    EXPECT_EQ(fromTexts("0.000", "-0.001").RSquared, text("1.000"));
}
