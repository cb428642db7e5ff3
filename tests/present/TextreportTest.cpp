// SPDX-License-Identifier: MIT
#include "present/Textreport.h"

#include "platform/Formats.h"
#include "present/Fitted.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// The figures of a fit on two columns with these names.
nuvo::Figures report(const QString &first, const QString &second)
{
    nuvo::Figures figures;
    figures.time = QDateTime(QDate(2000, 1, 1), QTime(0, 0));
    figures.source = u("t");
    figures.current = true;
    figures.observations = 5;
    figures.controls = 2;
    figures.records = {5, 5, 5, 0};
    figures.response = {u("y"), true, 3, 0.5};
    figures.columns = {{first, true, 4, 0.6}, {second, true, 5, 0.7}};
    figures.coefficients = {{1, 0.1, 10}, {-2.5, 0.2, -12.5}, {123456789, 0.3, nuvo::Figures::None}};
    figures.sums.residual = 1;
    figures.sums.regression = 2;
    figures.sums.mse = 0.5;
    figures.sums.f = 2;
    figures.covariance = figures.correlation = nuvo::Figures::Matrix(3, nuvo::Figures::Numbers(3));
    return figures;
}

TEST(PlainReport, FiguresStandBelowTheirCaptionsBehindTheirTerms)
{
    EXPECT_EQ(nuvo::reportPlainText(report(u("a"), u("b")), nuvo::Matrices::Left, 80),
              u(R"(Multiple Regression Analysis Report                          2000-01-01 00:00:00
Data: t
Number of observations: 5

Dependent Variable:   Mean:  Std. Dev. (Data):
      Y = y          3.0000             0.5000
Independent Variables:
     X1 = a          4.0000             0.6000
     X2 = b          5.0000             0.7000

                      Coefficients:  Std. Err. (Coeff):  t* Values
     B0:  (constant)         1.0000              0.1000    10.0000
     B1:  a                 -2.5000              0.2000   -12.5000
     B2:  b             1.2345679E8              0.3000        NAN

Sum of Squares                              Degrees of Freedom:
    Regression SSR : 2.000                      Regression 2
    Residual   SSE : 1.000                      Residual 2
    Total      SST : 3.000                      Total 4

s² : 0.500            R² : 0.667            F Statistic(2,2): 2.000

Records: 5 in the dataset, 5 read, 5 used, 0 skipped.
)"));
}

TEST(PlainReport, ALongNameHasALineOfItsOwnAndTheOthersStayInTheirColumns)
{
    const QString name = u("a very long name of a field, in dollars (1992) per head and year");
    const QString text = nuvo::reportPlainText(report(name, u("b")), nuvo::Matrices::Left, 80);
    EXPECT_TRUE(text.contains(u("     X1 = ") + name +
                              u("\n                     4.0000             0.6000\n"
                                "     X2 = b          5.0000             0.7000\n")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(u("     B1:  ") + name +
                              u("\n                            -2.5000              0.2000   -12.5000\n"
                                "     B2:  b             1.2345679E8")))
        << text.toStdString();
    // On a wide terminal it fits.
    const QString wide = nuvo::reportPlainText(report(name, u("b")), nuvo::Matrices::Left, 140);
    EXPECT_TRUE(wide.contains(u("     X1 = ") + name + u("  4.0000             0.6000\n"))) << wide.toStdString();
}

TEST(PlainReport, NoLineIsLongerThanTheTerminalUnlessANameIs)
{
    for (int length = 1; length < 60; ++length) {
        nuvo::Figures text = report(QString(length, u'n'), u("b"));
        for (const QString &line : nuvo::reportPlainText(text, nuvo::Matrices::Shown, 80).split(u'\n'))
            EXPECT_LE(nuvo::displayWidth(line), 80) << line.toStdString();
    }
}

TEST(PlainReport, WideLettersTakeTwoColumns)
{
    EXPECT_EQ(nuvo::displayWidth(u("aä日本")), 6);
    const QString text = nuvo::reportPlainText(report(u("日本"), u("bcde")), nuvo::Matrices::Left, 80);
    EXPECT_TRUE(text.contains(u("     X1 = 日本       4.0000")));
    EXPECT_TRUE(text.contains(u("     X2 = bcde       5.0000")));
}

TEST(PlainReport, AWideMatrixIsSetInGroupsOfColumns)
{
    nuvo::Figures text = report(u("a"), u("b"));
    text.controls = 10;
    text.columns = std::vector<nuvo::Figures::Variable>(10);
    text.coefficients = std::vector<nuvo::Figures::Coefficient>(11);
    text.covariance = text.correlation = nuvo::Figures::Matrix(11, nuvo::Figures::Numbers(11, -0.1));
    for (std::size_t row = 0; row < 11; ++row) {
        for (std::size_t column = 0; column < 11; ++column)
            text.covariance[row][column] = -(1 + double(row) / 100) * std::pow(10.0, double(10 + column));
        text.correlation[row][row] = 1;
    }
    const QString set = nuvo::reportPlainText(text, nuvo::Matrices::Shown, 80);
    EXPECT_TRUE(set.contains(u("\nCovariance Matrix:\n"
                               "             B0        B1        B2        B3        B4        B5        B6\n"
                               "  B0  -1.00E+10 -1.00E+11 -1.00E+12 -1.00E+13 -1.00E+14 -1.00E+15 -1.00E+16\n")))
        << set.toStdString();
    EXPECT_TRUE(set.contains(u("\n\n             B7        B8        B9       B10\n"
                               "  B0  -1.00E+17 -1.00E+18 -1.00E+19 -1.00E+20\n")));
    EXPECT_TRUE(set.contains(u("\n  B10 -1.10E+17 -1.10E+18 -1.10E+19 -1.10E+20\n\nCorrelation Matrix:\n")));
    EXPECT_TRUE(nuvo::reportPlainText(text, nuvo::Matrices::Shown, 120).contains(u("-1.00E+19 -1.00E+20\n  B1 ")));
}

TEST(PlainReport, AVariableThatIsNotListedLeavesTheOthersTheirOwnFigures)
{
    nuvo::Figures text = report(u("a"), u("c"));
    text.controls = 3;
    text.columns.insert(text.columns.begin() + 1, {u("b"), false, 9, 9});
    text.coefficients.insert(text.coefficients.begin() + 2, {9, 9, 9});
    text.covariance = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}};
    text.correlation = text.covariance;
    const QString set = nuvo::reportPlainText(text);
    EXPECT_TRUE(set.contains(u("     B1:  a                 -2.5000              0.2000   -12.5000\n"
                               "     B2:  c             1.2345679E8              0.3000        NAN\n")))
        << set.toStdString();
    EXPECT_TRUE(set.contains(u("\n           B0      B1       -      B2\n"
                               "  B0  1.00E+0 2.00E+0 3.00E+0 4.00E+0\n"
                               "  B1  5.00E+0 6.00E+0 7.00E+0 8.00E+0\n"
                               "  -   9.00E+0 1.00E+1 1.10E+1 1.20E+1\n"
                               "  B2  1.30E+1 1.40E+1 1.50E+1 1.60E+1\n")))
        << set.toStdString();
}

TEST(PlainReport, ANameWithLineBreaksKeepsItsFiguresAndTheOthersTheirs)
{
    Fitted fitted(
        6, {u("a\n\rX9 = z"), u("c")}, [](int i, int j) { return scattered(i, j); }, u("y\nw"));
    const nuvo::Figures figures = nuvo::figures(fitted.table);
    const QString set = nuvo::reportPlainText(figures);
    const auto lineOf = [&set](const QString &label) {
        const qsizetype at = set.indexOf(label);
        return at < 0 ? QString() : set.mid(at, set.indexOf(u'\n', at) - at);
    };
    const auto figure = [](double value) { return FloatToStrFixed(value, 8, 4); };
    EXPECT_TRUE(lineOf(u("Y = y w ")).contains(figure(figures.response.mean))) << set.toStdString();
    EXPECT_TRUE(lineOf(u("B1:  a  X9 = z ")).contains(figure(figures.coefficients[1].estimate))) << set.toStdString();
    EXPECT_TRUE(lineOf(u("B2:  c ")).contains(figure(figures.coefficients[2].estimate))) << set.toStdString();
    EXPECT_TRUE(lineOf(u("B2:  c ")).contains(figure(figures.coefficients[2].t))) << set.toStdString();
    EXPECT_TRUE(lineOf(u("X2 = c ")).contains(figure(figures.columns[1].mean))) << set.toStdString();
}

TEST(PlainReport, LinesOfTheUsersTextsStayAndControlCharactersDoNot)
{
    nuvo::Figures text = report(u("a"), u("b"));
    text.source = u("t\033[2J");
    text.description = u("first\n\rsecond\a");
    text.message = u("one\ntwo");
    const QString set = nuvo::reportPlainText(text);
    EXPECT_TRUE(set.contains(u("Data: t [2J\nfirst\nsecond \nNumber of observations"))) << set.toStdString();
    EXPECT_TRUE(set.endsWith(u("\n\none\ntwo\n")));
}

} // namespace
